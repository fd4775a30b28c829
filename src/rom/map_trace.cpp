#include "rom/map_trace.h"

#include "consult/consult_session.h"
#include "consult/link_owner.h"
#include "rom/rom_image.h"

using namespace vexorin::rom;

const vexorin::consult::Bytes MapTrace::kRegisters{0x00, 0x01, 0x04, 0x05};

MapTrace::MapTrace(ConsultSession& session, std::function<QString()> path, QObject* parent)
    : QObject(parent), session_(session), path_(std::move(path))
{
    clock_.start();
    now_ = [this] { return clock_.elapsed(); };
}

MapTrace::~MapTrace()
{
    dying_ = true;
    if (on_)
        session_.owner().endStream();
}

void MapTrace::setScale(double scale)
{
    scale_ = scale > 0 ? scale : kDefaultTraceScale;
}

void MapTrace::setOn(bool on)
{
    if (!on) {
        if (on_)
            session_.owner().endStream();
        else
            emit switched(false);
        return;
    }
    if (on_)
        return;
    session_.owner().whenFree(this, [this] { startNow(); });
}

void MapTrace::startNow()
{
    QString why;
    if (!session_.owner().mayUse(LinkOwner::Connected | LinkOwner::MonitoringOff, &why)) {
        emit message(why);
        emit switched(false);
        return;
    }
    if (path_() == QLatin1String(kNoFile)) {
        emit message(QString::fromLatin1(vexorin::rom::kLoadBinFileFirst));
        emit switched(false);
        return;
    }
    if (!readTables(&why)) {
        emit message(why);
        emit switched(false);
        return;
    }
    if (scaleSource_)
        setScale(scaleSource_());
    reader_ = vexorin::consult::RegisterStreamReader(kRegisters.size());
    point_.reset();
    trail_.clear();
    frames_ = 0;
    bytesTaken_ = 0;
    on_ = true;
    const bool started = session_.owner().startStream(
        vexorin::consult::registerStreamPlan(kRegisters), this,
        [this](const vexorin::consult::Bytes& bytes) { onBytes(bytes); }, [this] { onEnded(); });
    if (!started) {
        on_ = false;
        emit switched(false);
        return;
    }
    if (on_)
        emit switched(true);
}

void MapTrace::onEnded()
{
    on_ = false;
    trail_.clear();
    if (!dying_)
        emit switched(false);
}

bool MapTrace::readTables(QString* problem)
{
    std::vector<std::uint8_t> bytes;
    std::string error;
    if (!readImage(path_().toStdString(), bytes, &error)) {
        *problem = QString::fromStdString(vexorin::rom::unreadableText(error));
        return false;
    }
    tables_ = traceTables(bytes);
    return true;
}

void MapTrace::refreshTables()
{
    QString ignored;
    if (on_)
        readTables(&ignored);  // a file that cannot be read now keeps the tables it gave
}

void MapTrace::onBytes(const vexorin::consult::Bytes& bytes)
{
    bytesTaken_ += qint64(bytes.size());
    const std::vector<vexorin::consult::Bytes> frames = reader_.feed(bytes);
    if (frames.empty())
        return;
    const qint64 now = now_();
    for (const vexorin::consult::Bytes& f : frames) {
        // A speed or a voltage whose high byte is out of range leaves the last one standing.
        if (const auto rpm = traceRpm(f[0], f[1]))
            rpm_ = *rpm;
        if (const auto maf = traceMafHundredths(f[2], f[3]))
            maf_ = *maf;
        const TracePoint p = tracePoint(tables_, rpm_, maf_, scale_);
        trail_.push_front({now, p});
        point_ = p;
        ++frames_;
    }
    pruneTrail(now);
    emit moved();
}

void MapTrace::pruneTrail(qint64 now)
{
    while (!trail_.empty() && now - trail_.back().ms > kTrailMs)
        trail_.pop_back();
}

TraceMarks MapTrace::marks(bool fuel) const
{
    TraceMarks m;
    m.on = on_;
    if (!on_ || !point_)
        return m;
    m.row = point_->row;
    m.column = point_->column(fuel);
    const qint64 now = now_();
    for (const Sample& s : trail_) {
        const qint64 age = now - s.ms;
        if (age > kTrailMs)
            break;
        const int row = s.point.row;
        const int column = s.point.column(fuel);
        if (row == m.row && column == m.column)
            continue;
        bool seen = false;
        for (const TraceMarks::Cell& c : m.trail)
            seen = seen || (c.row == row && c.column == column);
        if (!seen)
            m.trail.push_back({row, column, 1.0 - double(age) / kTrailMs});
    }
    if (point_->rowNeighbour.index > 0)
        m.neighbours.push_back({point_->rowNeighbour.index, m.column, point_->rowNeighbour.nearness});
    const Neighbour& across = point_->columnNeighbour(fuel);
    if (across.index > 0)
        m.neighbours.push_back({m.row, across.index, across.nearness});
    return m;
}
