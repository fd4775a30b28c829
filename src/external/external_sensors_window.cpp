#include "external/external_sensors_window.h"

#include "external/channel_scale_window.h"
#include "external/external_sensors.h"
#include "external/sensor_name_window.h"
#include "ui/gradient_bar_widget.h"
#include "ui/message_box.h"
#include "ui/plain_text.h"
#include "ui/port_menu_items.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

using vexorin::external::kBarMaximum;

ExternalSensorsWindow::ExternalSensorsWindow(ExternalSensors* sensors, QWidget* parent)
    : QMainWindow(parent, Qt::Window), sensors_(sensors)
{
    sensors_->setParent(this);
    setObjectName(QStringLiteral("ExternalSensors"));
    setWindowTitle(QStringLiteral("Vexorin External Gauge Monitor"));
    buildMenus();

    auto* body = new QWidget(this);
    auto* v = new QVBoxLayout(body);
    auto* row = new QHBoxLayout;
    row->setSpacing(6);
    for (int n = 1; n <= kGauges; ++n)
        row->addWidget(buildGauge(n, body));
    v->addLayout(row, 1);
    v->addWidget(buildControls(body));
    setCentralWidget(body);

    connect(sensors_, &ExternalSensors::changed, this, &ExternalSensorsWindow::refresh);
    connect(sensors_, &ExternalSensors::message, this, [this](const QString& t) { MessageBoxes::information(this, t); });
    connect(sensors_, &ExternalSensors::errorBox, this,
            [this](const QString& t, const QString& title) { MessageBoxes::critical(this, t, title); });
    connect(&sensors_->link(), &ExternalLink::channelChanged, this, &ExternalSensorsWindow::refreshChannel);
    connect(sensors_, &ExternalSensors::figureChanged, this, &ExternalSensorsWindow::refreshFigure);
    sensors_->Load();
    refresh();
    for (int n = 1; n <= kGauges; ++n) {
        checkBox(n)->setChecked(sensors_->link().checked(n));
        refreshChannel(n);
    }
    vexorin::ui::keepTextPlain(this);
}

QAction* ExternalSensorsWindow::action(const QString& objectName) const
{
    return findChild<QAction*>(objectName);
}

void ExternalSensorsWindow::buildMenus()
{
    ExternalSensors& s = *sensors_;
    auto add = [this](QMenu* menu, const char* name, const QString& caption, auto slot) {
        QAction* a = menu->addAction(caption);
        a->setObjectName(QString::fromLatin1(name));
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    QMenu* file = menuBar()->addMenu(tr("&File"));
    add(file, "Exit", QStringLiteral("Exit"), [this] { close(); });

    ports_ = menuBar()->addMenu(tr("&Ports"));
    ports_->setObjectName(QStringLiteral("Ports"));
    add(ports_, "ConnectDisconnect", QStringLiteral("Connect/Disconnect"), [&s] { s.ConnectDisconnectMenu(); });
    ports_->addSeparator();
    portItemsEnd_ = ports_->addSeparator();
    add(ports_, "InterfaceCheck", QStringLiteral("Interface Check"), [this] { emit interfaceCheckRequested(); });
    add(ports_, "UpdatePortInfo", QStringLiteral("Update Port Information"), [&s] { s.UpdatePortInfo(); });

    QMenu* options = menuBar()->addMenu(tr("&Options"));
    notifySelected_ = add(options, "NotifySelected", QStringLiteral("Notify When Selecting Ports"),
                          [&s] { s.ToggleNotifySelected(); });
    displayPercentage_ = add(options, "DisplayPercentage", QStringLiteral("Display Percentage in Valuebar"),
                             [&s] { s.ToggleDisplayPercentage(); });
    pollCheckedOnly_ = add(options, "PollCheckedOnly", QStringLiteral("Poll Checked Channels Only"),
                           [&s] { s.TogglePollCheckedOnly(); });
    pollCheckedOnly_->setToolTip(tr("Read only the ticked channels, each in turn, instead of all eight"));
    for (QAction* a : {notifySelected_, displayPercentage_, pollCheckedOnly_})
        a->setCheckable(true);
}

QWidget* ExternalSensorsWindow::buildGauge(int channel, QWidget* parent)
{
    auto* frame = new QFrame(parent);
    frame->setObjectName(QStringLiteral("Gauge%1").arg(channel));
    frame->setFrameShape(QFrame::StyledPanel);
    auto* v = new QVBoxLayout(frame);
    v->setContentsMargins(6, 6, 6, 6);
    Gauge& g = gauges_[std::size_t(channel - 1)];

    g.name = new QLabel(frame);
    g.name->setObjectName(QStringLiteral("ExternalSensorName%1").arg(channel));
    g.name->setAlignment(Qt::AlignCenter);
    g.name->setWordWrap(true);
    g.name->setMinimumWidth(84);
    g.name->setToolTip(tr("Double-click to rename"));
    QFont bold = g.name->font();
    bold.setBold(true);
    g.name->setFont(bold);
    g.name->installEventFilter(this);

    g.bar = new GradientBar(frame);
    g.bar->setObjectName(QStringLiteral("ExternalBar%1").arg(channel));
    g.bar->setOrientation(Qt::Vertical);
    g.bar->setMaximum(kBarMaximum);
    g.bar->setBackColor(QColor(128, 128, 255));
    g.bar->setStartColor(QColor(0, 0, 255));
    g.bar->setEndColor(QColor(0, 0, 255));
    g.bar->setTextColor(Qt::black);
    g.bar->setTextAfter(QStringLiteral("%"));
    g.bar->setMinimumHeight(180);

    g.reading = new QLineEdit(frame);
    g.reading->setObjectName(QStringLiteral("ExternalReading%1").arg(channel));
    g.reading->setReadOnly(true);
    g.reading->setAlignment(Qt::AlignCenter);
    g.reading->setFixedWidth(72);
    g.reading->setAccessibleName(tr("Reading %1").arg(channel));

    g.check = new QCheckBox(QString::number(channel), frame);
    g.check->setObjectName(QStringLiteral("ExSensor%1").arg(channel));
    g.check->setToolTip(tr("Refresh this reading"));
    connect(g.check, &QCheckBox::toggled, this, [this, channel](bool on) { sensors_->link().setChecked(channel, on); });

    // The scaled figure keeps its line when empty, so that all bars stand equally tall.
    g.figure = new QLabel(frame);
    g.figure->setObjectName(QStringLiteral("ExternalFigure%1").arg(channel));
    g.figure->setAlignment(Qt::AlignCenter);
    g.figure->setTextFormat(Qt::PlainText);
    QFont figureFont = g.figure->font();  // the figure is what the gauge is read by
    figureFont.setBold(true);
    figureFont.setPointSizeF(figureFont.pointSizeF() * 1.15);
    g.figure->setFont(figureFont);
    g.figure->setMinimumHeight(g.figure->fontMetrics().height() + 2);
    g.figure->setAccessibleDescription(tr("Scaled reading %1").arg(channel));

    g.scale = new QPushButton(QStringLiteral("Scale..."), frame);
    g.scale->setObjectName(QStringLiteral("ScaleButton%1").arg(channel));
    g.scale->setToolTip(tr("Show this reading as a figure of its own, such as AFR or psi"));
    connect(g.scale, &QPushButton::clicked, this, [this, channel] { editScale(channel); });

    v->addWidget(g.name);
    v->addWidget(g.bar, 1, Qt::AlignHCenter);
    v->addWidget(g.reading, 0, Qt::AlignHCenter);
    v->addWidget(g.figure);
    v->addWidget(g.check, 0, Qt::AlignHCenter);
    v->addWidget(g.scale, 0, Qt::AlignHCenter);
    return frame;
}

QWidget* ExternalSensorsWindow::buildControls(QWidget* parent)
{
    auto* box = new QWidget(parent);
    auto* h = new QHBoxLayout(box);
    h->setContentsMargins(0, 4, 0, 0);
    ExternalSensors& s = *sensors_;
    const struct {
        const char* caption;
        const char* name;
        void (ExternalSensors::*action)();
    } buttons[] = {
        {"Connect/Disconnect", "ConnectDisconnectButton", &ExternalSensors::ConnectDisconnectClicked},
        {"Start", "StartButton", &ExternalSensors::StartClicked},
        {"Stop", "StopButton", &ExternalSensors::StopClicked},
    };
    for (const auto& b : buttons) {
        auto* button = new QPushButton(QString::fromLatin1(b.caption), box);
        button->setObjectName(QString::fromLatin1(b.name));
        connect(button, &QPushButton::clicked, &s, b.action);
        h->addWidget(button);
    }
    h->addStretch(1);
    auto* caption = new QLabel(tr("Status:"), box);
    status_ = new QLabel(box);
    status_->setObjectName(QStringLiteral("StatusText"));
    status_->setFrameShape(QFrame::StyledPanel);
    status_->setMinimumWidth(110);
    status_->setAlignment(Qt::AlignCenter);
    QFont bold = status_->font();
    bold.setBold(true);
    status_->setFont(bold);
    caption->setBuddy(status_);
    h->addWidget(caption);
    h->addWidget(status_);
    return box;
}

void ExternalSensorsWindow::refresh()
{
    const QString status = sensors_->StatusText();
    status_->setText(status);
    status_->setStyleSheet(status == QLatin1String("Connected") ? QStringLiteral("color: #1a7f1a;")
                                                                 : QStringLiteral("color: #a01010;"));
    for (int n = 1; n <= kGauges; ++n) {
        nameLabel(n)->setText(sensors_->name(n));
        bar(n)->setTextVisible(sensors_->displayPercentageChecked());
        scaleButton(n)->setAccessibleDescription(tr("Channel scale of %1").arg(sensors_->name(n)));
        refreshFigure(n);
    }
    notifySelected_->setChecked(sensors_->notifySelectedChecked());
    displayPercentage_->setChecked(sensors_->displayPercentageChecked());
    pollCheckedOnly_->setChecked(sensors_->pollCheckedOnlyChecked());
    refreshPortItems();
}

void ExternalSensorsWindow::refreshChannel(int channel)
{
    if (channel < 1 || channel > kGauges)
        return;
    const ExternalLink& link = sensors_->link();
    readingBox(channel)->setText(link.reading(channel));
    bar(channel)->setValue(link.bar(channel));
}

void ExternalSensorsWindow::refreshFigure(int channel)
{
    if (channel < 1 || channel > kGauges)
        return;
    QLabel* label = figureLabel(channel);
    // Wide enough for every reading of the device's range, so that the gauge
    // does not change its width as the figure moves.
    int width = 0;
    if (const auto scale = sensors_->scale(channel))
        for (const QString& t : vexorin::external::spanTexts(*scale))
            width = std::max(width, label->fontMetrics().horizontalAdvance(t));
    label->setMinimumWidth(width > 0 ? width + 4 : 0);
    label->setText(sensors_->figureText(channel));
}

void ExternalSensorsWindow::editScale(int channel)
{
    if (channel < 1 || channel > kGauges)
        return;
    if (!channelScale_)
        channelScale_ = new ChannelScaleWindow(
            [this](int n, const std::optional<vexorin::external::ChannelScale>& scale) { sensors_->setScale(n, scale); },
            this);
    channelScale_->openFor(channel, sensors_->scaleCaption(channel), sensors_->scale(channel));
}

void ExternalSensorsWindow::refreshPortItems()
{
    syncPortMenuItems(ports_, portItemsEnd_, portItems_, sensors_->portItems(), QStringLiteral("ExternalPort"),
                      [this](int item) { sensors_->ChooseExternalPort(item); });
}

void ExternalSensorsWindow::rename(int channel)
{
    if (!sensorName_)
        sensorName_ = new SensorNameWindow(
            [this](const QString& heading, const QString& text) { sensors_->RenameOk(heading, text); }, this);
    sensorName_->open(ExternalSensors::renameHeading(channel), sensors_->savedName(channel));
}

void ExternalSensorsWindow::closeEvent(QCloseEvent* event)
{
    if (sensors_->link().polling())
        sensors_->link().Stop();
    QMainWindow::closeEvent(event);
}

bool ExternalSensorsWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonDblClick)
        for (int n = 1; n <= kGauges; ++n)
            if (watched == nameLabel(n)) {
                rename(n);
                return true;
            }
    return QMainWindow::eventFilter(watched, event);
}
