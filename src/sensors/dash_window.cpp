#include "sensors/dash_window.h"

#include "sensors/sensor_displays.h"
#include "ui/plain_text.h"

#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QVBoxLayout>

using namespace vexorin::sensors;

namespace {
// The captions of the Dash, in its order.
struct DashEntry {
    SensorId id;
    const char* caption;
};
constexpr DashEntry kDash[] = {
    {SensorId::Speed, "Speed"}, {SensorId::RPM, "RPM"},       {SensorId::TPS, "TPS"},
    {SensorId::MAF, "MAF"},     {SensorId::O2L, "O2 (L)"},    {SensorId::O2R, "O2 (R)"},
    {SensorId::INJ, "INJ"},     {SensorId::Timing, "Timing"}, {SensorId::IACV, "IACV"},
    {SensorId::Water, "Water"}, {SensorId::Fuel, "Fuel"},     {SensorId::Battery, "Battery"},
};
}  // namespace

DashWindow::DashWindow(SensorDisplays& displays, QWidget* parent)
    : QWidget(parent, Qt::Window), displays_(displays)
{
    setObjectName(QStringLiteral("Dash"));
    setWindowTitle(QStringLiteral("Vexorin Dash"));
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* menu = new QMenuBar(this);
    QAction* exit = menu->addAction(QStringLiteral("Exit"));
    exit->setObjectName(QStringLiteral("Exit"));
    connect(exit, &QAction::triggered, this, &QWidget::close);
    outer->setMenuBar(menu);

    // The instruments sit on a dark face; the menu keeps the desktop's look.
    auto* face = new QWidget(this);
    face->setAutoFillBackground(true);
    QPalette p = face->palette();
    p.setColor(QPalette::Window, QColor(16, 16, 24));
    p.setColor(QPalette::WindowText, QColor(0x80, 0x80, 0xFF));
    face->setPalette(p);
    auto* grid = new QGridLayout(face);
    grid->setContentsMargins(16, 12, 16, 16);
    grid->setHorizontalSpacing(28);
    grid->setVerticalSpacing(10);
    int n = 0;
    for (const DashEntry& e : kDash) {
        auto* caption = new QLabel(QString::fromLatin1(e.caption), face);
        QFont cf = caption->font();
        cf.setPointSizeF(cf.pointSizeF() * 1.1);
        caption->setFont(cf);
        auto* value = new QLabel(face);
        value->setObjectName(QString::fromLatin1(spec(e.id).dashLabel));
        value->setMinimumWidth(120);
        QFont vf = value->font();
        vf.setPointSizeF(vf.pointSizeF() * 2.6);
        vf.setBold(true);
        value->setFont(vf);
        QPalette vp = value->palette();
        vp.setColor(QPalette::WindowText, QColor(0x00, 0xFF, 0x00));
        value->setPalette(vp);
        caption->setBuddy(value);
        const int row = (n / 4) * 2, col = n % 4;
        grid->addWidget(caption, row, col);
        grid->addWidget(value, row + 1, col);
        values_[std::size_t(e.id)] = value;
        ++n;
    }
    outer->addWidget(face);
    connect(&displays_, &SensorDisplays::dashChanged, this, &DashWindow::refresh);
    for (const DashEntry& e : kDash)
        refresh(int(e.id));
    vexorin::ui::keepTextPlain(this);
}

QLabel* DashWindow::valueLabel(const QString& name) const
{
    return findChild<QLabel*>(name);
}

void DashWindow::refresh(int id)
{
    if (QLabel* l = values_[std::size_t(id)])
        l->setText(displays_.dash(SensorId(id)));
}
