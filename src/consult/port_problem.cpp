#include "consult/port_problem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace {
const QString kDialoutCommand = QStringLiteral("sudo usermod -aG dialout $USER");

// The processes under `procRoot` with a descriptor open on `target`.
QList<PortHolder> holdersOf(const QString& target, const QString& procRoot)
{
    QList<PortHolder> out;
    const QDir proc(procRoot);
    for (const QString& entry : proc.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool numeric = false;
        const qint64 pid = entry.toLongLong(&numeric);
        if (!numeric)
            continue;
        const QDir fds(proc.filePath(entry + QStringLiteral("/fd")));
        for (const QFileInfo& fd : fds.entryInfoList(QDir::System | QDir::Files | QDir::NoDotAndDotDot)) {
            if (fd.symLinkTarget() != target)
                continue;
            QFile comm(proc.filePath(entry + QStringLiteral("/comm")));
            QString name = comm.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(comm.read(64)).trimmed() : QString();
            out.append({name.isEmpty() ? QStringLiteral("a process") : name, pid, pid == qint64(::getpid())});
            break;
        }
    }
    return out;
}

// The cure for a known adapter grabber, or the general one.
QString cureFor(const QString& name)
{
    if (name.compare(QLatin1String("ModemManager"), Qt::CaseInsensitive) == 0)
        return QStringLiteral("stop it with \"sudo systemctl disable --now ModemManager\"");
    if (name.startsWith(QLatin1String("brltty"), Qt::CaseInsensitive))
        return QStringLiteral("remove it with \"sudo apt remove brltty\"");
    return QStringLiteral("close that program");
}
}  // namespace

PortFacts gatherPortFacts(const QString& path, const QString& procRoot)
{
    PortFacts f;
    f.path = path;
    const QByteArray local = QFile::encodeName(path);
    f.exists = ::access(local.constData(), F_OK) == 0;
    f.readWrite = f.exists && ::access(local.constData(), R_OK | W_OK) == 0;
    if (f.exists) {
        const QString target = QFileInfo(path).canonicalFilePath();
        f.holders = holdersOf(target.isEmpty() ? path : target, procRoot);
    }
    return f;
}

QString explainOpenFailure(const PortFacts& f)
{
    if (!f.exists)
        return QStringLiteral("%1 is not there: the adapter is unplugged or was renamed; plug it in, "
                              "then pick its port again under \"Ports\".")
            .arg(f.path);
    if (!f.readWrite)
        return QStringLiteral("permission denied on %1: add yourself to the dialout group with \"%2\", "
                              "then log out and in again.")
            .arg(f.path, kDialoutCommand);
    for (const PortHolder& h : f.holders)
        if (h.self)
            return QStringLiteral("%1 is already open in Vexorin on its other port; pick another port for this one.")
                .arg(f.path);
    if (!f.holders.isEmpty()) {
        const PortHolder& h = f.holders.first();
        return QStringLiteral("%1 is busy: %2 (pid %3) holds it; %4, then connect again.")
            .arg(f.path, h.name)
            .arg(h.pid)
            .arg(cureFor(h.name));
    }
    if (f.systemText.contains(QLatin1String("busy"), Qt::CaseInsensitive) ||
        f.systemText.contains(QLatin1String("lock"), Qt::CaseInsensitive))
        return QStringLiteral("%1 is busy and the program holding it is not one you can see: ModemManager and "
                              "brltty often take USB serial adapters (\"sudo systemctl disable --now "
                              "ModemManager\", \"sudo apt remove brltty\"); stop it, then connect again.")
            .arg(f.path);
    if (f.systemText.isEmpty())
        return QStringLiteral("%1 could not be opened.").arg(f.path);
    return QStringLiteral("%1: %2.").arg(f.path, f.systemText);
}
