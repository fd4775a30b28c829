// Why a port would not open: the facts gathered from the system and the one
// sentence that names the cause and the cure.
#include "consult/port_problem.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <unistd.h>

namespace {
PortFacts facts(bool exists, bool readWrite, QList<PortHolder> holders = {}, QString text = {})
{
    PortFacts f;
    f.path = QStringLiteral("/dev/ttyUSB0");
    f.exists = exists;
    f.readWrite = readWrite;
    f.holders = std::move(holders);
    f.systemText = std::move(text);
    return f;
}

std::string said(const PortFacts& f)
{
    return explainOpenFailure(f).toStdString();
}

// A fake /proc: process `pid` named `name` holds `target` on descriptor 3.
void fakeProcess(const QDir& proc, qint64 pid, const QByteArray& name, const QString& target)
{
    const QString dir = QString::number(pid);
    ASSERT_TRUE(proc.mkpath(dir + QStringLiteral("/fd")));
    QFile comm(proc.filePath(dir + QStringLiteral("/comm")));
    ASSERT_TRUE(comm.open(QIODevice::WriteOnly));
    comm.write(name + '\n');
    ASSERT_TRUE(QFile::link(target, proc.filePath(dir + QStringLiteral("/fd/3"))));
}
}  // namespace

TEST(PortProblem, MissingDeviceIsUnpluggedOrRenamed)
{
    const std::string s = said(facts(false, false));
    EXPECT_NE(s.find("/dev/ttyUSB0 is not there"), std::string::npos) << s;
    EXPECT_NE(s.find("unplugged or was renamed"), std::string::npos) << s;
}

TEST(PortProblem, PermissionDeniedGivesTheDialoutCommand)
{
    const std::string s = said(facts(true, false, {}, QStringLiteral("Permission denied")));
    EXPECT_NE(s.find("permission denied on /dev/ttyUSB0"), std::string::npos) << s;
    EXPECT_NE(s.find("sudo usermod -aG dialout $USER"), std::string::npos) << s;
    EXPECT_NE(s.find("log out and in again"), std::string::npos) << s;
}

TEST(PortProblem, BusyNamesTheHolderAndItsCure)
{
    std::string s = said(facts(true, true, {{QStringLiteral("ModemManager"), 812, false}}));
    EXPECT_NE(s.find("ModemManager (pid 812) holds it"), std::string::npos) << s;
    EXPECT_NE(s.find("sudo systemctl disable --now ModemManager"), std::string::npos) << s;
    s = said(facts(true, true, {{QStringLiteral("brltty"), 77, false}}));
    EXPECT_NE(s.find("brltty (pid 77)"), std::string::npos) << s;
    EXPECT_NE(s.find("sudo apt remove brltty"), std::string::npos) << s;
    s = said(facts(true, true, {{QStringLiteral("minicom"), 4242, false}}));
    EXPECT_NE(s.find("minicom (pid 4242) holds it; close that program"), std::string::npos) << s;
}

TEST(PortProblem, OwnOtherPortIsNamedAsSuch)
{
    const std::string s = said(facts(true, true, {{QStringLiteral("vexorin"), 1, true}}));
    EXPECT_NE(s.find("already open in Vexorin on its other port"), std::string::npos) << s;
}

TEST(PortProblem, BusyWithAnUnseenHolderNamesTheUsualSuspects)
{
    const std::string s = said(facts(true, true, {}, QStringLiteral("Device or resource busy")));
    EXPECT_NE(s.find("ModemManager"), std::string::npos) << s;
    EXPECT_NE(s.find("brltty"), std::string::npos) << s;
    EXPECT_NE(s.find("not one you can see"), std::string::npos) << s;
}

TEST(PortProblem, AnyOtherFailureKeepsTheSystemText)
{
    EXPECT_EQ(said(facts(true, true, {}, QStringLiteral("Inappropriate ioctl for device"))),
              "/dev/ttyUSB0: Inappropriate ioctl for device.");
    EXPECT_EQ(said(facts(true, true)), "/dev/ttyUSB0 could not be opened.");
}

TEST(PortProblem, GatheringFindsTheHoldersOfTheDevice)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString device = dir.filePath(QStringLiteral("ttyUSB0"));
    QFile node(device);
    ASSERT_TRUE(node.open(QIODevice::WriteOnly));
    node.close();
    const QString other = dir.filePath(QStringLiteral("ttyS0"));
    QFile(other).open(QIODevice::WriteOnly);
    QDir proc(dir.path());
    ASSERT_TRUE(proc.mkpath(QStringLiteral("proc")));
    ASSERT_TRUE(proc.cd(QStringLiteral("proc")));
    fakeProcess(proc, 812, "ModemManager", device);
    fakeProcess(proc, 900, "getty", other);
    ASSERT_TRUE(proc.mkpath(QStringLiteral("self/fd")));  // not a process number: skipped

    const PortFacts f = gatherPortFacts(device, proc.path());
    EXPECT_TRUE(f.exists);
    if (::geteuid() != 0) {  // root may open anything
        EXPECT_TRUE(f.readWrite);
    }
    ASSERT_EQ(f.holders.size(), 1);
    EXPECT_EQ(f.holders.first().name, QStringLiteral("ModemManager"));
    EXPECT_EQ(f.holders.first().pid, 812);
    EXPECT_FALSE(f.holders.first().self);

    const PortFacts gone = gatherPortFacts(dir.filePath(QStringLiteral("ttyUSB9")), proc.path());
    EXPECT_FALSE(gone.exists);
    EXPECT_TRUE(gone.holders.isEmpty());
}

TEST(PortProblem, GatheringSeesThisProgramAsItself)
{
    QTemporaryDir dir;
    const QString device = dir.filePath(QStringLiteral("ttyUSB0"));
    QFile node(device);
    ASSERT_TRUE(node.open(QIODevice::WriteOnly));  // held open by this process, seen in the real /proc
    const PortFacts f = gatherPortFacts(device);
    ASSERT_FALSE(f.holders.isEmpty());
    EXPECT_TRUE(f.holders.first().self);
    EXPECT_EQ(f.holders.first().pid, qint64(::getpid()));
}

TEST(PortProblem, UnreadableDeviceIsAPermissionProblem)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may open anything";
    QTemporaryDir dir;
    const QString device = dir.filePath(QStringLiteral("ttyUSB0"));
    QFile node(device);
    ASSERT_TRUE(node.open(QIODevice::WriteOnly));
    node.close();
    ASSERT_TRUE(node.setPermissions(QFileDevice::ReadOwner));
    const PortFacts f = gatherPortFacts(device);
    EXPECT_TRUE(f.exists);
    EXPECT_FALSE(f.readWrite);
}
