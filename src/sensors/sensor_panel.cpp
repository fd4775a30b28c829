#include "sensors/sensor_panel.h"

#include "sensors/sensor_catalog.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

SensorPanel::SensorPanel(QWidget* parent)
    : QGroupBox(tr("Sensors"), parent)
{
    setObjectName(QStringLiteral("AllSensorsPanel"));
    auto* grid = new QGridLayout(this);
    grid->setVerticalSpacing(3);
    grid->setColumnStretch(1, 1);
    int row = 0;
    for (const SensorNames& s : kSensorNames) {
        auto* b = new QPushButton(QString::fromLatin1(s.button), this);
        b->setObjectName(QString::fromLatin1(s.button) + QStringLiteral("Button"));
        b->setMinimumWidth(72);
        auto* bar = new QProgressBar(this);
        bar->setObjectName(QString::fromLatin1(s.bar));
        bar->setRange(0, s.barMax);
        bar->setValue(0);
        bar->setTextVisible(false);
        bar->setMaximumHeight(18);
        auto* l = new QLabel(QStringLiteral("0"), this);
        l->setObjectName(QString::fromLatin1(s.label));
        l->setMinimumWidth(64);
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        QFont f = l->font();
        f.setBold(true);
        l->setFont(f);
        grid->addWidget(b, row, 0);
        grid->addWidget(bar, row, 1);
        grid->addWidget(l, row, 2);
        const int index = row;
        connect(b, &QPushButton::clicked, this, [this, index] { emit sensorButtonClicked(index); });
        buttons_.append(b);
        bars_.append(bar);
        labels_.append(l);
        ++row;
    }
}
