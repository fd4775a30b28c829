// "Check or Tweak Installed Speech Engines": on this platform, the speech
// engines and voices Vexorin can use, and how the voice types map onto them.
#pragma once

#include <QWidget>

class QPlainTextEdit;

class SpeechEnginesWindow : public QWidget {
    Q_OBJECT
public:
    explicit SpeechEnginesWindow(QWidget* parent = nullptr);
    // Lists the engines and voices afresh.
    void reload();
    QString report() const;

private:
    QPlainTextEdit* text_;
};
