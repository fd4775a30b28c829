#include "graph/graph_control.h"

#include "ui/binary_files.h"
#include "ui/vb_color.h"

#include <QPainter>
#include <QPainterPath>

using namespace vexorin::graph;

GraphControl::GraphControl(const GraphSettings& settings, QObject* parent)
    : QObject(parent), s_(settings)
{
    points_.setChangedHandler([this] { onDataChanged(); });
}

void GraphControl::setProperty(const std::function<void(GraphSettings&)>& change)
{
    change(s_);
    trim();
    fullRepaint();
}

void GraphControl::setSettings(const GraphSettings& s)
{
    setProperty([&s](GraphSettings& t) { t = s; });
}

void GraphControl::setMaxValue(double v) { setProperty([v](GraphSettings& t) { t.MaxValue = v; }); }
void GraphControl::setShowPoints(bool on) { setProperty([on](GraphSettings& t) { t.ShowPoints = on; }); }
void GraphControl::setShowLines(bool on) { setProperty([on](GraphSettings& t) { t.ShowLines = on; }); }
void GraphControl::setBarColor(quint32 c) { setProperty([c](GraphSettings& t) { t.BarColor = c; }); }
void GraphControl::setPointColor(quint32 c) { setProperty([c](GraphSettings& t) { t.PointColor = c; }); }
void GraphControl::setFixedPoints(int n) { setProperty([n](GraphSettings& t) { t.FixedPoints = n; }); }

void GraphControl::setRedraw(bool on)
{
    c_.Redraw = on;
    if (on)
        fullRepaint();
}

void GraphControl::setAppearance(int a)
{
    c_.Appearance = std::int16_t(a);
    emit frameChanged();
}

void GraphControl::setBorderStyle(int b)
{
    c_.BorderStyle = std::int16_t(b);
    emit frameChanged();
}

void GraphControl::resize(const QSize& pixels)
{
    size_ = pixels;
    fullRepaint();
}

void GraphControl::trim()
{
    // The removals must not repaint one by one: the guard holds them off.
    const bool wasGuarded = guard_;
    guard_ = true;
    while (s_.FixedPoints > 0 && points_.Count() > s_.FixedPoints)
        points_.Remove(1);
    guard_ = wasGuarded;
}

void GraphControl::onDataChanged()
{
    if (guard_)
        return;
    guard_ = true;
    trim();
    if (!designMode_)
        fullRepaint();
    guard_ = false;
}

void GraphControl::fillDesignSample()
{
    const bool wasGuarded = guard_;
    guard_ = true;  // the sample must not repaint from inside the repaint
    points_.Clear();
    for (double percent : {80, 10, 70, 25, 50, 45, 15, 85, 5, 75, 65})
        points_.Add((s_.MaxValue - s_.MinValue) * percent / 100 + s_.MinValue);
    guard_ = wasGuarded;
}

void GraphControl::fullRepaint()
{
    const double W0 = double(size_.width()) * kScaleUnitsPerPixel;
    const double H0 = double(size_.height()) * kScaleUnitsPerPixel;
    if (W0 <= 0 || H0 <= 0 || (!c_.Redraw && !designMode_))
        return;
    if (designMode_)
        fillDesignSample();

    if (picDraw_.size() != size_)
        picDraw_ = QImage(size_, QImage::Format_RGB32);
    picDraw_.fill(fromBgr(s_.BackColor));
    const double W = std::floor(W0), H = std::floor(H0);
    geometry_ = layoutGraph(s_, points_.values(), W, H);
    const GraphGeometry& g = geometry_;

    QPainter p(&picDraw_);
    p.scale(1.0 / kScaleUnitsPerPixel, 1.0 / kScaleUnitsPerPixel);
    const double hairline = kScaleUnitsPerPixel;  // one pixel

    // Grid.
    p.setPen(QPen(fromBgr(s_.GridColor), hairline));
    for (double x : g.verticalGrid)
        p.drawLine(QPointF(x, 0), QPointF(x, H));
    for (double y : g.horizontalGrid)
        p.drawLine(QPointF(0, y), QPointF(W, y));

    // Bars, then the line from each point to the next.
    const int drawn = int(g.x.size());
    if (drawn >= 1 && (s_.ShowLines || s_.ShowBars)) {
        for (int i = 0; i < drawn; ++i) {
            if (s_.ShowBars) {
                p.setRenderHint(QPainter::Antialiasing, false);
                p.setPen(QPen(Qt::black, hairline));
                p.setBrush(fromBgr(s_.BarColor));
                p.drawRect(QRectF(QPointF(g.x[std::size_t(i)] - g.B / 2, g.y[std::size_t(i)]),
                                  QPointF(g.x[std::size_t(i)] + g.B / 2, g.Y0)));
            }
            if (s_.ShowLines && i > 0) {
                p.setRenderHint(QPainter::Antialiasing, true);
                p.setPen(QPen(fromBgr(s_.LineColor), hairline * 1.5));
                p.drawLine(QPointF(g.x[std::size_t(i - 1)], g.y[std::size_t(i - 1)]),
                           QPointF(g.x[std::size_t(i)], g.y[std::size_t(i)]));
            }
        }
    }

    if (s_.ShowAxis) {
        p.setRenderHint(QPainter::Antialiasing, false);
        p.setPen(QPen(fromBgr(s_.AxisColor), hairline));
        p.drawLine(QPointF(0, 0), QPointF(0, H));
        p.drawLine(QPointF(0, g.axisY), QPointF(W, g.axisY));
    }

    if (s_.ShowPoints && g.n >= 1) {
        p.setRenderHint(QPainter::Antialiasing, true);
        p.setPen(QPen(Qt::black, hairline * 0.75));
        p.setBrush(fromBgr(s_.PointColor));
        for (int i : g.markedPoints)
            p.drawEllipse(QPointF(g.x[std::size_t(i - 1)], g.y[std::size_t(i - 1)]), kPointRadius, kPointRadius);
    }
    p.end();
    ++repaints_;
    emit painted();
}

bool GraphControl::SaveSettings(const std::string& path, std::string* error) const
{
    PropertyBlob b;
    b.writeBytes(u16("Graph"), s_.bytes());
    b.writeBytes(u16("Points"), points_.blob().serialize());
    return vexorin::files::WriteBytes(path, b.serialize(), error);
}

bool GraphControl::LoadSettings(const std::string& path, std::string* error)
{
    ByteVector bytes;
    if (!vexorin::files::ReadBytes(path, bytes, error))
        return false;
    const auto b = PropertyBlob::parse(bytes, error);
    if (!b)
        return false;
    GraphSettings s;
    if (!GraphSettings::fromBytes(b->readBytes(u16("Graph")), s)) {
        if (error)
            *error = "the graph settings record is damaged";
        return false;
    }
    const auto pointsBlob = PropertyBlob::parse(b->readBytes(u16("Points")), error);
    if (!pointsBlob)
        return false;
    s_ = s;
    const bool ok = points_.fromBlob(*pointsBlob, error);
    trim();
    fullRepaint();
    return ok;
}

ByteVector GraphControl::stateBlob() const
{
    PropertyBlob b;
    b.writeBytes(u16("Control"), c_.bytes());
    b.writeBytes(u16("Graph"), s_.bytes());
    return b.serialize();
}

bool GraphControl::applyState(const ByteVector& blob, std::string* error)
{
    const auto b = PropertyBlob::parse(blob, error);
    if (!b)
        return false;
    // Each record falls back on the current one when it is missing or damaged.
    GraphControlRecord c = c_;
    GraphControlRecord::fromBytes(b->readBytes(u16("Control")), c);
    GraphSettings s = s_;
    GraphSettings::fromBytes(b->readBytes(u16("Graph")), s);
    c_ = c;
    s_ = s;
    emit frameChanged();
    fullRepaint();
    return true;
}
