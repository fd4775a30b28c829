#include "rom/hex_chart_window.h"

#include "ui/plain_text.h"
#include "ui/window_keys.h"

#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>

namespace {
constexpr int kColumns = 8;   // 8 columns of 32 values: 0..255
constexpr int kRows = 32;
constexpr int kTitleHeight = 27;
}  // namespace

HexChartWindow::HexChartWindow(QWidget* parent) : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("HexChart"));
    setWindowTitle(QStringLiteral("Hex Chart"));
    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(0, 0, 0, 0);
    auto* picture = new QLabel(this);
    picture->setObjectName(QStringLiteral("HexChartPicture"));
    picture->setPixmap(chart());
    picture->setAccessibleName(QStringLiteral("Decimal to hexadecimal chart"));
    v->addWidget(picture);
    setFixedSize(kWidth, kHeight);
    vexorin::ui::addEscapeToClose(this);
    vexorin::ui::keepTextPlain(this);
}

QPixmap HexChartWindow::chart()
{
    QPixmap pixmap(kWidth, kHeight);
    pixmap.fill(Qt::white);
    QPainter p(&pixmap);
    QFont title = p.font();
    title.setPixelSize(15);
    title.setBold(true);
    p.setFont(title);
    p.drawText(QRect(0, 0, kWidth, kTitleHeight), Qt::AlignCenter, QStringLiteral("Decimal = Hexadecimal"));

    const double columnWidth = double(kWidth) / kColumns;
    const double rowHeight = double(kHeight - kTitleHeight) / kRows;
    QFont cell = p.font();
    cell.setPixelSize(11);
    cell.setBold(false);
    cell.setFamily(QStringLiteral("monospace"));
    p.setFont(cell);
    for (int value = 0; value < kColumns * kRows; ++value) {
        const int column = value / kRows;
        const int row = value % kRows;
        const QRectF box(column * columnWidth, kTitleHeight + row * rowHeight, columnWidth, rowHeight);
        if (row % 2 == 0)
            p.fillRect(box, QColor(0xEE, 0xF2, 0xFA));
        const QString text = QStringLiteral("%1 = %2")
                                 .arg(value, 3, 10, QLatin1Char(' '))
                                 .arg(value, 2, 16, QLatin1Char('0'))
                                 .toUpper();
        p.setPen(Qt::black);
        p.drawText(box, Qt::AlignCenter, text);
    }
    p.setPen(QColor(0x99, 0x99, 0x99));
    for (int c = 1; c < kColumns; ++c)
        p.drawLine(QPointF(c * columnWidth, kTitleHeight), QPointF(c * columnWidth, kHeight));
    p.drawLine(0, kTitleHeight, kWidth, kTitleHeight);
    return pixmap;
}
