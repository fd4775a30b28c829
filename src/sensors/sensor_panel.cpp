#include "sensors/sensor_panel.h"

#include "sensors/sensor_displays.h"
#include "ui/gradient_bar_widget.h"
#include "ui/plain_text.h"
#include "ui/vb_color.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

using namespace vexorin::sensors;

SensorPanel::SensorPanel(SensorDisplays& displays, QWidget* parent)
    : QGroupBox(tr("Sensors"), parent), displays_(displays)
{
    setObjectName(QStringLiteral("AllSensorsPanel"));
    auto* grid = new QGridLayout(this);
    grid->setVerticalSpacing(1);
    grid->setContentsMargins(6, 2, 6, 4);
    grid->setColumnStretch(1, 1);
    int row = 0;
    for (SensorId id : kPanelOrder) {
        const SensorSpec& s = spec(id);
        auto* b = new QPushButton(QString::fromLatin1(s.buttonCaption), this);
        b->setObjectName(QString::fromLatin1(s.buttonCaption).remove(QLatin1Char(' ')) + QStringLiteral("Button"));
        b->setMinimumWidth(72);
        b->setFixedHeight(23);
        b->setToolTip(QString::fromLatin1(s.graphTitle).replace(QLatin1String("Srnsor"), QLatin1String("Sensor"))
                      + QStringLiteral(" (") + QString::fromLatin1(s.unit) + QLatin1Char(')'));
        auto* bar = new GradientBar(this);
        bar->setObjectName(QString::fromLatin1(s.barName));
        bar->setMaximum(s.barMax);
        bar->setFixedHeight(16);
        auto* l = new QLabel(this);
        l->setObjectName(QString::fromLatin1(s.labelName));
        l->setMinimumWidth(76);
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        l->setAutoFillBackground(true);
        QFont f = l->font();
        f.setBold(true);
        f.setPointSizeF(f.pointSizeF() * 1.1);
        l->setFont(f);
        grid->addWidget(b, row, 0);
        grid->addWidget(bar, row, 1);
        grid->addWidget(l, row, 2);
        connect(b, &QPushButton::clicked, this, [this, id] { emit sensorButtonClicked(id); });
        buttons_[std::size_t(id)] = b;
        bars_[std::size_t(id)] = bar;
        labels_[std::size_t(id)] = l;
        ++row;
    }
    connect(&displays_, &SensorDisplays::labelChanged, this, &SensorPanel::showLabel);
    connect(&displays_, &SensorDisplays::barChanged, this, &SensorPanel::showBar);
    connect(&displays_, &SensorDisplays::labelColorChanged, this, &SensorPanel::showLabelColor);
    connect(&displays_, &SensorDisplays::barColorsChanged, this, &SensorPanel::showBarColors);
    for (int i = 0; i < kSensorCount; ++i) {
        showLabel(i);
        showBar(i);
        showLabelColor(i);
        showBarColors(i);
    }
    vexorin::ui::keepTextPlain(this);
}

void SensorPanel::showLabel(int id)
{
    labels_[std::size_t(id)]->setText(displays_.label(SensorId(id)));
}

void SensorPanel::showBar(int id)
{
    bars_[std::size_t(id)]->setValue(displays_.bar(SensorId(id)));
}

void SensorPanel::showLabelColor(int id)
{
    QLabel* l = labels_[std::size_t(id)];
    QPalette p = l->palette();
    p.setColor(QPalette::Window, Qt::black);
    p.setColor(QPalette::WindowText, fromBgr(displays_.labelColor(SensorId(id))));
    l->setPalette(p);
}

void SensorPanel::showBarColors(int bar)
{
    if (bar < 0 || bar >= kSensorCount)
        return;
    const BarColors c = displays_.barColors(bar);
    GradientBar* g = bars_[std::size_t(bar)];
    g->setBackColor(fromBgr(c.back));
    g->setStartColor(fromBgr(c.start));
    g->setEndColor(fromBgr(c.end));
    g->setTextColor(fromBgr(c.text));
}
