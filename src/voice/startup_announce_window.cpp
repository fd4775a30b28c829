#include "voice/startup_announce_window.h"

#include "app/settings/settings_access.h"
#include "ui/plain_text.h"
#include "voice/speech_out.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

const QString StartupAnnounceWindow::kDesignText =
    QStringLiteral("E mods. Engine management, observation and diagnostic system.");

StartupAnnounceWindow::StartupAnnounceWindow(SettingsStore& store, SpeechOut& speech, QWidget* parent)
    : QWidget(parent, Qt::Window), store_(store), speech_(speech)
{
    setObjectName(QStringLiteral("StartupAnnounce"));
    setWindowTitle(QStringLiteral("Startup Announce"));
    auto* v = new QVBoxLayout(this);
    auto* caption = new QLabel(tr("Spoken when Vexorin starts:"), this);
    v->addWidget(caption);
    edit_ = new QPlainTextEdit(kDesignText, this);
    edit_->setObjectName(QStringLiteral("AnnounceText"));
    caption->setBuddy(edit_);
    v->addWidget(edit_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    const std::pair<const char*, void (StartupAnnounceWindow::*)()> defs[] = {
        {"Test", &StartupAnnounceWindow::test},
        {"OK", &StartupAnnounceWindow::ok},
        {"Cancel", &StartupAnnounceWindow::cancel},
    };
    for (const auto& [caption, slot] : defs) {
        auto* b = new QPushButton(QString::fromLatin1(caption), this);
        b->setObjectName(QString::fromLatin1(caption) + QStringLiteral("Button"));
        connect(b, &QPushButton::clicked, this, slot);
        buttons->addWidget(b);
    }
    v->addLayout(buttons);
    resize(420, 200);
    vexorin::ui::keepTextPlain(this);
}

QString StartupAnnounceWindow::text() const
{
    return edit_->toPlainText();
}

void StartupAnnounceWindow::setText(const QString& t)
{
    edit_->setPlainText(t);
}

void StartupAnnounceWindow::open()
{
    setText(readSetting(store_, Settings::StartupAnnounce));
    show();
    raise();
}

void StartupAnnounceWindow::test()
{
    speech_.Speak(text());
}

void StartupAnnounceWindow::ok()
{
    writeSetting(store_, Settings::StartupAnnounce, text());
    close();
}

void StartupAnnounceWindow::cancel()
{
    close();
}
