#include "logging/log_chart.h"

#include "logging/log_file_reading.h"
#include "logging/log_player.h"
#include "sensors/sensor_catalog.h"
#include "ui/regular_file.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <vector>

using namespace vexorin::logging;
using vexorin::sensors::SensorId;

namespace {
// Ticked when a chart opens: what a tuner looks at first.
constexpr SensorId kFirstTicked[] = {SensorId::RPM, SensorId::TPS, SensorId::MAF, SensorId::O2L, SensorId::INJ,
                                     SensorId::Timing};
}  // namespace

LogChart::LogChart(QObject* parent) : QObject(parent)
{
    for (SensorId id : kFirstTicked)
        ticked_[std::size_t(id)] = true;
}

QString LogChart::titleFor(const QString& path)
{
    return QStringLiteral("Log Chart - ") + QFileInfo(path).fileName();
}

const std::array<int, kFrameValues>& LogChart::checkOrder()
{
    static const std::array<int, kFrameValues> order = [] {
        std::array<int, kFrameValues> o{};
        for (std::size_t i = 0; i < o.size(); ++i)
            o[i] = int(vexorin::sensors::kPanelOrder[i]);
        return o;
    }();
    return order;
}

QString LogChart::caption(int k)
{
    return QString::fromLatin1(vexorin::sensors::kSensors[std::size_t(k)].buttonCaption);
}

bool LogChart::load(const QString& path, QString* error)
{
    QFile file(path);
    if (!vexorin::files::openRegular(file, QIODevice::ReadOnly, error))
        return false;
    LogChartData data;
    LogFrameReader reader([&data](const LogFrame& f) { data.add(f); });
    if (feedLog(file, reader, -1, error) < 0)
        return false;
    data.setUnreadable(reader.unreadable());
    data_ = std::move(data);
    path_ = path;
    probe_ = -1;
    showAll();
    followNow();
    return true;
}

QString LogChart::unreadableText() const
{
    return QString::fromStdString(unreadableFramesText(data_.unreadable()));
}

void LogChart::setTicked(int k, bool on)
{
    if (k < 0 || k >= kFrameValues || ticked_[std::size_t(k)] == on)
        return;
    ticked_[std::size_t(k)] = on;
    emit changed();
    emit probeMoved();  // the readout lists the ticked sensors
}

std::vector<int> LogChart::lanes() const
{
    std::vector<int> out;
    for (int k : checkOrder())
        if (ticked_[std::size_t(k)])
            out.push_back(k);
    return out;
}

QString LogChart::rangeText(int k) const
{
    if (data_.frames() == 0)
        return {};
    const auto text = [k](double v) { return QString::fromStdString(LogChartData::numberText(k, v)); };
    const QString unit = QString::fromUtf8(vexorin::sensors::unitSymbol(SensorId(k)));
    QString range = text(data_.minimum(k)) + QStringLiteral(" to ") + text(data_.maximum(k));
    if (!unit.isEmpty())
        range += (unit.startsWith(QChar(0x00b0)) ? QString() : QStringLiteral(" ")) + unit;
    return range;
}

QString LogChart::seriesName(int k) const
{
    const QString range = rangeText(k);
    return range.isEmpty() ? caption(k) : caption(k) + QLatin1Char(' ') + range;
}

void LogChart::zoom(double factor, double centre)
{
    if (data_.frames() == 0)
        return;
    range_ = range_.zoomed(factor, centre, 1, double(data_.frames()));
    emit changed();
}

void LogChart::pan(double frames)
{
    if (data_.frames() == 0)
        return;
    range_ = range_.panned(frames, 1, double(data_.frames()));
    emit changed();
}

void LogChart::showAll()
{
    const double last = double(std::max<std::int64_t>(1, data_.frames()));
    range_ = {1, std::max(last, 1 + ChartRange::kMinimumSpan)};
    emit changed();
}

std::int64_t LogChart::frameNear(double x) const
{
    if (data_.frames() == 0 || !std::isfinite(x))
        return -1;
    return std::clamp<std::int64_t>(std::int64_t(std::llround(x)) - 1, 0, data_.frames() - 1);
}

QString LogChart::readout(std::int64_t index) const
{
    if (index < 0 || index >= data_.frames())
        return {};
    QStringList parts;
    for (int k : lanes())
        parts << caption(k) + QLatin1Char(' ') + QString::fromStdString(data_.valueText(k, index));
    return QStringLiteral("Frame %1: ").arg(index + 1) + parts.join(QStringLiteral(", "));
}

void LogChart::setProbe(std::int64_t index)
{
    if (data_.frames() == 0)
        return;
    index = std::clamp<std::int64_t>(index, 0, data_.frames() - 1);
    if (index == probe_)
        return;
    probe_ = index;
    emit probeMoved();
}

void LogChart::moveProbe(std::int64_t frames)
{
    if (data_.frames() == 0)
        return;
    const std::int64_t from = probe_ >= 0 ? probe_ : (cursor_ >= 0 ? cursor_ : frameNear(range_.from));
    setProbe(from + frames);
    keepInView(probe_);
}

void LogChart::goToFrame(std::int64_t index)
{
    setProbe(index);
    if (probe_ >= 0)
        keepInView(probe_);
}

void LogChart::keepInView(std::int64_t index)
{
    const double x = double(index + 1);
    if (x < range_.from)
        pan(x - range_.from);
    else if (x > range_.to)
        pan(x - range_.to);
}

void LogChart::followPlayer(LogPlayer* player)
{
    if (player_)
        disconnect(player_, nullptr, this, nullptr);
    player_ = player;
    if (player)
        connect(player, &LogPlayer::changed, this, &LogChart::followNow);
    followNow();
}

void LogChart::followNow()
{
    std::int64_t at = -1;
    if (player_ && player_->pathBox() != LogPlayer::kNoFile && player_->shownLine() >= 0 &&
        vexorin::files::identity(player_->pathBox()) == vexorin::files::identity(path_))
        at = data_.frameAtLine(player_->shownLine());
    if (at == cursor_)
        return;
    cursor_ = at;
    if (at >= 0)
        keepInView(at);  // a playing log carries the view along
    emit cursorMoved();
}

void LogChart::choose(std::int64_t index)
{
    if (index < 0 || index >= data_.frames())
        return;
    setProbe(index);
    emit frameChosen(path_, data_.firstLine(index));
}
