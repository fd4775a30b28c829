#include "logging/log_player.h"

#include "ui/regular_file.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <cmath>

const QString LogPlayer::kNoFile = QStringLiteral("C:\\");

namespace {
const QString kEndOfLog = QStringLiteral("End of log file.        ");
const QString kBeginningOfLog = QStringLiteral("Beginning of log file.    ");
// Labels take what the lines hold, but a screenful at most.
constexpr int kMaxLabelText = 4096;

// Frame line k (0-based) goes to this label: the date line to 27, the values to 14..26.
int labelOfLine(int k)
{
    return k == 0 ? 27 : LogPlayer::kFirstLabel + k - 1;
}

constexpr int kBarMaxima[LogPlayer::kBarCount] = {160, 7000, 10, 6, 5, 5, 5, 60, 100, 240, 240, 20, 200};

bool toNumber(const QString& text, double& out)
{
    const QString t = text.trimmed();
    bool ok = false;
    out = QLocale().toDouble(t, &ok);
    if (!ok)
        out = QLocale::c().toDouble(t, &ok);
    return ok && std::isfinite(out) && std::fabs(out) < 2e9;
}
}  // namespace

LogPlayer::LogPlayer(QObject* parent)
    : QObject(parent)
{
    PlayLogTimer.setInterval(225);
    FastReverseTimer.setInterval(10);
    connect(&PlayLogTimer, &QTimer::timeout, this, &LogPlayer::PlayLogTimerTick);
    connect(&FastReverseTimer, &QTimer::timeout, this, &LogPlayer::FastReverseTimerTick);
}

QString LogPlayer::label(int index) const
{
    return index >= kFirstLabel && index < kFirstLabel + kLabelCount ? labels_[std::size_t(index - kFirstLabel)]
                                                                     : QString();
}

int LogPlayer::barMaximum(int index)
{
    return kBarMaxima[index];
}

void LogPlayer::setLabel(int index, const QString& text)
{
    labels_[std::size_t(index - kFirstLabel)] = text.left(kMaxLabelText);
    refreshBars();
}

void LogPlayer::refreshBars()
{
    for (int i = 0; i < kBarCount; ++i) {
        double v = 0;
        if (toNumber(labels_[std::size_t(i)], v))
            bars_[std::size_t(i)] = int(std::nearbyint(v));  // a conversion error leaves the bar
    }
}

void LogPlayer::readFrameIntoLabels()
{
    shownLine_ = reader_.atEnd() ? shownLine_ : reader_.lineNumber();
    for (int k = 0; k < kLabelCount; ++k)
        if (!reader_.atEnd())
            setLabel(labelOfLine(k), QString::fromLocal8Bit(reader_.readLine()));
}

void LogPlayer::OpenLogFileNow(const QString& path)
{
    QString error;
    shownLine_ = -1;
    if (!reader_.open(path, &error)) {
        emit message(QStringLiteral("The log file could not be opened: ") + error);
        emit changed();
        return;
    }
    currentLine_.clear();
    position_ = 0;
    position_ = 14;
    if (reader_.atEnd()) {
        PlayLogTimer.stop();
        FastReverseTimer.stop();
        emit changed();
        emit message(QStringLiteral("End of file."));
        return;
    }
    readFrameIntoLabels();
    emit changed();
}

void LogPlayer::loadChosen(const QString& path)
{
    if (path.isEmpty())
        return;
    stopAndClose();
    path_ = path;
    OpenLogFileNow(path_);
}

void LogPlayer::stopAndClose()
{
    PlayLogTimer.stop();
    FastReverseTimer.stop();
    reader_.close();
}

void LogPlayer::Reload()
{
    if (noFile())
        return;
    PlayLogTimer.stop();
    FastReverseTimer.stop();
    reader_.close();
    OpenLogFileNow(path_);
}

void LogPlayer::readForward(bool tick)
{
    if (noFile())
        return;
    if (!tick) {
        PlayLogTimer.stop();
        FastReverseTimer.stop();
    }
    currentLine_.clear();
    if (reader_.atEnd()) {
        if (tick)
            PlayLogTimer.stop();
        emit message(kEndOfLog);
        return;
    }
    position_ += 14;
    positionBox_ = QString::number(position_);
    shownLine_ = reader_.lineNumber();
    for (int k = 0; k < kLabelCount; ++k) {
        if (!reader_.atEnd())
            currentLine_ = QString::fromLocal8Bit(reader_.readLine());
        setLabel(labelOfLine(k), currentLine_);  // an exhausted file repeats the last line
    }
    emit changed();
    if (reader_.atEnd()) {
        if (tick)
            PlayLogTimer.stop();
        emit message(kEndOfLog);
    }
}

void LogPlayer::stepBack(bool tick)
{
    if (noFile())
        return;
    if (!tick) {
        PlayLogTimer.stop();
        FastReverseTimer.stop();
    }
    if (positionBox_ == QLatin1String("0")) {
        if (tick)
            FastReverseTimer.stop();
        emit message(kBeginningOfLog);
        return;
    }
    counter_ = 0;
    QString error;
    if (!reader_.reopen(&error)) {
        FastReverseTimer.stop();
        emit message(QStringLiteral("The log file could not be opened again: ") + error);
        return;
    }
    // Re-reading `position` lines from the start, done through the line index.
    const bool reached = reader_.seekLine(position_);
    counter_ = reader_.lineNumber();
    positionBox_ = QString::number(position_);
    counterBox_ = QString::number(counter_);
    if (!reached) {
        emit changed();  // the end came first: the display stays as it is
        return;
    }
    position_ -= 14;
    positionBox_ = QString::number(position_);
    counterBox_ = QString::number(counter_);
    readFrameIntoLabels();
    emit changed();
}

void LogPlayer::goToLine(qint64 line)
{
    if (noFile() || line < 0)
        return;
    PlayLogTimer.stop();
    FastReverseTimer.stop();
    QString error;
    if (!reader_.isOpen() && !reader_.reopen(&error)) {
        emit message(QStringLiteral("The log file could not be opened again: ") + error);
        return;
    }
    if (!reader_.seekLine(line) || reader_.atEnd())
        return;  // not in the file (any more): the display stays
    currentLine_.clear();
    position_ = line + 14;
    positionBox_ = QString::number(position_);
    readFrameIntoLabels();
    emit changed();
}

void LogPlayer::Play()
{
    if (noFile())
        return;
    PlayLogTimer.setInterval(225);
    PlayLogTimer.start();
    FastReverseTimer.stop();
}

void LogPlayer::FastForward()
{
    if (noFile())
        return;
    PlayLogTimer.setInterval(10);
    FastReverseTimer.stop();
    PlayLogTimer.start();
}

void LogPlayer::FastReverse()
{
    if (noFile())
        return;
    FastReverseTimer.setInterval(10);
    PlayLogTimer.stop();
    FastReverseTimer.start();
}

void LogPlayer::Pause()
{
    if (noFile())
        return;
    if (PlayLogTimer.isActive() || FastReverseTimer.isActive()) {
        PlayLogTimer.stop();
        FastReverseTimer.stop();
    } else {
        PlayLogTimer.start();
        FastReverseTimer.stop();
    }
}

void LogPlayer::ReadWholeFile(const QString& programDirectory)
{
    if (noFile())
        return;
    if (reader_.isOpen())
        return;  // the slot is taken by the log: the open fails
    QFile f(QDir(programDirectory).filePath(QStringLiteral("log1.txt")));
    if (vexorin::files::openRegular(f, QIODevice::ReadOnly))
        f.read(16 * 1024 * 1024);  // read and dropped: nothing is shown
}

void LogPlayer::closing()
{
    stopAndClose();
    // Closing unloads the window: the next opening finds it as at first load.
    path_ = kNoFile;
    positionBox_ = QStringLiteral("Text14");
    counterBox_.clear();
    currentLine_.clear();
    position_ = 0;
    counter_ = 0;
    shownLine_ = -1;
    labels_.fill(QString());
    bars_.fill(0);
    emit changed();
}
