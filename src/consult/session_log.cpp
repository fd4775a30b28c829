#include "consult/session_log.h"

void SessionLog::AddLogMessage(const QString& message)
{
    text_ += QStringLiteral("\r\n") + message + QStringLiteral("\r\n");
    messages_.append(message);
    emit messageAdded(message);
}

void SessionLog::AddLogLine(const QString& line)
{
    text_ += QStringLiteral("\r\n") + line;
    messages_.append(line);
    emit messageAdded(line);
}

void SessionLog::clear()
{
    text_.clear();
    messages_.clear();
    emit cleared();
}
