// A standalone simulator on a pseudo-terminal (the ECU unless another tool is
// named, e.g. VEXORIN_DLP_SIM), for tests that go through the real serial
// port code.
#pragma once

#include <QProcess>
#include <QStringList>
#include <QTest>

class SimProcess {
public:
    explicit SimProcess(const QStringList& args = {}, const QString& program = QStringLiteral(VEXORIN_ECU_SIM))
    {
        process_.setProgram(program);
        process_.setArguments(args);
        process_.start();
        if (!process_.waitForStarted(5000))
            return;
        QByteArray line;
        QDeadlineTimer deadline(5000);
        while (!line.contains('\n') && !deadline.hasExpired()) {
            process_.waitForReadyRead(100);
            line += process_.readAllStandardOutput();
        }
        line = line.left(line.indexOf('\n')).trimmed();
        if (line.startsWith("PTY "))
            path_ = QString::fromLocal8Bit(line.mid(4));
    }
    ~SimProcess() { stop(); }

    // Ends the simulator: its pseudo-terminal goes away as an unplugged cable would.
    void stop()
    {
        if (process_.state() == QProcess::NotRunning)
            return;
        process_.terminate();
        if (!process_.waitForFinished(3000))
            process_.kill();
        process_.waitForFinished(1000);
    }

    // The pseudo-terminal the simulator answers on, empty when it did not start.
    QString path() const { return path_; }
    // A command on the simulator's standard input ("silent on", "phase idle", ...).
    void command(const QByteArray& line)
    {
        process_.write(line + '\n');
        process_.waitForBytesWritten(1000);
    }

private:
    QProcess process_;
    QString path_;
};
