#include "ui/fitted_font.h"

#include <QFontMetrics>

namespace vexorin::ui {

QFont fittedFont(QFont base, const QSize& box, const QString& sample)
{
    const auto fits = [&](int size) {
        base.setPixelSize(size);
        const QFontMetrics fm(base);
        return fm.height() <= box.height() && fm.horizontalAdvance(sample) <= box.width();
    };
    // Halving the range: the metrics grow with the size.
    int low = 8, high = 400;
    while (low < high) {
        const int mid = (low + high + 1) / 2;
        if (fits(mid))
            low = mid;
        else
            high = mid - 1;
    }
    base.setPixelSize(low);
    return base;
}

int digitHeight(const QFont& font)
{
    return QFontMetrics(font).tightBoundingRect(QStringLiteral("0123456789")).height();
}

}  // namespace vexorin::ui
