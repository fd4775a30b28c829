#include "logging/log_chart_window.h"

#include "logging/log_chart.h"
#include "ui/message_box.h"
#include "ui/plain_text.h"

#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineSeries>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QValueAxis>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <climits>
#include <cmath>

using namespace vexorin::logging;

namespace {
// Each lane leaves this much of its height free above and below its line.
constexpr double kLaneMargin = 0.1;
constexpr int kDragThreshold = 4;

bool darkPalette(const QPalette& p)
{
    return p.color(QPalette::Window).lightness() < 128;
}

QLineSeries* markerLine(QChart* chart, const QColor& color, Qt::PenStyle style)
{
    auto* s = new QLineSeries(chart);
    QPen pen(color);
    pen.setWidth(2);
    pen.setStyle(style);
    s->setPen(pen);
    chart->addSeries(s);
    return s;
}
}  // namespace

// The chart itself: lanes of the ticked sensors, the Log Player's cursor,
// the readout's frame, and the mouse and keys that move them.
class LogChartView : public QChartView {
public:
    LogChartView(LogChart& c, QWidget* parent) : QChartView(new QChart, parent), c_(c)
    {
        setObjectName(QStringLiteral("Chart"));
        setAccessibleName(QStringLiteral("Chart"));
        setAccessibleDescription(QStringLiteral(
            "Arrows step the frame, Enter shows it in the Log Player, Shift+arrows pan, + and - zoom, 0 shows all"));
        setFocusPolicy(Qt::StrongFocus);
        // Without antialiasing a long log draws in a third of the time; its lines are data, not art.
        setRenderHint(QPainter::Antialiasing, false);
        setMouseTracking(true);
        QChart* ch = chart();
        // Each lane is named on the left with its range: no legend is needed.
        ch->legend()->hide();
        ch->setMargins(QMargins(4, 4, 4, 4));
        x_ = new QValueAxis(ch);
        x_->setLabelFormat(QStringLiteral("%.0f"));
        x_->setTitleText(QStringLiteral("Frame"));
        y_ = new QCategoryAxis(ch);
        y_->setLabelsPosition(QCategoryAxis::AxisLabelsPositionCenter);
        y_->setGridLineVisible(true);
        ch->addAxis(x_, Qt::AlignBottom);
        ch->addAxis(y_, Qt::AlignLeft);
        cursor_ = markerLine(ch, QColor(220, 30, 30), Qt::SolidLine);
        probe_ = markerLine(ch, QColor(120, 120, 120), Qt::DashLine);
        for (QLineSeries* s : {cursor_, probe_}) {
            s->attachAxis(x_);
            s->attachAxis(y_);
        }
        applyTheme();
    }

    void applyTheme()
    {
        chart()->setTheme(darkPalette(palette()) ? QChart::ChartThemeDark : QChart::ChartThemeLight);
        // A theme sets every series' pen: the markers get theirs back.
        QPen cursorPen(QColor(220, 30, 30));
        cursorPen.setWidth(2);
        cursor_->setPen(cursorPen);
        QPen probePen(QColor(128, 128, 128));
        probePen.setStyle(Qt::DashLine);
        probe_->setPen(probePen);
    }

    void rebuild()
    {
        const std::vector<int> lanes = c_.lanes();
        if (lanes != shownLanes_)
            remakeSeries(lanes);
        const double n = double(lanes.size());
        const ChartRange r = c_.range();
        const int columns = std::max(50, int(chart()->plotArea().width()));
        for (std::size_t i = 0; i < series_.size(); ++i) {
            const int k = lanes[i];
            const double base = n - 1 - double(i);
            const double lo = c_.data().minimum(k), hi = c_.data().maximum(k);
            const double scale = hi > lo ? (1 - 2 * kLaneMargin) / (hi - lo) : 0;
            QList<QPointF> points;
            for (const ChartPoint& p : c_.data().envelope(k, r.from, r.to, columns))
                points.append(QPointF(p.frame, scale > 0 ? base + kLaneMargin + (p.value - lo) * scale : base + 0.5));
            series_[i]->replace(points);
            series_[i]->setName(c_.seriesName(k));
        }
        x_->setRange(r.from, r.to);
        placeMarkers();
    }

    void placeMarkers()
    {
        const double top = std::max<double>(1, double(shownLanes_.size()));
        const auto place = [top](QLineSeries* s, std::int64_t index) {
            s->setVisible(index >= 0);
            if (index >= 0)
                s->replace(QList<QPointF>{{double(index + 1), 0}, {double(index + 1), top}});
        };
        place(cursor_, c_.cursor());
        place(probe_, c_.probe() != c_.cursor() ? c_.probe() : -1);
    }

    double frameAt(const QPoint& pos) const
    {
        const QRectF area = chart()->plotArea();
        const QPointF at = chart()->mapFromScene(mapToScene(pos));
        const ChartRange r = c_.range();
        if (area.width() <= 0)
            return r.from;
        return r.from + (at.x() - area.left()) / area.width() * r.span();
    }

protected:
    void resizeEvent(QResizeEvent* e) override
    {
        QChartView::resizeEvent(e);
        rebuild();  // as many points as the plot has columns
    }

    void wheelEvent(QWheelEvent* e) override
    {
        const double notches = e->angleDelta().y() / 120.0;
        if (notches != 0)
            c_.zoom(std::pow(0.8, notches), frameAt(e->position().toPoint()));
        e->accept();
    }

    void mousePressEvent(QMouseEvent* e) override
    {
        if (e->button() != Qt::LeftButton)
            return QChartView::mousePressEvent(e);
        pressAt_ = lastAt_ = e->pos();
        pressed_ = true;
        dragging_ = false;
        setFocus(Qt::MouseFocusReason);
        e->accept();
    }

    void mouseMoveEvent(QMouseEvent* e) override
    {
        if (pressed_) {
            if ((e->pos() - pressAt_).manhattanLength() > kDragThreshold)
                dragging_ = true;
            if (dragging_) {
                const double width = chart()->plotArea().width();
                if (width > 0)
                    c_.pan(-(e->pos().x() - lastAt_.x()) / width * c_.range().span());
                lastAt_ = e->pos();
            }
        } else {
            c_.setProbe(c_.frameNear(frameAt(e->pos())));
        }
        e->accept();
    }

    void mouseReleaseEvent(QMouseEvent* e) override
    {
        if (e->button() != Qt::LeftButton || !pressed_)
            return QChartView::mouseReleaseEvent(e);
        pressed_ = false;
        if (!dragging_)
            c_.choose(c_.frameNear(frameAt(e->pos())));
        dragging_ = false;
        e->accept();
    }

    void keyPressEvent(QKeyEvent* e) override
    {
        const bool shift = e->modifiers() & Qt::ShiftModifier;
        const double tenth = c_.range().span() / 10;
        switch (e->key()) {
        case Qt::Key_Left:
            shift ? c_.pan(-tenth) : c_.moveProbe(-1);
            break;
        case Qt::Key_Right:
            shift ? c_.pan(tenth) : c_.moveProbe(1);
            break;
        case Qt::Key_PageUp:
            c_.moveProbe(-std::max<std::int64_t>(1, std::int64_t(tenth * 5)));
            break;
        case Qt::Key_PageDown:
            c_.moveProbe(std::max<std::int64_t>(1, std::int64_t(tenth * 5)));
            break;
        case Qt::Key_Home:
            c_.moveProbe(-c_.data().frames());
            break;
        case Qt::Key_End:
            c_.moveProbe(c_.data().frames());
            break;
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            zoomAboutProbe(0.5);
            break;
        case Qt::Key_Minus:
            zoomAboutProbe(2);
            break;
        case Qt::Key_0:
            c_.showAll();
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            c_.choose(c_.readoutFrame());
            break;
        default:
            return QChartView::keyPressEvent(e);
        }
        e->accept();
    }

private:
    void zoomAboutProbe(double factor)
    {
        if (c_.probe() >= 0)
            c_.zoom(factor, double(c_.probe() + 1));
        else
            c_.zoomAboutMiddle(factor);
    }

    void remakeSeries(const std::vector<int>& lanes)
    {
        QChart* ch = chart();
        for (QLineSeries* s : series_) {
            ch->removeSeries(s);
            delete s;
        }
        series_.clear();
        for (const QString& label : y_->categoriesLabels())
            y_->remove(label);
        const int n = int(lanes.size());
        // Categories run from the bottom up: the last lane first.
        for (int j = 0; j < n; ++j)
            y_->append(c_.seriesName(lanes[std::size_t(n - 1 - j)]), j + 1);
        y_->setRange(0, std::max(1, n));
        for (int k : lanes) {
            auto* s = new QLineSeries(ch);
            s->setObjectName(QStringLiteral("Series") + LogChart::caption(k));
            ch->addSeries(s);
            s->attachAxis(x_);
            s->attachAxis(y_);
            series_.push_back(s);
        }
        shownLanes_ = lanes;
    }

    LogChart& c_;
    QValueAxis* x_;
    QCategoryAxis* y_;
    QLineSeries* cursor_;
    QLineSeries* probe_;
    std::vector<QLineSeries*> series_;
    std::vector<int> shownLanes_;
    QPoint pressAt_;
    QPoint lastAt_;
    bool pressed_ = false;
    bool dragging_ = false;
};

LogChartWindow::LogChartWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), chart_(new LogChart(this))
{
    setObjectName(QStringLiteral("LogChart"));
    setWindowTitle(QStringLiteral("Log Chart"));
    auto* h = new QHBoxLayout(this);

    auto* sensors = new QGroupBox(tr("Sensors"), this);
    auto* checks = new QVBoxLayout(sensors);
    for (int k : LogChart::checkOrder()) {
        auto* box = new QCheckBox(LogChart::caption(k), sensors);
        box->setObjectName(QStringLiteral("Check") + LogChart::caption(k));
        box->setChecked(chart_->ticked(k));
        connect(box, &QCheckBox::toggled, this, [this, k](bool on) { chart_->setTicked(k, on); });
        checks->addWidget(box);
        checks_[std::size_t(k)] = box;
    }
    checks->addStretch(1);
    h->addWidget(sensors);

    auto* right = new QVBoxLayout;
    view_ = new LogChartView(*chart_, this);
    view_->setMinimumSize(480, 320);
    right->addWidget(view_, 1);
    readout_ = new QLabel(this);
    readout_->setObjectName(QStringLiteral("Readout"));
    readout_->setAccessibleName(tr("Readout"));
    readout_->setWordWrap(true);
    readout_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    right->addWidget(readout_);
    note_ = new QLabel(this);
    note_->setObjectName(QStringLiteral("UnreadableNote"));
    note_->hide();
    right->addWidget(note_);

    auto* buttons = new QHBoxLayout;
    const std::pair<const char*, std::function<void()>> actions[] = {
        {"Zoom In", [this] { chart_->zoomAboutMiddle(0.5); }},
        {"Zoom Out", [this] { chart_->zoomAboutMiddle(2); }},
        {"Show All", [this] { chart_->showAll(); }},
    };
    for (const auto& [caption, action] : actions) {
        auto* b = new QPushButton(QString::fromLatin1(caption), this);
        connect(b, &QPushButton::clicked, this, action);
        buttons->addWidget(b);
    }
    buttons->addStretch(1);
    // The readout's frame by number, and to the Log Player: what a click and
    // the keys do, for any way of input.
    auto* frameLabel = new QLabel(tr("&Frame"), this);
    frame_ = new QSpinBox(this);
    frame_->setObjectName(QStringLiteral("FrameBox"));
    frame_->setAccessibleName(tr("Frame"));
    frame_->setRange(1, 1);
    frame_->setMinimumWidth(frame_->fontMetrics().horizontalAdvance(QStringLiteral("0000000")) + 24);
    frameLabel->setBuddy(frame_);
    connect(frame_, &QSpinBox::valueChanged, this, [this](int v) { chart_->goToFrame(v - 1); });
    auto* show = new QPushButton(QStringLiteral("Show in Log Player"), this);
    connect(show, &QPushButton::clicked, this, [this] { chart_->choose(chart_->readoutFrame()); });
    buttons->addWidget(frameLabel);
    buttons->addWidget(frame_);
    buttons->addWidget(show);
    right->addLayout(buttons);
    h->addLayout(right, 1);

    connect(chart_, &LogChart::changed, this, &LogChartWindow::refreshLanes);
    connect(chart_, &LogChart::cursorMoved, this, &LogChartWindow::refreshCursor);
    connect(chart_, &LogChart::probeMoved, this, &LogChartWindow::refreshReadout);
    resize(980, 620);
    refreshLanes();
    refreshReadout();
    vexorin::ui::keepTextPlain(this);
}

LogChartWindow::~LogChartWindow() = default;

bool LogChartWindow::load(const QString& path)
{
    QString error;
    if (!chart_->load(path, &error)) {
        MessageBoxes::information(this, QStringLiteral("The log file could not be opened: ") + error);
        return false;
    }
    setWindowTitle(LogChart::titleFor(path));
    const QString unreadable = chart_->unreadableText();
    note_->setText(unreadable);
    note_->setVisible(!unreadable.isEmpty());
    refreshReadout();
    return true;
}

QWidget* LogChartWindow::plot() const
{
    return view_;
}

void LogChartWindow::changeEvent(QEvent* e)
{
    QWidget::changeEvent(e);
    if (e->type() == QEvent::PaletteChange) {
        view_->applyTheme();
        view_->rebuild();
    }
}

void LogChartWindow::refreshLanes()
{
    view_->rebuild();
}

void LogChartWindow::refreshCursor()
{
    refreshReadout();  // without a frame of its own the readout follows the cursor
}

void LogChartWindow::refreshReadout()
{
    view_->placeMarkers();
    const std::int64_t frame = chart_->readoutFrame();
    {
        const QSignalBlocker quiet(frame_);
        frame_->setRange(1, int(std::clamp<std::int64_t>(chart_->data().frames(), 1, INT_MAX)));
        if (frame >= 0)
            frame_->setValue(int(frame + 1));
    }
    QString text = chart_->readout(frame);
    if (text.isEmpty())
        text = chart_->data().frames() == 0 && !chart_->path().isEmpty()
                   ? QStringLiteral("The log holds no frames.")
                   : QStringLiteral("Point at the chart to read a frame.");
    readout_->setText(text);
}
