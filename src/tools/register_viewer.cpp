#include "tools/register_viewer.h"

#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/link_writes.h"
#include "consult/read_plans.h"
#include "consult/session_log.h"
#include "rom/register_regions.h"
#include "rom/rom_image.h"
#include "tools/ecu_tool_tables.h"

using namespace vexorin::rom;
using namespace vexorin::tools;
using namespace vexorin::consult;

namespace {
QString hex2(int value)
{
    return QString::fromStdString(hexByte(value));
}
}  // namespace

RegisterViewer::RegisterViewer(ConsultSession& session, QObject* parent)
    : QObject(parent), session_(session)
{
    FindRegisterHexTimer.setInterval(kTimerMs);
    FindRegisterDecTimer.setInterval(kTimerMs);
    connect(&FindRegisterHexTimer, &QTimer::timeout, this, &RegisterViewer::FindRegisterHexTimerTick);
    matrix_.rebuild(true);
}

QStringList RegisterViewer::regionList() const
{
    QStringList rows;
    for (int i = 0; i < kRegionCount; ++i)
        rows.append(QString::fromStdString(mode_ == Mode::Ecu ? ecuFormText(i) : fileFormText(i)));
    return rows;
}

bool RegisterViewer::linkDown()
{
    QString why;
    if (session_.owner().mayUse(LinkOwner::Connected, &why))
        return false;
    emit message(why);
    return true;
}

void RegisterViewer::selectBank(int bank)
{
    if (bank < kFirstBank || bank > kLastBank)
        return;
    selectorBank_ = bank;
    emit stateChanged();
    DownloadRegisterBank();
}

void RegisterViewer::DownloadRegisterBank()
{
    session_.owner().whenFree(this, [this] {
        if (!linkDown())
            startDownload();
    });
}

void RegisterViewer::startDownload()
{
    setMode(Mode::Ecu);
    optionsEnabled_ = false;
    listEnabled_ = false;
    clearMatrixForDownload();
    CurrentBank = selectorBank_;
    writeHeadings();
    for (int c = 1; c < MapGrid::kSize; ++c)
        matrix_.setText(0, c, hex2(c - 1));
    CurrentByte = -1;
    cursorRow_ = 1;
    cursorColumn_ = 1;
    notice_.clear();
    FindRegisterDecTimer.stop();
    FindRegisterHexTimer.start();
    emit matrixChanged();
    emit stateChanged();
}

void RegisterViewer::clearMatrixForDownload()
{
    // One fixed column, no fixed row; both heading lines take the highlight colour.
    matrix_.rebuild(true);
    for (int i = 0; i < MapGrid::kSize; ++i) {
        matrix_.setColor(0, i, highlight_);
        matrix_.setColor(i, 0, highlight_);
    }
}

int RegisterViewer::shownBank() const
{
    return mode_ == Mode::Ecu ? CurrentBank : CurrentBank - kFirstBank;
}

void RegisterViewer::writeHeadings()
{
    const int bank = shownBank();
    matrix_.setText(0, 0, QLatin1Char(' ') + hex2(bank) + QStringLiteral("00-") + hex2(bank) + QStringLiteral("FF"));
    for (int r = 1; r < MapGrid::kSize; ++r)
        matrix_.setText(r, 0, QString::fromStdString(bankRowHeading(bank, (r - 1) * 16)));
}

void RegisterViewer::FindRegisterHexTimerTick()
{
    if (CurrentByte == 255) {
        FindRegisterHexTimer.stop();
        optionsEnabled_ = true;
        listEnabled_ = true;
        emit stateChanged();
        return;
    }
    if (session_.owner().busy())
        return;
    std::vector<int> request;
    do {
        ++CurrentByte;
        request.insert(request.end(), {kCmdReadMemory, CurrentBank, CurrentByte});
    } while (CurrentByte % kBurstAddresses != kBurstAddresses - 1 && CurrentByte < 255);
    session_.owner().run(burstCycle(request, false), this, [this](const LinkOwner::Reply& reply) { showBurst(reply); });
}

void RegisterViewer::showBurst(const std::optional<std::vector<std::uint8_t>>& reply)
{
    if (!reply) {
        FindRegisterHexTimer.stop();
        notice_ = QStringLiteral("No reply from the ECU within %1 seconds: the read has stopped.")
                      .arg(kReplyTimeoutMs / 1000);
        session_.log().AddLogMessage(vexorin::consult::timeoutMessage());
        emit stateChanged();
        return;
    }
    // The echoes, frame start and length are not looked at.
    for (int value : burstData(*reply)) {
        matrix_.setText(cursorRow_, cursorColumn_, hex2(value));
        if (cursorColumn_ < 16) {
            ++cursorColumn_;
        } else {
            cursorColumn_ = 1;
            ++cursorRow_;
            break;
        }
    }
    emit matrixChanged();
}

void RegisterViewer::StopDataFlow()
{
    session_.owner().whenFree(this, [this] {
        if (linkDown())
            return;
        FindRegisterHexTimer.stop();
        FindRegisterDecTimer.stop();
        session_.link().Output({kCmdStop});
        emit stateChanged();
    });
}

void RegisterViewer::ManualClearMatrix()
{
    matrix_.rebuild(true);
    emit matrixChanged();
}

void RegisterViewer::setMode(Mode mode)
{
    mode_ = mode;
    writeHeadings();
    emit matrixChanged();
    emit stateChanged();
}

void RegisterViewer::paint(int row, int column, vexorin::rom::Rgb color)
{
    matrix_.setColor(row, column, color);
}

void RegisterViewer::RegionDoubleClicked(int index)
{
    if (index < 0 || index >= kRegionCount)
        return;
    const RegionView& view = kRegionViews[std::size_t(index)];
    if (selectorBank_ != view.bank) {
        emit message(QString::fromLatin1(kBankNotLoaded) + QStringLiteral("\r\n"));
        return;
    }
    if (view.conversion == Conversion::Message) {
        emit message(QString::fromLatin1(view.message));
        return;
    }
    for (int r = view.row; r <= view.lastRow; ++r)
        for (int c = view.firstColumn; c <= view.lastColumn; ++c)
            paint(r, c, highlight_);
    const std::string first = matrix_.text(view.row, view.firstColumn).toStdString();
    const std::string second = matrix_.text(view.row, view.lastColumn).toStdString();
    converted_ = QStringLiteral("Converted: ") + QString::fromStdString(convertRegion(view.conversion, first, second));
    emit matrixChanged();
    emit stateChanged();
}

void RegisterViewer::CellClicked(int row, int column)
{
    if (row < 1 || column < 1 || row >= MapGrid::kSize || column >= MapGrid::kSize)
        return;
    clickedRow_ = row;
    clickedColumn_ = column;
    paint(row, column, highlight_);
    for (int c = 1; c < MapGrid::kSize; ++c)
        matrix_.setText(0, c, hex2((row - 1) * 16 + c - 1));
    for (int r = 1; r < MapGrid::kSize; ++r)
        paint(r, 0, r == row ? highlight_ : kWhite);
    emit matrixChanged();
}
