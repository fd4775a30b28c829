// "Startup Announce": the sentence spoken when Vexorin starts.
#pragma once

#include <QWidget>

class QPlainTextEdit;
class SettingsStore;
class SpeechOut;

class StartupAnnounceWindow : public QWidget {
    Q_OBJECT
public:
    static const QString kDesignText;

    StartupAnnounceWindow(SettingsStore& store, SpeechOut& speech, QWidget* parent = nullptr);

    QString text() const;
    void setText(const QString& t);

    // Opening: the stored text replaces what the box holds.
    void open();
    // "Test": speaks at once, whether or not "Voice On" is checked.
    void test();
    void ok();
    void cancel();

private:
    SettingsStore& store_;
    SpeechOut& speech_;
    QPlainTextEdit* edit_;
};
