#include "consult/serial_device.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <linux/serial.h>
#include <sys/ioctl.h>

namespace serial_device {

QString stableName(const QString& path, const QString& byIdDir)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    if (target.isEmpty())
        return path;
    const QDir dir(byIdDir);
    for (const QFileInfo& link : dir.entryInfoList(QDir::System | QDir::Files | QDir::NoDotAndDotDot, QDir::Name))
        if (link.isSymLink() && link.canonicalFilePath() == target)
            return link.absoluteFilePath();
    return path;
}

QString kernelName(const QString& path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    return QFileInfo(target.isEmpty() ? path : target).fileName();
}

int latencyTimerMs(const QString& path, const QString& sysRoot)
{
    QFile file(QStringLiteral("%1/class/tty/%2/device/latency_timer").arg(sysRoot, kernelName(path)));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    bool ok = false;
    const int ms = QString::fromLatin1(file.read(16)).trimmed().toInt(&ok);
    return ok && ms >= 0 ? ms : -1;
}

bool requestLowLatency(int fd)
{
    serial_struct settings {};
    if (fd < 0 || ::ioctl(fd, TIOCGSERIAL, &settings) != 0)
        return false;
    if (settings.flags & ASYNC_LOW_LATENCY)
        return true;
    settings.flags |= ASYNC_LOW_LATENCY;
    return ::ioctl(fd, TIOCSSERIAL, &settings) == 0;
}

}  // namespace serial_device
