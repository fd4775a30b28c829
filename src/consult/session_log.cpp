#include "consult/session_log.h"

void SessionLog::AddLogMessage(const QString& message)
{
    text_ += QStringLiteral("\r\n") + message + QStringLiteral("\r\n");
    messages_.append(message);
    emit messageAdded(message);
}

void SessionLog::clear()
{
    text_.clear();
    messages_.clear();
    emit cleared();
}
