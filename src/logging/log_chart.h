// The Log Chart's logic: a whole log read once, the sensors ticked for the
// chart, the frames on view (zoom and pan), the readout of a frame, and the
// link with the Log Player: the cursor stands on the frame the player shows
// when it shows this log, and choosing a frame on the chart asks for the
// player to show that frame.
#pragma once

#include "logging/log_chart_data.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <array>

class LogPlayer;

class LogChart : public QObject {
    Q_OBJECT
public:
    explicit LogChart(QObject* parent = nullptr);

    // "Log Chart - <file name>".
    static QString titleFor(const QString& path);
    // The sensors in the order of their check boxes (the sensor buttons'
    // order), as indexes of the log's values.
    static const std::array<int, vexorin::logging::kFrameValues>& checkOrder();
    static QString caption(int k);

    // Reads the whole log; false with the reason when it cannot be read.
    bool load(const QString& path, QString* error);
    QString path() const { return path_; }
    const vexorin::logging::LogChartData& data() const { return data_; }
    QString unreadableText() const;

    bool ticked(int k) const { return ticked_[std::size_t(k)]; }
    void setTicked(int k, bool on);
    // The ticked sensors, top lane first.
    std::vector<int> lanes() const;
    // "RPM 650 to 6800 rpm": the sensor's range in this log, the name of its lane.
    QString seriesName(int k) const;

    vexorin::logging::ChartRange range() const { return range_; }
    void zoom(double factor, double centre);
    void zoomAboutMiddle(double factor) { zoom(factor, (range_.from + range_.to) / 2); }
    void pan(double frames);
    void showAll();

    // The frame (from 0) nearest to a frame number on the axis; -1 without frames.
    std::int64_t frameNear(double x) const;
    // "Frame <n>: <sensor> <value>, …" for the ticked sensors; empty for no frame.
    QString readout(std::int64_t index) const;

    // The frame the keyboard stands on (the readout's frame), -1 for none.
    std::int64_t probe() const { return probe_; }
    void setProbe(std::int64_t index);
    void moveProbe(std::int64_t frames);
    // Puts the readout on a frame (from 0) and brings it into view.
    void goToFrame(std::int64_t index);
    // The frame the readout shows: the keyboard's, else the Log Player's; -1 for none.
    std::int64_t readoutFrame() const { return probe_ >= 0 ? probe_ : cursor_; }

    // The Log Player's frame, -1 when it shows no frame of this log.
    std::int64_t cursor() const { return cursor_; }
    void followPlayer(LogPlayer* player);
    // A click or Enter on a frame: the player is asked to show it.
    void choose(std::int64_t index);

signals:
    void changed();         // ticks, lanes or the frames on view
    void cursorMoved();
    void probeMoved();
    void frameChosen(const QString& path, qint64 firstLine);

private:
    void followNow();
    void keepInView(std::int64_t index);
    QString rangeText(int k) const;

    QString path_;
    vexorin::logging::LogChartData data_;
    std::array<bool, vexorin::logging::kFrameValues> ticked_{};
    vexorin::logging::ChartRange range_;
    std::int64_t cursor_ = -1;
    std::int64_t probe_ = -1;
    QPointer<LogPlayer> player_;
};
