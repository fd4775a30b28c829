#include "tools/tool_pictures.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace vexorin::tools {

namespace {
const QColor kDeepGreen(0, 40, 0);
const QColor kMatrixGreen(0, 200, 70);
const QColor kPaleGreen(192, 255, 192);

// A small repeatable pseudo-random sequence, so every picture looks the same each time.
quint32 next(quint32& state)
{
    state = state * 1664525u + 1013904223u;
    return state >> 8;
}
}  // namespace

QImage downloaderPicture(int index, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(kDeepGreen);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);

    // Falling binary digits; each picture moves them one step on.
    QFont f = p.font();
    f.setPixelSize(qMax(6, size / 10));
    f.setFamily(QStringLiteral("Monospace"));
    p.setFont(f);
    const int columns = 8;
    const int step = size / columns;
    for (int c = 0; c < columns; ++c) {
        quint32 state = quint32(c * 7919 + 17);
        const int speed = 1 + int(next(state) % 3);
        for (int r = -1; r < columns + 1; ++r) {
            const int y = (r * step + index * speed * step / 3) % (size + step);
            const int shade = 60 + int(next(state) % 160);
            p.setPen(QColor(0, shade, shade / 3));
            p.drawText(QRect(c * step, y - step, step, step), Qt::AlignCenter,
                       QString::number(int(next(state) & 1)));
        }
    }

    // The ROM chip, its pins and the share of the spinner as an arc around it.
    const QRectF chip(size * 0.3, size * 0.3, size * 0.4, size * 0.4);
    p.setPen(QPen(kPaleGreen, 1));
    for (int i = 0; i < 4; ++i) {
        const double at = chip.left() + chip.width() * (i + 0.5) / 4;
        p.drawLine(QPointF(at, chip.top() - size * 0.06), QPointF(at, chip.top()));
        p.drawLine(QPointF(at, chip.bottom()), QPointF(at, chip.bottom() + size * 0.06));
        const double y = chip.top() + chip.height() * (i + 0.5) / 4;
        p.drawLine(QPointF(chip.left() - size * 0.06, y), QPointF(chip.left(), y));
        p.drawLine(QPointF(chip.right(), y), QPointF(chip.right() + size * 0.06, y));
    }
    p.setBrush(QColor(10, 20, 10));
    p.drawRoundedRect(chip, 3, 3);
    p.setPen(kMatrixGreen);
    QFont label = f;
    label.setBold(true);
    label.setPixelSize(qMax(6, size / 9));
    p.setFont(label);
    p.drawText(chip, Qt::AlignCenter, QStringLiteral("%1").arg(0x80 + (index - 1) * 5, 2, 16, QLatin1Char('0')).toUpper());
    p.setPen(QPen(kMatrixGreen, qMax(2, size / 24), Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    const QRectF ring(size * 0.12, size * 0.12, size * 0.76, size * 0.76);
    p.drawArc(ring, 90 * 16, -int(360.0 * 16 * index / kDownloaderPictures));
    return image;
}

QImage downloaderBackground(int width, int height)
{
    QImage image(qMax(1, width), qMax(1, height), QImage::Format_ARGB32_Premultiplied);
    QPainter p(&image);
    QLinearGradient g(0, 0, 0, height);
    g.setColorAt(0, QColor(0, 48, 0));
    g.setColorAt(1, QColor(0, 16, 0));
    p.fillRect(image.rect(), g);
    QFont f = p.font();
    f.setPixelSize(11);
    f.setFamily(QStringLiteral("Monospace"));
    p.setFont(f);
    p.setPen(QColor(0, 58, 16));
    quint32 state = 4242;
    for (int y = 12; y < height; y += 16) {
        QString line;
        for (int x = 0; x < width / 18; ++x)
            line += QStringLiteral("%1 ").arg(int(next(state) & 0xFF), 2, 16, QLatin1Char('0')).toUpper();
        p.drawText(4, y, line);
    }
    return image;
}

QImage sparkPicture(bool firing, int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    const double cx = width / 2.0;
    // Terminal, ceramic insulator, hex nut, thread, electrodes.
    p.setPen(QPen(Qt::black, 1));
    p.setBrush(QColor(150, 150, 150));
    p.drawRect(QRectF(cx - width * 0.08, height * 0.02, width * 0.16, height * 0.1));
    p.setBrush(QColor(245, 245, 240));
    p.drawRoundedRect(QRectF(cx - width * 0.16, height * 0.1, width * 0.32, height * 0.36), 4, 4);
    p.setBrush(QColor(110, 110, 120));
    p.drawRect(QRectF(cx - width * 0.3, height * 0.46, width * 0.6, height * 0.12));
    p.setBrush(QColor(170, 170, 175));
    p.drawRect(QRectF(cx - width * 0.2, height * 0.58, width * 0.4, height * 0.2));
    p.setPen(QPen(QColor(80, 80, 80), 1));
    for (double y = height * 0.6; y < height * 0.78; y += height * 0.03)
        p.drawLine(QPointF(cx - width * 0.2, y), QPointF(cx + width * 0.2, y + height * 0.015));
    p.setPen(QPen(QColor(90, 90, 90), qMax(2.0, width * 0.06)));
    p.drawLine(QPointF(cx, height * 0.78), QPointF(cx, height * 0.84));
    p.drawLine(QPointF(cx + width * 0.18, height * 0.78), QPointF(cx + width * 0.18, height * 0.93));
    p.drawLine(QPointF(cx + width * 0.18, height * 0.93), QPointF(cx - width * 0.02, height * 0.93));
    if (firing) {
        QPainterPath bolt;
        bolt.moveTo(cx, height * 0.845);
        bolt.lineTo(cx + width * 0.06, height * 0.88);
        bolt.lineTo(cx - width * 0.04, height * 0.895);
        bolt.lineTo(cx + width * 0.02, height * 0.925);
        p.setPen(QPen(QColor(255, 230, 0), qMax(1.5, width * 0.05)));
        p.setBrush(Qt::NoBrush);
        p.drawPath(bolt);
        p.setPen(Qt::NoPen);
        QRadialGradient glow(QPointF(cx + width * 0.02, height * 0.885), width * 0.3);
        glow.setColorAt(0, QColor(255, 255, 150, 180));
        glow.setColorAt(1, QColor(255, 200, 0, 0));
        p.setBrush(glow);
        p.drawEllipse(QPointF(cx + width * 0.02, height * 0.885), width * 0.3, width * 0.3);
    }
    return image;
}

}  // namespace vexorin::tools
