// Live Trace: while it is on, the engine speed and the air flow meter's
// voltage stream from the ECU as fast as the line allows, and every frame
// places the engine on the maps (live_trace.h) from the tables of the BIN
// file on view. It shares the Consult link through the link owner: the
// stream ends with one stop byte when the trace is switched off, and it ends
// the same way when anything else wants the link (a download, monitoring, a
// disconnect).
#pragma once

#include "consult/register_stream.h"
#include "rom/rules/live_trace.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

class ConsultSession;

// What a map grid draws of the trace.
struct TraceMarks {
    struct Cell {
        int row = 0;
        int column = 0;
        double weight = 0;  // trail: 1 new .. 0 two seconds old; neighbour: nearness 0..0.5
    };
    bool on = false;
    int row = 0;      // the traced cell, 0 while no frame has come
    int column = 0;
    std::vector<Cell> trail;       // older cells, newest first, each once
    std::vector<Cell> neighbours;  // the row's and the column's, when the value lies between two headings
};

class MapTrace : public QObject {
    Q_OBJECT
public:
    static constexpr int kTrailMs = 2000;
    // The registers streamed: engine speed high and low, air flow meter high and low.
    static const vexorin::consult::Bytes kRegisters;

    // `path` gives the BIN file on view ("C:\" while there is none).
    MapTrace(ConsultSession& session, std::function<QString()> path, QObject* parent = nullptr);
    ~MapTrace() override;

    // The switch: on asks for the link and may be refused (a message, and the
    // switch goes back off); off ends the stream.
    void setOn(bool on);
    bool isOn() const { return on_; }

    // S of TP = Q x K / (RPM x S); a value that is not above 0 keeps the default.
    void setScale(double scale);
    double scale() const { return scale_; }
    // Where the trace reads S each time it goes on (the settings).
    void setScaleSource(std::function<double()> source) { scaleSource_ = std::move(source); }
    const std::function<double()>& scaleSource() const { return scaleSource_; }
    // Reads the tables afresh from the file on view (after a load or an edit).
    void refreshTables();

    // The last frame's point, none before the first frame.
    const std::optional<vexorin::rom::TracePoint>& point() const { return point_; }
    // Frames placed, and bytes taken off the line, since the trace went on.
    qint64 frames() const { return frames_; }
    qint64 bytesTaken() const { return bytesTaken_; }
    // The cells to draw on a fuel or a timing map, now.
    TraceMarks marks(bool fuel) const;

    // The clock of the trail (tests step it).
    void setClock(std::function<qint64()> now) { now_ = std::move(now); }

signals:
    // The switch is on or off now (after a refusal too).
    void switched(bool on);
    // A frame moved the point.
    void moved();
    void message(const QString& text);

private:
    void startNow();
    void onBytes(const vexorin::consult::Bytes& bytes);
    void onEnded();
    bool readTables(QString* problem);
    void pruneTrail(qint64 now);

    struct Sample {
        qint64 ms;
        vexorin::rom::TracePoint point;
    };

    ConsultSession& session_;
    std::function<QString()> path_;
    std::function<qint64()> now_;
    std::function<double()> scaleSource_;
    QElapsedTimer clock_;
    bool on_ = false;
    bool dying_ = false;
    double scale_ = vexorin::rom::kDefaultTraceScale;
    vexorin::rom::TraceTables tables_;
    vexorin::consult::RegisterStreamReader reader_{4};
    int rpm_ = 0;
    int maf_ = 0;
    std::optional<vexorin::rom::TracePoint> point_;
    std::deque<Sample> trail_;
    qint64 frames_ = 0;
    qint64 bytesTaken_ = 0;
};
