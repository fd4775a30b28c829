// The E.C.U. Register Viewer's logic: one register bank read live from the
// ECU into a 17 by 17 matrix, eight addresses a tick, with address headings
// in the ECU or the EPROM form, the named regions painted and converted on a
// double-click, and cell clicks that show a row's addresses.
#pragma once

#include "rom/map_grid.h"

#include <QObject>
#include <optional>
#include <vector>
#include <QString>
#include <QStringList>
#include <QTimer>

class ConsultSession;

class RegisterViewer : public QObject {
    Q_OBJECT
public:
    static constexpr int kTimerMs = 250;
    static constexpr vexorin::rom::Rgb kWhite{255, 255, 255};
    static constexpr vexorin::rom::Rgb kDesignHighlight{255, 255, 128};

    enum class Mode { Ecu, Eprom };

    explicit RegisterViewer(ConsultSession& session, QObject* parent = nullptr);

    QTimer FindRegisterHexTimer;
    QTimer FindRegisterDecTimer;

    int CurrentBank = 255;
    int CurrentByte = -1;

    const MapGrid& matrix() const { return matrix_; }
    int cursorRow() const { return cursorRow_; }
    int cursorColumn() const { return cursorColumn_; }
    int clickedRow() const { return clickedRow_; }
    int clickedColumn() const { return clickedColumn_; }
    Mode mode() const { return mode_; }
    bool optionsEnabled() const { return optionsEnabled_; }
    bool listEnabled() const { return listEnabled_; }
    int selectorBank() const { return selectorBank_; }
    QString ConvertedLabel() const { return converted_; }
    QString notice() const { return notice_; }
    QStringList regionList() const;
    vexorin::rom::Rgb highlight() const { return highlight_; }
    void setHighlight(vexorin::rom::Rgb color) { highlight_ = color; }
    // "Clear Matrix Before Download": kept, read by nothing.
    bool ClearMatrix = false;

    // The bank selector: choosing an entry starts its download.
    void selectBank(int bank);
    // "Download Register Bank".
    void DownloadRegisterBank();
    // "Stop Data Flow".
    void StopDataFlow();
    void FindRegisterHexTimerTick();
    // "Manual Clear Matrix".
    void ManualClearMatrix();
    void setMode(Mode mode);
    // A double-click on row `index` of the region list.
    void RegionDoubleClicked(int index);
    // A click on a cell of the matrix.
    void CellClicked(int row, int column);

signals:
    void matrixChanged();
    void stateChanged();
    void message(const QString& text);

private:
    void showBurst(const std::optional<std::vector<std::uint8_t>>& reply);
    bool linkDown();
    void startDownload();
    void clearMatrixForDownload();
    void writeHeadings();
    int shownBank() const;
    void paint(int row, int column, vexorin::rom::Rgb color);

    ConsultSession& session_;
    MapGrid matrix_;
    int cursorRow_ = 1;
    int cursorColumn_ = 1;
    int clickedRow_ = 0;
    int clickedColumn_ = 0;
    Mode mode_ = Mode::Ecu;
    bool optionsEnabled_ = true;
    bool listEnabled_ = true;
    int selectorBank_ = 255;
    QString converted_ = QStringLiteral("Converted: ");
    QString notice_;
    vexorin::rom::Rgb highlight_ = kDesignHighlight;
};
