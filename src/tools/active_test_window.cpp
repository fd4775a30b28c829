#include "tools/active_test_window.h"

#include "tools/tool_pictures.h"
#include "ui/plain_text.h"
#include "ui/user_input.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QVBoxLayout>

using namespace vexorin::tools;

namespace {
QLabel* valueLabel(const QString& name, QWidget* parent, int minWidth = 56)
{
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    l->setAlignment(Qt::AlignCenter);
    l->setFrameShape(QFrame::Panel);
    l->setFrameShadow(QFrame::Sunken);
    l->setMinimumWidth(minWidth);
    QFont f = l->font();
    f.setBold(true);
    l->setFont(f);
    return l;
}

QScrollBar* newScroll(const QString& name, const QString& accessible, int max, QWidget* parent)
{
    auto* s = new QScrollBar(Qt::Horizontal, parent);
    s->setObjectName(name);
    s->setAccessibleName(accessible);
    s->setRange(0, max);
    s->setMinimumWidth(200);
    return s;
}

QPushButton* newButton(const QString& caption, QWidget* parent)
{
    auto* b = new QPushButton(caption, parent);
    b->setAccessibleName(caption);
    return b;
}
}  // namespace

ActiveTestWindow::ActiveTestWindow(ConsultSession& session, SensorStream* stream, QWidget* parent)
    : QWidget(parent, Qt::Window), test_(session, stream)
{
    setObjectName(QStringLiteral("ActiveTestWindow"));
    setWindowTitle(QStringLiteral("Vexorin Active Test"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(10, 10, 10, 10);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(8);

    // Water temperature.
    auto* water = new QGroupBox(QStringLiteral("Water Temperature"), this);
    auto* waterLayout = new QGridLayout(water);
    waterTemp_ = newScroll(QStringLiteral("WaterTempScroll"), QStringLiteral("Water Temperature"), kWaterTempMax, water);
    waterTemp_->setPageStep(10);
    waterTempLabel_ = valueLabel(QStringLiteral("WaterTempLabel"), water);
    auto* check = newButton(QStringLiteral("Check Actual"), water);
    waterLayout->addWidget(waterTemp_, 0, 0, 1, 2);
    waterLayout->addWidget(waterTempLabel_, 0, 2);
    waterLayout->addWidget(new QLabel(QStringLiteral("°F"), water), 0, 3);
    waterLayout->addWidget(check, 1, 0);
    connect(waterTemp_, &QScrollBar::valueChanged, &test_, &ActiveTest::setWaterTempPosition);
    connect(check, &QPushButton::clicked, &test_, &ActiveTest::CheckActual);
    grid->addWidget(water, 0, 0);

    // The three trims: one routine, a row of the table each.
    for (std::size_t t = 0; t < kTrims.size(); ++t) {
        const TrimSpec& spec = kTrims[t];
        auto* box = new QGroupBox(QLatin1String(spec.group), this);
        auto* layout = new QGridLayout(box);
        trims_[t] = newScroll(QLatin1String(spec.scrollName), QLatin1String(spec.group), kTrimPositions - 1, box);
        trims_[t]->setPageStep(1);
        trims_[t]->setValue(kTrimMiddle);
        trimLabels_[t] = valueLabel(QString(), box);
        layout->addWidget(new QLabel(QLatin1String(spec.left), box), 0, 0);
        layout->addWidget(trims_[t], 0, 1);
        layout->addWidget(new QLabel(QLatin1String(spec.right), box), 0, 2);
        layout->addWidget(trimLabels_[t], 0, 3);
        connect(trims_[t], &QScrollBar::valueChanged, this, [this, t](int v) { test_.setTrimPosition(Trim(t), v); });
        grid->addWidget(box, int(t) + 1, 0);
    }
    trimLabels_[std::size_t(Trim::Timing)]->setObjectName(QStringLiteral("TimingLabel"));
    trimLabels_[std::size_t(Trim::InjectorFuel)]->setObjectName(QStringLiteral("IgnitionFuelLabel"));
    trimLabels_[std::size_t(Trim::Iacv)]->setObjectName(QStringLiteral("IACVLabel2"));

    // Active tests and the readings.
    auto* tests = new QGroupBox(QStringLiteral("Active Tests"), this);
    auto* testsLayout = new QVBoxLayout(tests);
    for (std::size_t i = 0; i < ActiveTest::kTestOptions.size(); ++i) {
        auto* option = new QRadioButton(QLatin1String(ActiveTest::kTestOptions[i]), tests);
        option->setChecked(i == 0);
        vexorin::ui::onUserChoose(option, this, [this, i] { test_.chooseTestOption(int(i)); });
        testsLayout->addWidget(option);
    }
    grid->addWidget(tests, 4, 0);

    auto* misc = new QGroupBox(QStringLiteral("Misc"), this);
    auto* miscLayout = new QGridLayout(misc);
    rpm_ = valueLabel(QStringLiteral("RPMLabel"), misc);
    maf_ = valueLabel(QStringLiteral("MAFLabel"), misc);
    tps_ = valueLabel(QStringLiteral("TPSLabel"), misc);
    iacv_ = valueLabel(QStringLiteral("IACVLabel"), misc);
    const std::array<std::pair<const char*, QLabel*>, 4> readings{
        {{"RPM", rpm_}, {"MAF", maf_}, {"TPS", tps_}, {"IACV", iacv_}}};
    for (std::size_t i = 0; i < readings.size(); ++i) {
        auto* caption = new QLabel(QLatin1String(readings[i].first), misc);
        caption->setAlignment(Qt::AlignCenter);
        miscLayout->addWidget(caption, 0, int(i));
        miscLayout->addWidget(readings[i].second, 1, int(i));
    }
    grid->addWidget(misc, 5, 0);

    // Power balance.
    auto* balance = new QGroupBox(QStringLiteral("Power Balance Test"), this);
    auto* balanceLayout = new QGridLayout(balance);
    cylinders_ = new QListWidget(balance);
    cylinders_->setObjectName(QStringLiteral("CylinderList"));
    cylinders_->setAccessibleName(QStringLiteral("Cylinder"));
    for (int c = 1; c <= kCylinders; ++c)
        cylinders_->addItem(QStringLiteral("Cylinder %1").arg(c));
    cylinders_->setFixedHeight(cylinders_->sizeHintForRow(0) * kCylinders + 2 * cylinders_->frameWidth());
    cylinders_->setMaximumWidth(120);
    connect(cylinders_, &QListWidget::currentRowChanged, &test_, &ActiveTest::selectCylinder);
    auto* cylinderOnOff = newButton(QStringLiteral("ON/OFF"), balance);
    cylinderOnOff->setObjectName(QStringLiteral("CylinderOnOff"));
    cylinderOnOff->setAccessibleName(QStringLiteral("Cylinder ON/OFF"));
    connect(cylinderOnOff, &QPushButton::clicked, &test_, &ActiveTest::CylinderOnOff);
    onOffLabel_ = valueLabel(QStringLiteral("OnOffLabel"), balance);
    spark1_ = new QLabel(balance);
    spark1_->setObjectName(QStringLiteral("Spark1"));
    spark1_->setPixmap(QPixmap::fromImage(sparkPicture(false)));
    spark2_ = new QLabel(balance);
    spark2_->setObjectName(QStringLiteral("Spark2"));
    spark2_->setPixmap(QPixmap::fromImage(sparkPicture(true)));
    auto* sparks = new QWidget(balance);
    auto* sparksLayout = new QGridLayout(sparks);
    sparksLayout->setContentsMargins(0, 0, 0, 0);
    sparksLayout->addWidget(spark1_, 0, 0);
    sparksLayout->addWidget(spark2_, 0, 0);
    sparks->setFixedSize(48, 96);
    balanceLayout->addWidget(cylinders_, 0, 0, 3, 1);
    balanceLayout->addWidget(sparks, 0, 1, 3, 1);
    balanceLayout->addWidget(cylinderOnOff, 0, 2);
    balanceLayout->addWidget(onOffLabel_, 1, 2);
    balanceLayout->setRowStretch(2, 1);
    grid->addWidget(balance, 0, 1, 2, 1);

    // Solenoids and the fuel pump relay: one routine, a row each.
    auto* solenoids = new QGroupBox(QStringLiteral("Solenoids"), this);
    auto* solenoidLayout = new QGridLayout(solenoids);
    auto* pump = new QGroupBox(QStringLiteral("Fuel Pump Relay"), this);
    auto* pumpLayout = new QGridLayout(pump);
    for (std::size_t i = 0; i < kOnOffs.size(); ++i) {
        const bool isPump = int(i) == kFuelPump;
        QWidget* box = isPump ? static_cast<QWidget*>(pump) : solenoids;
        QGridLayout* layout = isPump ? pumpLayout : solenoidLayout;
        auto* button = newButton(QStringLiteral("ON/OFF"), box);
        button->setAccessibleName(QLatin1String(kOnOffs[i].row) + QStringLiteral(" ON/OFF"));
        onOffLabels_[i] = valueLabel(QLatin1String(kOnOffs[i].label), box);
        const int row = isPump ? 0 : int(i);
        if (!isPump)
            layout->addWidget(new QLabel(QLatin1String(kOnOffs[i].row), box), row, 0);
        layout->addWidget(button, row, 1);
        layout->addWidget(onOffLabels_[i], row, 2);
        connect(button, &QPushButton::clicked, this, [this, i] { test_.pressOnOff(int(i)); });
    }
    grid->addWidget(solenoids, 2, 1, 3, 1);

    auto* selfLearn = new QGroupBox(QStringLiteral("Clear Self Learn"), this);
    auto* selfLearnLayout = new QGridLayout(selfLearn);
    auto* clear = newButton(QStringLiteral("Clear"), selfLearn);
    selfLearnLabel_ = valueLabel(QStringLiteral("SelfLearnLabel"), selfLearn);
    connect(clear, &QPushButton::clicked, &test_, &ActiveTest::ClearSelfLearn);
    selfLearnLayout->addWidget(clear, 0, 0);
    selfLearnLayout->addWidget(selfLearnLabel_, 0, 1);
    auto* lower = new QHBoxLayout;
    lower->addWidget(pump);
    lower->addWidget(selfLearn);
    grid->addLayout(lower, 5, 1);

    connect(&test_, &ActiveTest::changed, this, &ActiveTestWindow::refresh);
    refresh();
    vexorin::ui::keepTextPlain(this);
}

QScrollBar* ActiveTestWindow::scroll(const QString& objectName) const
{
    return findChild<QScrollBar*>(objectName);
}

void ActiveTestWindow::refresh()
{
    {
        const QSignalBlocker block(waterTemp_);
        waterTemp_->setValue(test_.waterTempPosition());
    }
    waterTemp_->setEnabled(test_.waterTempEnabled());
    waterTempLabel_->setText(test_.WaterTempLabel);
    for (std::size_t t = 0; t < trims_.size(); ++t) {
        const QSignalBlocker block(trims_[t]);
        trims_[t]->setValue(test_.trimPosition(Trim(t)));
        trimLabels_[t]->setText(test_.trimLabel(Trim(t)));
    }
    for (std::size_t i = 0; i < onOffLabels_.size(); ++i)
        onOffLabels_[i]->setText(test_.onOffLabels[i]);
    if (cylinders_->currentRow() != test_.selectedCylinder()) {
        const QSignalBlocker block(cylinders_);
        cylinders_->setCurrentRow(test_.selectedCylinder());
    }
    onOffLabel_->setText(test_.OnOffLabel);
    selfLearnLabel_->setText(test_.SelfLearnLabel);
    rpm_->setText(test_.RPMLabel);
    maf_->setText(test_.MAFLabel);
    tps_->setText(test_.TPSLabel);
    iacv_->setText(test_.IACVLabel);
    spark1_->setVisible(test_.firstSparkVisible());
    spark2_->setVisible(test_.secondSparkVisible());
}

void ActiveTestWindow::closeEvent(QCloseEvent* event)
{
    // Unloading sends one CmdGo and nothing else.
    test_.closing();
    event->accept();
}
