#include "sensors/dash_window.h"

#include "sensors/sensor_displays.h"
#include "ui/fitted_font.h"
#include "ui/plain_text.h"
#include "ui/window_keys.h"

#include <QGridLayout>
#include <QHBoxLayout>
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
    grid->setVerticalSpacing(4);
    int n = 0;
    for (const DashEntry& e : kDash) {
        auto* caption = new QLabel(QString::fromLatin1(e.caption), face);
        auto* unit = new QLabel(QString::fromUtf8(unitSymbol(e.id)), face);
        unit->setObjectName(QString::fromLatin1(spec(e.id).dashLabel) + QStringLiteral("Unit"));
        unit->setAccessibleName(QString::fromLatin1(spec(e.id).unit));
        unit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        for (QLabel* l : {caption, unit}) {
            QFont f = l->font();
            f.setPointSizeF(f.pointSizeF() * 1.1);
            l->setFont(f);
        }
        auto* value = new QLabel(face);
        value->setObjectName(QString::fromLatin1(spec(e.id).dashLabel));
        value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        value->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        QFont vf = value->font();
        vf.setBold(true);
        value->setFont(vf);
        QPalette vp = value->palette();
        vp.setColor(QPalette::WindowText, QColor(0x00, 0xFF, 0x00));
        value->setPalette(vp);
        caption->setBuddy(value);
        const int row = (n / 4) * 2, col = n % 4;
        auto* head = new QHBoxLayout;
        head->addWidget(caption);
        head->addStretch(1);
        head->addWidget(unit);
        grid->addLayout(head, row, col);
        grid->addWidget(value, row + 1, col);
        grid->setRowStretch(row + 1, 1);
        grid->setColumnStretch(col, 1);
        values_[std::size_t(e.id)] = value;
        ++n;
    }
    outer->addWidget(face);
    connect(&displays_, &SensorDisplays::dashChanged, this, &DashWindow::refresh);
    for (const DashEntry& e : kDash)
        refresh(int(e.id));
    vexorin::ui::addFullScreenKey(this);
    vexorin::ui::addEscapeToClose(this);
    resize(600, 260);
    vexorin::ui::keepTextPlain(this);
}

void DashWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fitValues();
}

void DashWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    fitValues();
}

void DashWindow::fitValues()
{
    // Every value gets the room of the smallest value cell; the digits fill it.
    layout()->activate();
    QSize room(1 << 20, 1 << 20);
    for (QLabel* l : values_)
        if (l)
            room = room.boundedTo(l->contentsRect().size());
    const QFont font = vexorin::ui::fittedFont(values_[0]->font(), room, QStringLiteral("000.00"));
    for (QLabel* l : values_)
        if (l)
            l->setFont(font);
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
