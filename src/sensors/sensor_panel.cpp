#include "sensors/sensor_panel.h"

#include "sensors/sensor_displays.h"
#include "ui/fitted_font.h"
#include "ui/gradient_bar_widget.h"
#include "ui/plain_text.h"
#include "ui/vb_color.h"

#include <QLabel>
#include <QPushButton>

using namespace vexorin::sensors;

namespace {
// A row, left to right: the button, the bar, the value, the unit.
constexpr int kButtonWidth = 78;
constexpr int kValueWidth = 96;
constexpr int kUnitWidth = 30;
constexpr int kSpace = 6;

// The value labels' font: bold, as large as a row's height allows for the widest value.
QFont valueFont(QFont base, int rowHeight)
{
    base.setBold(true);
    return vexorin::ui::fittedFont(base, QSize(kValueWidth - 8, rowHeight), QStringLiteral("000.00"));
}
}  // namespace

SensorPanel::SensorPanel(SensorDisplays& displays, QWidget* parent)
    : QGroupBox(tr("Sensors"), parent), displays_(displays), area_(36, 24, 622, 145)  // until aligned
{
    setObjectName(QStringLiteral("AllSensorsPanel"));
    const QFont values = valueFont(font(), kRowPitch - kRowGap);
    for (SensorId id : kPanelOrder) {
        const SensorSpec& s = spec(id);
        auto* b = new QPushButton(QString::fromLatin1(s.buttonCaption), this);
        b->setObjectName(QString::fromLatin1(s.buttonCaption).remove(QLatin1Char(' ')) + QStringLiteral("Button"));
        b->setToolTip(QString::fromLatin1(s.graphTitle).replace(QLatin1String("Srnsor"), QLatin1String("Sensor"))
                      + QStringLiteral(" (") + QString::fromLatin1(s.unit) + QLatin1Char(')'));
        auto* bar = new GradientBar(this);
        bar->setObjectName(QString::fromLatin1(s.barName));
        bar->setMaximum(s.barMax);
        auto* l = new QLabel(this);
        l->setObjectName(QString::fromLatin1(s.labelName));
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        l->setAutoFillBackground(true);
        l->setFont(values);
        auto* u = new QLabel(QString::fromUtf8(unitSymbol(id)), this);
        u->setObjectName(QString::fromLatin1(s.labelName).replace(QLatin1String("Label"), QLatin1String("Unit")));
        u->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        u->setAccessibleName(QString::fromLatin1(s.unit));
        connect(b, &QPushButton::clicked, this, [this, id] { emit sensorButtonClicked(id); });
        buttons_[std::size_t(id)] = b;
        bars_[std::size_t(id)] = bar;
        labels_[std::size_t(id)] = l;
        units_[std::size_t(id)] = u;
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

void SensorPanel::alignRowsTo(const QRect& area, int rowsInside)
{
    area_ = area;
    rowsInside_ = rowsInside;
    updateGeometry();
    placeRows();
}

int SensorPanel::firstRowTop() const
{
    return area_.top() + area_.height() - rowsInside_ * kRowPitch + kRowGap;
}

QRect SensorPanel::rowsFrom(int first) const
{
    const int top = firstRowTop() + first * kRowPitch;
    const int bottom = firstRowTop() + kSensorCount * kRowPitch - kRowGap;
    return {area_.left() + 2, top - 1, area_.width() - 4, bottom - top + 2};
}

QSize SensorPanel::sizeHint() const
{
    // From a panel standing at the parent's layout margin down past the last row.
    constexpr int kTopMargin = 6;
    return {area_.left() + area_.width() + 8, firstRowTop() + kSensorCount * kRowPitch + 4 - kTopMargin};
}

void SensorPanel::resizeEvent(QResizeEvent* event)
{
    QGroupBox::resizeEvent(event);
    placeRows();
}

void SensorPanel::moveEvent(QMoveEvent* event)
{
    QGroupBox::moveEvent(event);
    placeRows();
}

void SensorPanel::placeRows()
{
    // Rows in the parent's coordinates, set in this panel's.
    const int left = area_.left() + 4 - x();
    const int right = area_.left() + area_.width() - 4 - x();
    const int rowHeight = kRowPitch - kRowGap;
    for (int row = 0; row < kSensorCount; ++row) {
        const auto i = std::size_t(kPanelOrder[std::size_t(row)]);
        const int top = firstRowTop() + row * kRowPitch - y();
        const int unitLeft = right - kUnitWidth;
        const int valueLeft = unitLeft - 2 - kValueWidth;
        const int barLeft = left + kButtonWidth + kSpace;
        buttons_[i]->setGeometry(left, top, kButtonWidth, rowHeight);
        bars_[i]->setGeometry(barLeft, top + 3, valueLeft - kSpace - barLeft, rowHeight - 6);
        labels_[i]->setGeometry(valueLeft, top, kValueWidth, rowHeight);
        units_[i]->setGeometry(unitLeft, top, kUnitWidth, rowHeight);
    }
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
