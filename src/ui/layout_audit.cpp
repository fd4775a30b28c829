#include "ui/layout_audit.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionGroupBox>
#include <QTextDocument>
#include <QToolButton>

namespace vexorin::ui {

namespace {

const char* const kOverlay = "vexorinOverlay";

// Parts that Qt builds inside its own controls (viewports, scroll bars, line edits of spin boxes).
bool isQtInternal(const QWidget* w)
{
    return w->objectName().startsWith(QLatin1String("qt_"));
}

QString describe(const QWidget* w)
{
    QString text;
    if (auto* l = qobject_cast<const QLabel*>(w))
        text = l->text();
    else if (auto* b = qobject_cast<const QAbstractButton*>(w))
        text = b->text();
    else if (auto* g = qobject_cast<const QGroupBox*>(w))
        text = g->title();
    QString name = QString::fromLatin1(w->metaObject()->className());
    if (!w->objectName().isEmpty())
        name += QLatin1Char(' ') + w->objectName();
    if (!text.isEmpty())
        name += QStringLiteral(" \"") + text.left(40) + QLatin1Char('"');
    return name;
}

QRect inWindow(const QWidget* w, const QWidget* window)
{
    return {w->mapTo(window, QPoint(0, 0)), w->size()};
}

// Where the widget can be seen: its rectangle cut by each of its parents', in window coordinates.
QRect seenRect(const QWidget* w, const QWidget* window)
{
    QRect r = inWindow(w, window);
    for (const QWidget* p = w->parentWidget(); p; p = p->parentWidget()) {
        r &= inWindow(p, window);
        if (p == window)
            break;
    }
    return r;
}

// The rectangle a control lays its text out in and the size the text needs,
// both in the control's coordinates; false for a control without text.
struct TextPlace {
    QRect area;
    QSize needed;
    Qt::Alignment alignment = Qt::AlignCenter;
    QString text;
};

bool labelText(const QLabel* l, TextPlace& t)
{
    if (l->text().isEmpty() || l->textFormat() == Qt::RichText ||
        (l->textFormat() == Qt::AutoText && Qt::mightBeRichText(l->text())))
        return false;
    const QFontMetrics fm(l->font());
    QRect area = l->contentsRect().adjusted(l->margin(), l->margin(), -l->margin(), -l->margin());
    const int indent = l->indent() >= 0 ? l->indent() : (l->frameWidth() > 0 ? fm.horizontalAdvance(QLatin1Char('x')) / 2 : 0);
    if (l->alignment() & Qt::AlignLeft)
        area.setLeft(area.left() + indent);
    else if (l->alignment() & Qt::AlignRight)
        area.setRight(area.right() - indent);
    const int flags = (l->wordWrap() ? Qt::TextWordWrap : 0) | (l->buddy() ? Qt::TextShowMnemonic : 0);
    t.needed = l->wordWrap() ? fm.boundingRect(QRect(0, 0, area.width(), 1 << 20), flags, l->text()).size()
                             : fm.size(flags, l->text());
    t.area = area;
    t.alignment = l->alignment();
    t.text = l->text();
    return true;
}

bool buttonText(const QAbstractButton* b, TextPlace& t)
{
    if (b->text().isEmpty())
        return false;
    const QFontMetrics fm(b->font());
    QSize needed = fm.size(Qt::TextShowMnemonic, b->text());
    if (auto* tool = qobject_cast<const QToolButton*>(b)) {
        if (tool->toolButtonStyle() == Qt::ToolButtonIconOnly)
            return false;
        // A tool button lays out its icon, text and arrow itself: its size hint is what it needs.
        t.area = b->rect();
        t.needed = QSize(tool->sizeHint().width(), needed.height());
        t.text = b->text();
        return true;
    }
    QStyleOptionButton opt;
    opt.initFrom(b);
    opt.text = b->text();
    opt.icon = b->icon();
    opt.iconSize = b->iconSize();
    QStyle::SubElement contents = QStyle::SE_PushButtonContents;
    if (qobject_cast<const QCheckBox*>(b))
        contents = QStyle::SE_CheckBoxContents;
    else if (qobject_cast<const QRadioButton*>(b))
        contents = QStyle::SE_RadioButtonContents;
    else if (auto* p = qobject_cast<const QPushButton*>(b)) {
        if (p->autoDefault())
            opt.features |= QStyleOptionButton::AutoDefaultButton;
        if (p->isFlat())
            opt.features |= QStyleOptionButton::Flat;
    } else {
        return false;
    }
    if (!b->icon().isNull())
        needed.rwidth() += b->iconSize().width() + 4;
    t.area = b->style()->subElementRect(contents, &opt, b);
    t.needed = needed;
    t.alignment = contents == QStyle::SE_PushButtonContents ? Qt::AlignCenter : (Qt::AlignLeft | Qt::AlignVCenter);
    t.text = b->text();
    return true;
}

bool groupTitle(const QGroupBox* g, TextPlace& t)
{
    if (g->title().isEmpty())
        return false;
    QStyleOptionGroupBox opt;
    opt.initFrom(g);
    opt.text = g->title();
    opt.lineWidth = 1;
    opt.textAlignment = g->alignment();
    opt.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
    if (g->isCheckable())
        opt.subControls |= QStyle::SC_GroupBoxCheckBox;
    if (g->isFlat())
        opt.features |= QStyleOptionFrame::Flat;
    t.area = g->style()->subControlRect(QStyle::CC_GroupBox, &opt, QStyle::SC_GroupBoxLabel, g) & g->rect();
    // Style sheets give the title the room of its advance, where a last letter's ink may reach a pixel beyond.
    const QFontMetrics fm(g->font());
    t.needed = QSize(fm.horizontalAdvance(g->title()), fm.height());
    t.alignment = Qt::AlignLeft | Qt::AlignVCenter;
    t.text = g->title();
    return true;
}

bool textOf(const QWidget* w, TextPlace& t)
{
    if (auto* l = qobject_cast<const QLabel*>(w))
        return labelText(l, t);
    if (auto* b = qobject_cast<const QAbstractButton*>(w))
        return buttonText(b, t);
    if (auto* g = qobject_cast<const QGroupBox*>(w))
        return groupTitle(g, t);
    return false;
}

void checkText(const QWidget* w, const QWidget* window, QStringList& problems)
{
    TextPlace t;
    if (!textOf(w, t))
        return;
    if (t.needed.width() > t.area.width() || t.needed.height() > t.area.height()) {
        problems << QStringLiteral("%1 in %2 shows its text cut short: it needs %3 x %4, it has %5 x %6")
                        .arg(describe(w), window->objectName())
                        .arg(t.needed.width()).arg(t.needed.height()).arg(t.area.width()).arg(t.area.height());
        return;
    }
    const QRect text = QStyle::alignedRect(w->layoutDirection(), t.alignment, t.needed, t.area)
                           .translated(w->mapTo(window, QPoint(0, 0)));
    const QRect seen = seenRect(w, window);
    // Wholly out of sight (scrolled away, or lying below the window's edge) is not cut.
    if (seen.intersects(text) && !seen.contains(text))
        problems << QStringLiteral("%1 in %2 is partly hidden by its parent")
                        .arg(describe(w), window->objectName());
}

void checkListRows(const QListWidget* list, const QWidget* window, QStringList& problems)
{
    const QFontMetrics fm(list->font());
    const int room = list->viewport()->width() - 8;
    for (int row = 0; row < list->count(); ++row) {
        const QString text = list->item(row)->text();
        // A wrapping list must show its row's lines; another, the row on one line.
        const bool cut = list->wordWrap()
                             ? fm.boundingRect(QRect(0, 0, room, 1 << 20), Qt::TextWordWrap, text).height() >
                                   list->viewport()->height()
                             : fm.horizontalAdvance(text) > room;
        if (cut) {
            problems << QStringLiteral("%1 in %2 cuts its row \"%3\" (%4 x %5 shown)")
                            .arg(describe(list), window->objectName(), text.left(60))
                            .arg(room).arg(list->viewport()->height());
            return;
        }
    }
}

bool shownIn(const QWidget* w, const QWidget* window)
{
    return w->isVisible() && w->window() == window;
}

// Two shown children of one parent that lie over one another, overlays apart.
void checkSiblings(const QWidget* parent, const QWidget* window, QStringList& problems)
{
    QList<const QWidget*> shown;
    for (const QObject* o : parent->children()) {
        auto* w = qobject_cast<const QWidget*>(o);
        if (w && !w->isWindow() && w->isVisible() && !isQtInternal(w) && !isOverlay(w) && !w->size().isEmpty())
            shown << w;
    }
    for (int i = 0; i < shown.size(); ++i)
        for (int j = i + 1; j < shown.size(); ++j)
            if (shown[i]->geometry().intersects(shown[j]->geometry()))
                problems << QStringLiteral("%1 and %2 in %3 overlap")
                                .arg(describe(shown[i]), describe(shown[j]), window->objectName());
}

bool isLeaf(const QWidget* w)
{
    for (const QObject* o : w->children()) {
        auto* c = qobject_cast<const QWidget*>(o);
        if (c && !c->isWindow() && c->isVisible() && !isQtInternal(c))
            return false;
    }
    return true;
}

bool isOpaque(QWidget* overlay)
{
    QImage image(overlay->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    overlay->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(line[x]) != 255)
                return false;
    }
    return true;
}

// An overlay is opaque and covers every control it lies over whole; an
// in-place editor lies inside the item view it edits.
void checkOverlay(QWidget* overlay, const QWidget* window, const QList<QWidget*>& shown, QStringList& problems)
{
    if (!isOpaque(overlay))
        problems << QStringLiteral("%1 in %2 lies over other controls but lets them show through")
                        .arg(describe(overlay), window->objectName());
    const QRect over = inWindow(overlay, window);
    for (const QWidget* w : shown) {
        if (w == overlay || overlay->isAncestorOf(w) || w->isAncestorOf(overlay) || !isLeaf(w) || isQtInternal(w))
            continue;
        const QRect under = seenRect(w, window);
        if (!under.intersects(over) || over.contains(under))
            continue;
        if (qobject_cast<const QAbstractItemView*>(w) && inWindow(w, window).contains(over))
            continue;
        problems << QStringLiteral("%1 in %2 covers part of %3").arg(describe(overlay), window->objectName(), describe(w));
    }
}

}  // namespace

QWidget* markAsOverlay(QWidget* frame)
{
    frame->setProperty(kOverlay, true);
    return frame;
}

bool isOverlay(const QWidget* widget)
{
    return widget->property(kOverlay).toBool();
}

QStringList layoutProblems(const QWidget* window)
{
    QStringList problems;
    QList<QWidget*> shown;
    for (QWidget* w : window->findChildren<QWidget*>())
        if (shownIn(w, window))
            shown << w;
    checkSiblings(window, window, problems);
    for (QWidget* w : shown) {
        checkText(w, window, problems);
        if (auto* list = qobject_cast<const QListWidget*>(w))
            checkListRows(list, window, problems);
        checkSiblings(w, window, problems);
    }
    for (QWidget* w : shown)
        if (isOverlay(w))
            checkOverlay(w, window, shown, problems);
    return problems;
}

}  // namespace vexorin::ui
