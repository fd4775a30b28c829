#include "voice/alert_frame_panel.h"

#include "ui/overlay_panel.h"
#include "ui/plain_text.h"
#include "ui/user_input.h"
#include "voice/alerts.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

AlertFramePanel::AlertFramePanel(Alert& alert, QWidget* parent)
    : QGroupBox(QLatin1String(alert.spec().frameCaption), parent), alert_(alert)
{
    const AlertSpec& s = alert.spec();
    setObjectName(QLatin1String(s.frame));
    vexorin::ui::styleOverlayPanel(this);
    auto* grid = new QGridLayout(this);
    auto* caption = new QLabel(tr("Limit:"), this);
    limit_ = new QLineEdit(this);
    limit_->setObjectName(QLatin1String(s.limitBox));
    caption->setBuddy(limit_);
    echo_ = new QLabel(this);
    echo_->setObjectName(QLatin1String(s.echoLabel));
    echo_->setMinimumWidth(40);
    grid->addWidget(caption, 0, 0);
    grid->addWidget(limit_, 0, 1);
    grid->addWidget(echo_, 0, 2);
    alertBox_ = new QCheckBox(QStringLiteral("Alert"), this);
    alertBox_->setObjectName(QLatin1String(s.alertBox));
    messageBox_ = new QCheckBox(QStringLiteral("Display Alert Message"), this);
    messageBox_->setObjectName(QLatin1String(s.messageBox));
    grid->addWidget(alertBox_, 1, 0, 1, 3);
    grid->addWidget(messageBox_, 2, 0, 1, 3);
    auto* buttons = new QHBoxLayout;
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    grid->addLayout(buttons, 3, 0, 1, 3);

    using namespace vexorin::ui;
    onUserText(limit_, &alert_, [this](const QString& text) { alert_.setLimit(text); });
    onUserToggle(alertBox_, &alert_, [this] { alert_.ClickAlertBox(); });
    onUserToggle(messageBox_, &alert_, [this] { alert_.ClickMessageBox(); });
    connect(ok, &QPushButton::clicked, &alert_, &Alert::OK);
    connect(cancel, &QPushButton::clicked, &alert_, &Alert::Cancel);
    connect(&alert_, &Alert::changed, this, &AlertFramePanel::refresh);
    refresh();
    vexorin::ui::keepTextPlain(this);
}

void AlertFramePanel::refresh()
{
    if (limit_->text() != alert_.limit())
        limit_->setText(alert_.limit());
    echo_->setText(alert_.echo());
    const QSignalBlocker a(alertBox_), m(messageBox_);
    alertBox_->setChecked(alert_.alertBoxValue() == 1);
    messageBox_->setChecked(alert_.messageBoxValue() == 1);
    setVisible(alert_.frameVisible());
    if (isVisible())
        raise();
}
