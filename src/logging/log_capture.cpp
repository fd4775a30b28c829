#include "logging/log_capture.h"

#include "app/settings/settings_access.h"
#include "consult/session_log.h"
#include "logging/log_format.h"
#include "ui/regular_file.h"

using namespace vexorin::logging;

LogCapture::LogCapture(SettingsStore& store, SessionLog& log, QObject* parent)
    : QObject(parent), store_(store), log_(log), clock_([] { return QDateTime::currentDateTime(); })
{
}

LogCapture::~LogCapture()
{
    file_.close();
}

void LogCapture::CapturetologfileClicked(const std::function<QString(const QString&)>& askName)
{
    const QString initial = readSetting(store_, Settings::LogFileName);
    if (checked_) {
        close();
        return;
    }
    const QString chosen = askName ? askName(initial) : QString();
    if (chosen.isEmpty() || checked_)
        return;
    checked_ = true;
    file_.close();
    file_.setFileName(chosen);
    lineInFrame_ = 0;
    QString problem;
    if (!vexorin::files::openRegular(file_, QIODevice::WriteOnly | QIODevice::Truncate, &problem))
        log_.AddLogMessage(QStringLiteral(": Could not open the log file %1: %2").arg(chosen, problem));
    emit checkedChanged(true);
}

void LogCapture::close()
{
    file_.close();
    const bool was = checked_;
    checked_ = false;
    if (was)
        emit checkedChanged(false);
}

void LogCapture::writeLine(const QString& line)
{
    if (!checked_ || !file_.isOpen())
        return;  // write errors are ignored, as the decoder ignores them
    file_.write(line.toLocal8Bit() + kLineEnd);
    if (++lineInFrame_ >= kLinesPerFrame) {
        lineInFrame_ = 0;
        file_.flush();  // whole frames reach the disk as they are written
    }
}

void LogCapture::writeDateTimeLine()
{
    lineInFrame_ = 0;
    writeLine(dateTimeLine(clock_()));
}

void LogCapture::writeValue(const QString& value, bool numeric)
{
    writeLine(numeric ? numberLine(value) : value);
}
