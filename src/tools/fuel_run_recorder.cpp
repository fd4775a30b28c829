#include "tools/fuel_run_recorder.h"

#include "consult/consult_session.h"
#include "external/channel_scale.h"
#include "external/external_sensors.h"
#include "sensors/sensor_displays.h"
#include "sensors/sensor_stream.h"
#include "tools/fuel_correction.h"
#include "tools/fuel_run_file.h"
#include "ui/regular_file.h"

#include <QDateTime>

using vexorin::sensors::SensorId;
using namespace vexorin::tools;

FuelRunRecorder::FuelRunRecorder(ConsultSession& session, SensorStream& stream, SensorDisplays& displays,
                                 std::function<ExternalSensors*()> gauges, FuelCorrection& correction,
                                 QObject* parent)
    : QObject(parent),
      session_(session),
      stream_(stream),
      displays_(displays),
      gauges_(std::move(gauges)),
      correction_(correction)
{
    flushTimer_.setInterval(kFlushMs);
    connect(&flushTimer_, &QTimer::timeout, this, &FuelRunRecorder::flush);
}

FuelRunRecorder::~FuelRunRecorder()
{
    stop();
}

QString FuelRunRecorder::defaultFileName()
{
    return QStringLiteral("run-%1.csv").arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
}

QString FuelRunRecorder::refusal(int channel) const
{
    if (session_.ConnectedLabel() == QLatin1String("Disconnected"))
        return QStringLiteral("Consult port not connected.");
    if (session_.MonitorSensorsOnLabel() != QLatin1String("ON"))
        return QStringLiteral("Sensor monitoring must be on.");
    ExternalSensors* gauges = gauges_ ? gauges_() : nullptr;
    if (!gauges || !gauges->link().polling())
        return QStringLiteral("Start the External Gauge Monitor first.");
    if (!gauges->scale(channel))
        return QStringLiteral("Channel %1 has no scale: give it one with its \"Scale...\" button in the External "
                              "Gauge Monitor.")
            .arg(channel);
    return QString();
}

bool FuelRunRecorder::start(const QString& path, int channel)
{
    if (recording())
        return true;
    const QString why = refusal(channel);
    QString problem;
    if (why.isEmpty()) {
        file_.setFileName(path);
        if (vexorin::files::openRegular(file_, QIODevice::WriteOnly | QIODevice::Truncate, &problem)) {
            const QByteArray header = QByteArray(kRunHeader.data(), int(kRunHeader.size())) + '\n';
            if (file_.write(header) != header.size() || !file_.flush()) {
                problem = file_.errorString();
                file_.close();
            }
        }
    }
    if (!why.isEmpty() || !problem.isEmpty()) {
        emit message(why.isEmpty() ? QStringLiteral("The run file could not be written: %1.").arg(problem) : why);
        emit switched(false);
        return false;
    }
    channel_ = channel;
    source_ = gauges_();
    startMs_ = now_ ? now_() : 0;
    clock_.start();
    rows_ = 0;
    buffer_.clear();
    links_ << connect(&stream_, &SensorStream::frameShown, this, &FuelRunRecorder::onFrame)
           << connect(&source_->link(), &ExternalLink::readingTaken, this, &FuelRunRecorder::onReading)
           << connect(&source_->link(), &ExternalLink::pollingChanged, this,
                      [this](bool polling) {
                          if (!polling)
                              stop();
                      })
           << connect(source_, &QObject::destroyed, this, &FuelRunRecorder::stop)
           << connect(&session_, &ConsultSession::labelsChanged, this, &FuelRunRecorder::onLabels);
    correction_.beginLiveRun();
    flushTimer_.start();
    emit switched(true);
    return true;
}

void FuelRunRecorder::stop()
{
    if (!recording())
        return;
    for (const QMetaObject::Connection& c : links_)
        disconnect(c);
    links_.clear();
    flushTimer_.stop();
    flush();
    file_.close();
    correction_.endLiveRun();
    emit switched(false);
}

qint64 FuelRunRecorder::elapsed() const
{
    return now_ ? now_() - startMs_ : clock_.elapsed();
}

void FuelRunRecorder::onLabels()
{
    if (session_.ConnectedLabel() == QLatin1String("Disconnected") ||
        session_.MonitorSensorsOnLabel() != QLatin1String("ON"))
        stop();
}

void FuelRunRecorder::onFrame()
{
    const vexorin::sensors::NumberSymbols& symbols = stream_.numberSymbols();
    std::string texts[5];
    const SensorId ids[5] = {SensorId::RPM, SensorId::MAF, SensorId::TPS, SensorId::Water, SensorId::AF};
    for (int i = 0; i < 5; ++i) {
        texts[i] = plainNumber(displays_.label(ids[i]).toStdString(), symbols.decimal, symbols.group);
        if (texts[i].empty())
            return;  // a label that shows no number gives no row
    }
    const qint64 t = elapsed();
    write(ecuRowLine(t, texts[0], texts[1], texts[2], texts[3], texts[4]));
    EcuRow row{t, 0, 0, 0, 0, 0};
    double* fields[5] = {&row.rpm, &row.maf, &row.tps, &row.water, &row.alpha};
    for (int i = 0; i < 5; ++i)
        *fields[i] = runNumber(texts[i]).value_or(0);
    correction_.addEcuRow(row);
}

void FuelRunRecorder::onReading(int channel, const QString& reply)
{
    if (channel != channel_ || !source_)
        return;
    const auto scale = source_->scale(channel);
    const auto volts = vexorin::external::readingVolts(reply);
    if (!scale || !volts)
        return;  // a reading that is no number is left out
    const std::string figure =
        vexorin::external::roundedFigure(vexorin::external::figureAt(*scale, *volts), scale->decimals).toStdString();
    const std::optional<double> value = runNumber(figure);
    if (!value)
        return;
    const qint64 t = elapsed();
    write(afrRowLine(t, figure));
    correction_.addAfrRow({t, *value}, t);
}

void FuelRunRecorder::write(const std::string& line)
{
    buffer_.append(line.data(), qsizetype(line.size()));
    ++rows_;
}

void FuelRunRecorder::flush()
{
    if (!file_.isOpen())
        return;
    if (!buffer_.isEmpty()) {
        const bool ok = file_.write(buffer_) == buffer_.size() && file_.flush();
        buffer_.clear();
        if (!ok) {
            const QString error = file_.errorString();
            stop();
            emit message(QStringLiteral("The run file could not be written: %1. Recording stopped.").arg(error));
            return;
        }
    }
    correction_.refreshLive(elapsed());
}
