#include "tools/fuel_correction.h"

#include "app/settings/settings_access.h"
#include "rom/backup_file.h"
#include "rom/file_edits.h"
#include "rom/map_figures.h"
#include "rom/rom_image.h"
#include "rom/rules/map_decoding.h"
#include "tools/fuel_settings.h"
#include "ui/regular_file.h"

#include <QFileInfo>
#include <QSaveFile>
#include <limits>

using namespace vexorin::tools;
using vexorin::rom::FigureKind;
using vexorin::rom::kMaps;

namespace {
// A target file is small; anything much longer is no target file.
constexpr qint64 kLongestTargetFile = 64 * 1024;

QString nameOf(const QString& path)
{
    return QFileInfo(path).fileName();
}

std::size_t cellIndex(int row, int column)
{
    return std::size_t((row - 1) * kMapSide + (column - 1));
}

bool insideMap(int row, int column)
{
    return row >= 1 && row <= kMapSide && column >= 1 && column <= kMapSide;
}

bool readImage(const QString& path, std::vector<std::uint8_t>& image, QString* error)
{
    std::string why;
    if (!vexorin::files::ReadBytes(path.toStdString(), image, &why)) {
        *error = QString::fromStdString(why);
        return false;
    }
    if (image.size() != std::size_t(vexorin::rom::kRomSize)) {
        *error = QStringLiteral("it is not a BIN file of %1 bytes").arg(vexorin::rom::kRomSize);
        return false;
    }
    return true;
}

bool saveText(const QString& path, const QByteArray& text, QString* error)
{
    QSaveFile file(path);
    QString problem = vexorin::files::openProblem(path, vexorin::files::Access::Write);
    if (problem.isEmpty() && !(file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit()))
        problem = file.errorString();
    if (error)
        *error = problem;
    return problem.isEmpty();
}
}  // namespace

const char* const FuelCorrection::kCsvHeader =
    "row,col,rpm,tp,samples,measured,target,map,suggested,byte_old,byte_new";

FuelCorrection::FuelCorrection(SettingsStore& store, QObject* parent)
    : QObject(parent), store_(store), settings_(loadFuelSettings(store))
{
    connect(&FileEdits::shared(), &FileEdits::bytesChanged, this, &FuelCorrection::readBinAgain);
}

QStringList FuelCorrection::mapCaptions()
{
    QStringList captions;
    for (int i = 0; i < kFuelMaps; ++i)
        captions << QString::fromLatin1(kMaps[std::size_t(i)].tabCaption);
    return captions;
}

bool FuelCorrection::openBin(const QString& path)
{
    std::vector<std::uint8_t> image;
    QString error;
    if (!readImage(path, image, &error)) {
        emit message(QStringLiteral("%1 could not be opened: %2.").arg(nameOf(path), error));
        return false;
    }
    binPath_ = path;
    image_ = std::move(image);
    loadMap(image_);
    startTargets();
    emit binChanged();
    analyse();
    return true;
}

void FuelCorrection::loadMap(const std::vector<std::uint8_t>& image)
{
    bool ok = false;
    double scale = readSettingOrDefault(store_, Settings::LiveTraceScale).toDouble(&ok);
    if (!ok || !(scale > 0))
        scale = vexorin::rom::kDefaultTraceScale;
    map_ = fuelMapOf(image, kMaps[std::size_t(mapIndex_)].fileOffset(), scale);
}

void FuelCorrection::setMapIndex(int index)
{
    if (index < 0 || index >= kFuelMaps || index == mapIndex_)
        return;
    mapIndex_ = index;
    if (binPath_.isEmpty())
        return;
    loadMap(image_);
    if (!targetsKept_)
        startTargets();
    emit binChanged();
    analyse();
}

QString FuelCorrection::targetPath() const
{
    return binPath_.isEmpty() ? QString() : QString::fromStdString(targetPathFor(binPath_.toStdString()));
}

// The targets of the file beside the BIN file; where there is none, the map's
// figures as the backup holds them (the map before any correction), or as the
// file holds them when there is no backup.
void FuelCorrection::startTargets()
{
    targetsKept_ = false;
    const QString path = targetPath();
    if (QFileInfo::exists(path)) {
        QFile file(path);
        QString problem;
        if (vexorin::files::openRegular(file, QIODevice::ReadOnly, &problem)) {
            const QByteArray text = file.read(kLongestTargetFile + 1);
            std::string why;
            if (const auto targets = parseTargets(std::string_view(text.constData(), std::size_t(text.size())), &why)) {
                targets_ = *targets;
                targetsKept_ = true;
                emit targetsChanged();
                return;
            }
            problem = QString::fromStdString(why);
        }
        emit message(QStringLiteral("The targets in %1 could not be read: %2. They start from the map.")
                         .arg(nameOf(path), problem));
    }
    const QString backup = QString::fromStdString(vexorin::rom::backupPathFor(binPath_.toStdString()));
    std::vector<std::uint8_t> original;
    QString ignored;
    if (backup.isEmpty() || !QFileInfo(backup).isFile() || !readImage(backup, original, &ignored))
        original = image_;
    targets_ = targetsOfMap(fuelMapOf(original, kMaps[std::size_t(mapIndex_)].fileOffset(), 0).bytes);
    emit targetsChanged();
}

bool FuelCorrection::keepTargets()
{
    QString error;
    const std::string text = targetsText(targets_);
    if (!saveText(targetPath(), QByteArray::fromStdString(text), &error)) {
        emit message(QStringLiteral("The targets could not be written to %1: %2.").arg(nameOf(targetPath()), error));
        return false;
    }
    targetsKept_ = true;
    return true;
}

QString FuelCorrection::rpmHeading(int row) const
{
    if (binPath_.isEmpty() || row < 1 || row > kMapSide)
        return QString();
    return QString::number(map_.tables.rpmHeadings[std::size_t(row - 1)]);
}

QString FuelCorrection::tpHeading(int column) const
{
    if (binPath_.isEmpty() || column < 1 || column > kMapSide)
        return QString();
    return QString::number(map_.tables.tpFuelHeadings[std::size_t(column - 1)]);
}

int FuelCorrection::mapByte(int row, int column) const
{
    return insideMap(row, column) ? map_.bytes[cellIndex(row, column)] : 0;
}

double FuelCorrection::target(int row, int column) const
{
    return insideMap(row, column) ? targets_[cellIndex(row, column)] : 0;
}

bool FuelCorrection::setTarget(int row, int column, const QString& text)
{
    if (binPath_.isEmpty() || !insideMap(row, column))
        return false;
    const std::optional<double> figure = vexorin::rom::parseFigure(text.trimmed().toStdString());
    if (!figure || !vexorin::rom::byteForTypedFigure(FigureKind::Fuel, *figure)) {
        emit message(QString::fromStdString(vexorin::rom::figureRangeMessage(FigureKind::Fuel)));
        emit targetsChanged();
        return false;
    }
    // Kept as the file keeps it: two decimals.
    targets_[cellIndex(row, column)] = runNumber(twoDecimals(*figure)).value_or(*figure);
    keepTargets();
    emit targetsChanged();
    analyse();
    return true;
}

void FuelCorrection::setSettings(const FuelSettings& settings)
{
    if (settings == settings_)
        return;
    settings_ = settings;
    saveFuelSettings(store_, settings_);
    analyse();
}

void FuelCorrection::openRuns(const QStringList& paths)
{
    std::int64_t unreadable = 0;
    for (const QString& path : paths) {
        QFile file(path);
        QString problem;
        if (!vexorin::files::openRegular(file, QIODevice::ReadOnly, &problem)) {
            emit message(QStringLiteral("%1 could not be opened: %2.").arg(nameOf(path), problem));
            continue;
        }
        RunReader reader;
        bool header = true;
        while (header && !file.atEnd()) {
            const QByteArray chunk = file.read(1 << 20);
            if (chunk.isEmpty())
                break;
            header = reader.feed(std::string_view(chunk.constData(), std::size_t(chunk.size())));
        }
        if (!header || !reader.finish()) {
            emit message(QStringLiteral("%1 is not a run file: its first line must be \"%2\".")
                             .arg(nameOf(path), QString::fromLatin1(kRunHeader.data(), int(kRunHeader.size()))));
            continue;
        }
        unreadable += reader.unreadable();
        runs_.push_back(reader.take());
    }
    analyse();
    if (unreadable > 0)
        emit message(QStringLiteral("%1 rows could not be read.").arg(unreadable));
}

void FuelCorrection::clear()
{
    std::vector<FuelRun> kept;
    if (live_ >= 0) {
        kept.push_back(FuelRun());
        live_ = 0;
        pending_.clear();
    }
    runs_ = std::move(kept);
    analyse();
}

void FuelCorrection::beginLiveRun()
{
    runs_.push_back(FuelRun());
    live_ = int(runs_.size()) - 1;
    pending_.clear();
}

void FuelCorrection::addEcuRow(const EcuRow& row)
{
    if (live_ >= 0)
        runs_[std::size_t(live_)].ecu.push_back(row);
}

void FuelCorrection::addAfrRow(const AfrRow& row, qint64)
{
    if (live_ >= 0)
        pending_.push_back(row);
}

// A reading is analysed once no frame can come any more that it could pair
// with: frames come stamped with the time they arrive, never earlier than now.
void FuelCorrection::refreshLive(qint64 nowMs)
{
    if (live_ >= 0 && !pending_.empty()) {
        FuelRun& run = runs_[std::size_t(live_)];
        std::size_t taken = 0;
        FuelSample sample;
        for (; taken < pending_.size() && pending_[taken].timeMs - settings_.lagMs < nowMs; ++taken) {
            const AfrRow& reading = pending_[taken];
            run.afr.push_back(reading);
            if (!binPath_.isEmpty() && sampleFor(run, reading, settings_, map_, &sample) == SampleVerdict::Taken) {
                tally_.add(sample);
                dirty_ = true;
            }
        }
        pending_.erase(pending_.begin(), pending_.begin() + std::ptrdiff_t(taken));
    }
    if (dirty_)
        showAdvice();
}

void FuelCorrection::endLiveRun()
{
    if (live_ < 0)
        return;
    refreshLive(std::numeric_limits<qint64>::max() / 2);
    live_ = -1;
    pending_.clear();
}

void FuelCorrection::analyse()
{
    tally_ = CellTally();
    if (!binPath_.isEmpty())
        for (const FuelRun& run : runs_)
            tallyRun(run, settings_, map_, tally_);
    showAdvice();
}

void FuelCorrection::showAdvice()
{
    dirty_ = false;
    advice_ = advise(tally_, map_, targets_, settings_);
    emit adviceChanged();
}

const CellAdvice& FuelCorrection::cell(int row, int column) const
{
    static const CellAdvice none;
    return insideMap(row, column) ? advice_.cells[cellIndex(row, column)] : none;
}

QString FuelCorrection::status() const
{
    return QString::fromStdString(adviceStatus(advice_));
}

QVector<FuelCorrection::Change> FuelCorrection::changes() const
{
    QVector<Change> list;
    for (int r = 1; r <= kMapSide; ++r)
        for (int c = 1; c <= kMapSide; ++c) {
            const CellAdvice& a = cell(r, c);
            if (a.changes())
                list.push_back({r, c, QString::fromStdString(vexorin::rom::FormatAfr(a.byteOld)),
                                QString::fromStdString(vexorin::rom::FormatAfr(a.byteNew))});
        }
    return list;
}

bool FuelCorrection::apply()
{
    if (binPath_.isEmpty())
        return false;
    if (live_ >= 0) {
        emit message(QStringLiteral("Stop recording before applying the correction."));
        return false;
    }
    if (advice_.cellsToChange == 0) {
        emit message(QStringLiteral("Nothing to change."));
        return false;
    }
    // The suggestions hold for the bytes they were worked out from.
    std::vector<std::uint8_t> now;
    QString error;
    if (!readImage(binPath_, now, &error) || now != image_) {
        emit message(error.isEmpty()
                         ? QStringLiteral("The BIN file has changed since it was opened; the analysis now follows it. Nothing was written.")
                         : QStringLiteral("%1 could not be read: %2. Nothing was written.").arg(nameOf(binPath_), error));
        if (error.isEmpty()) {
            image_ = std::move(now);
            loadMap(image_);
            emit binChanged();
            analyse();
        }
        return false;
    }
    if (!targetsKept_ && !keepTargets())
        return false;
    const FileEdits::Backup backup = FileEdits::shared().backupOnFirstEdit(binPath_);
    const int offset = kMaps[std::size_t(mapIndex_)].fileOffset();
    vexorin::rom::ByteWrites writes;
    for (int i = 0; i < kMapCells; ++i)
        if (advice_.cells[std::size_t(i)].changes())
            writes.emplace_back(long(offset + i), advice_.cells[std::size_t(i)].byteNew);
    const int written = int(writes.size());
    if (!FileEdits::shared().write(binPath_, writes, FileEdits::Views::Refresh, &error)) {
        emit message(QStringLiteral("The BIN file could not be written: %1.").arg(error));
        return false;
    }
    // The samples held were measured on the old map.
    clear();
    QString text = QStringLiteral("%1 cells written. The samples were measured on the old map and have been "
                                  "cleared: record a new run to check the result.")
                       .arg(written);
    if (!backup.failure().isEmpty())
        text = backup.failure() + QLatin1Char('\n') + text;
    emit message(text);
    return true;
}

// Another editor (or Apply, or an undo) wrote to the file: the analysis follows the bytes now there.
void FuelCorrection::readBinAgain(const QString& key)
{
    if (binPath_.isEmpty() || FileEdits::key(binPath_) != key)
        return;
    std::vector<std::uint8_t> image;
    QString error;
    if (!readImage(binPath_, image, &error))
        return;
    image_ = std::move(image);
    loadMap(image_);
    emit binChanged();
    analyse();
}

bool FuelCorrection::exportCsv(const QString& path, QString* error) const
{
    QByteArray text = QByteArray(kCsvHeader) + '\n';
    for (int r = 1; r <= kMapSide; ++r)
        for (int c = 1; c <= kMapSide; ++c) {
            const CellAdvice& a = cell(r, c);
            if (!a.enough)
                continue;
            const QStringList fields{QString::number(r), QString::number(c), rpmHeading(r), tpHeading(c),
                                     QString::number(a.samples),
                                     QString::fromStdString(twoDecimals(a.measured)),
                                     QString::fromStdString(twoDecimals(a.target)),
                                     QString::fromStdString(twoDecimals(a.map)),
                                     QString::fromStdString(twoDecimals(a.suggested)),
                                     QString::number(a.byteOld), QString::number(a.byteNew)};
            text += fields.join(QLatin1Char(',')).toLatin1() + '\n';
        }
    return saveText(path, text, error);
}
