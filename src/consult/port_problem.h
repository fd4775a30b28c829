// Why a serial port would not open, told as the user can act on it: the cause
// and its cure in one sentence.
#pragma once

#include <QList>
#include <QString>

struct PortHolder {
    QString name;  // the process's command name, as in /proc/<pid>/comm
    qint64 pid = 0;
    bool self = false;  // this program: the other of its two ports has it
};

// What the system says about a device that would not open.
struct PortFacts {
    QString path;
    bool exists = false;
    bool readWrite = false;      // the user may open it for reading and writing
    QList<PortHolder> holders;   // processes with the device open, as far as the user may see
    QString systemText;          // the serial layer's own error text
};

// The facts about `path` on this system: the device node, its permissions, and
// a scan of /proc/*/fd under `procRoot` for processes that hold it open.
PortFacts gatherPortFacts(const QString& path, const QString& procRoot = QStringLiteral("/proc"));

// One sentence: the cause and the cure.
QString explainOpenFailure(const PortFacts& facts);
