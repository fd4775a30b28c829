#include "voice/speech_engines_window.h"

#include "voice/voice_types.h"

#include <QPlainTextEdit>
#include <QTextToSpeech>
#include <QVBoxLayout>

SpeechEnginesWindow::SpeechEnginesWindow(QWidget* parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("SpeechEngines"));
    setWindowTitle(QStringLiteral("Installed Speech Engines"));
    auto* v = new QVBoxLayout(this);
    text_ = new QPlainTextEdit(this);
    text_->setReadOnly(true);
    text_->setAccessibleName(tr("Installed Speech Engines"));
    v->addWidget(text_);
    resize(520, 360);
}

void SpeechEnginesWindow::reload()
{
    QStringList lines;
    const QStringList engines = QTextToSpeech::availableEngines();
    if (engines.isEmpty())
        lines << tr("No speech engine is installed: Vexorin runs silently.")
              << tr("On Debian, install the package qt6-speech-flite-plugin.");
    for (const QString& e : engines) {
        QTextToSpeech tts(e);
        QStringList voices;
        for (const QVoice& v : tts.availableVoices())
            voices << v.name();
        lines << tr("Engine: %1").arg(e) << tr("Voices: %1").arg(voices.join(QStringLiteral(", "))) << QString();
    }
    lines << tr("Voice types:");
    for (const VoiceType& t : kVoiceTypes)
        lines << QStringLiteral("  %1: voice %2, pitch %3, rate %4")
                     .arg(QLatin1String(t.caption), QLatin1String(t.engineVoice))
                     .arg(t.pitch)
                     .arg(t.rate);
    text_->setPlainText(lines.join(QLatin1Char('\n')));
}

QString SpeechEnginesWindow::report() const
{
    return text_->toPlainText();
}
