// Serial devices on Linux: stable names, kernel names, the latency timer and
// the low-latency flag.
#include "consult/serial_device.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace {
void touch(const QString& path)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
}

void writeText(const QString& path, const QByteArray& text)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(text);
}
}  // namespace

TEST(SerialDevice, StableNameIsTheByIdLinkToTheDevice)
{
    QTemporaryDir dir;
    const QDir root(dir.path());
    ASSERT_TRUE(root.mkpath(QStringLiteral("by-id")));
    touch(root.filePath(QStringLiteral("ttyUSB0")));
    touch(root.filePath(QStringLiteral("ttyUSB1")));
    touch(root.filePath(QStringLiteral("ttyS0")));
    const QString byId = root.filePath(QStringLiteral("by-id"));
    ASSERT_TRUE(QFile::link(QStringLiteral("../ttyUSB1"), byId + QStringLiteral("/usb-FTDI_FT232R_A50285BI-if00-port0")));
    ASSERT_TRUE(QFile::link(QStringLiteral("../ttyUSB0"), byId + QStringLiteral("/usb-Prolific_PL2303-if00-port0")));

    EXPECT_EQ(serial_device::stableName(root.filePath(QStringLiteral("ttyUSB1")), byId),
              byId + QStringLiteral("/usb-FTDI_FT232R_A50285BI-if00-port0"));
    EXPECT_EQ(serial_device::stableName(root.filePath(QStringLiteral("ttyUSB0")), byId),
              byId + QStringLiteral("/usb-Prolific_PL2303-if00-port0"));
    // No link: the name stays; nor does a device that is not there change.
    EXPECT_EQ(serial_device::stableName(root.filePath(QStringLiteral("ttyS0")), byId), root.filePath(QStringLiteral("ttyS0")));
    EXPECT_EQ(serial_device::stableName(QStringLiteral("/dev/nothing-here"), byId), QStringLiteral("/dev/nothing-here"));
    EXPECT_EQ(serial_device::stableName(root.filePath(QStringLiteral("ttyS0")), dir.filePath(QStringLiteral("none"))),
              root.filePath(QStringLiteral("ttyS0")));
}

TEST(SerialDevice, KernelNameFollowsLinks)
{
    QTemporaryDir dir;
    touch(dir.filePath(QStringLiteral("ttyUSB3")));
    ASSERT_TRUE(QFile::link(dir.filePath(QStringLiteral("ttyUSB3")), dir.filePath(QStringLiteral("stable"))));
    EXPECT_EQ(serial_device::kernelName(dir.filePath(QStringLiteral("stable"))), QStringLiteral("ttyUSB3"));
    EXPECT_EQ(serial_device::kernelName(QStringLiteral("/dev/ttyUSB7")), QStringLiteral("ttyUSB7"));
}

TEST(SerialDevice, LatencyTimerComesFromTheDeviceTree)
{
    QTemporaryDir dir;
    const QDir sys(dir.path());
    ASSERT_TRUE(sys.mkpath(QStringLiteral("class/tty/ttyUSB0/device")));
    ASSERT_TRUE(sys.mkpath(QStringLiteral("class/tty/ttyUSB1/device")));
    ASSERT_TRUE(sys.mkpath(QStringLiteral("class/tty/ttyUSB2/device")));
    writeText(sys.filePath(QStringLiteral("class/tty/ttyUSB0/device/latency_timer")), "16\n");
    writeText(sys.filePath(QStringLiteral("class/tty/ttyUSB1/device/latency_timer")), "garbage");
    EXPECT_EQ(serial_device::latencyTimerMs(QStringLiteral("/dev/ttyUSB0"), dir.path()), 16);
    EXPECT_EQ(serial_device::latencyTimerMs(QStringLiteral("/dev/ttyUSB1"), dir.path()), -1);
    EXPECT_EQ(serial_device::latencyTimerMs(QStringLiteral("/dev/ttyUSB2"), dir.path()), -1);
    EXPECT_EQ(serial_device::latencyTimerMs(QStringLiteral("/dev/ttyACM0"), dir.path()), -1);
}

TEST(SerialDevice, LowLatencyIsRefusedWhereTheDriverHasNoSuchFlag)
{
    EXPECT_FALSE(serial_device::requestLowLatency(-1));
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(master, 0);
    ASSERT_EQ(::grantpt(master), 0);
    ASSERT_EQ(::unlockpt(master), 0);
    const int slave = ::open(::ptsname(master), O_RDWR | O_NOCTTY);
    ASSERT_GE(slave, 0);
    EXPECT_FALSE(serial_device::requestLowLatency(slave));  // a pseudo-terminal has no serial driver
    ::close(slave);
    ::close(master);
    const int file = ::open("/dev/null", O_RDWR);
    EXPECT_FALSE(serial_device::requestLowLatency(file));
    ::close(file);
}
