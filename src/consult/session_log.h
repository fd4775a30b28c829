// The session log of the main window: messages one blank line apart, no time stamps.
#pragma once

#include <QObject>
#include <QString>

class SessionLog : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Old text, CR LF, the message, CR LF; the caret then stands at the end.
    void AddLogMessage(const QString& message);
    // The one-break form: old text, CR LF, the line, and nothing behind it.
    void AddLogLine(const QString& line);
    void clear();
    const QString& text() const { return text_; }
    // The messages in order, without the line breaks.
    QStringList messages() const { return messages_; }

signals:
    void messageAdded(const QString& message);
    void cleared();

private:
    QString text_;
    QStringList messages_;
};
