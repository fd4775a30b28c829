// "Vexorin Fuel Correction": the BIN file and its fuel map, the "Correction"
// grid (the suggested figure of every cell with enough samples, light blue
// where it makes the mixture richer, light red where leaner, grey where the
// cell has too few samples) and the "Target A/F" grid (typed figures), the
// wideband channel, the analysis settings, and "Record Run", "Open Runs...",
// "Clear", "Apply..." and "Export CSV...". It shows a FuelCorrection and its
// recorder and forwards input to them.
#pragma once

#include <QColor>
#include <QWidget>
#include <array>
#include <functional>

class ConsultSession;
class ExternalSensors;
class FuelCorrection;
class FuelRunRecorder;
class MapGridWidget;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QTabWidget;
class SensorDisplays;
class SensorStream;
class SettingsStore;

class FuelCorrectionWindow : public QWidget {
    Q_OBJECT
public:
    // Light blue, light red and grey.
    static const QColor kRicherColor;
    static const QColor kLeanerColor;
    static const QColor kFewSamplesColor;

    FuelCorrectionWindow(SettingsStore& store, ConsultSession& session, SensorStream& stream,
                         SensorDisplays& displays, std::function<ExternalSensors*()> gauges,
                         QWidget* parent = nullptr);
    ~FuelCorrectionWindow() override;

    FuelCorrection& correction() { return *correction_; }
    FuelRunRecorder& recorder() { return *recorder_; }
    MapGridWidget* correctionGrid() const { return correctionGrid_; }
    MapGridWidget* targetGrid() const { return targetGrid_; }
    QComboBox* channelBox() const { return channel_; }
    QLabel* statusLabel() const { return status_; }
    QPushButton* recordButton() const { return record_; }

    // The buttons' work, as a click does it.
    void openBin();
    void recordRun(bool on);
    void openRuns();
    void applyCorrection();
    void exportCsv();
    // The wideband channel chosen, 1..8.
    int channel() const;

protected:
    void showEvent(QShowEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    QWidget* buildTop();
    QWidget* buildSettings();
    QWidget* buildButtons();
    void refreshChannels();
    void refreshBin();
    void refreshTargets();
    void refreshCorrection();
    void settingsEdited();
    void targetTyped(int row, int column);

    SettingsStore& store_;
    std::function<ExternalSensors*()> gauges_;
    FuelCorrection* correction_;
    FuelRunRecorder* recorder_;
    QLabel* path_ = nullptr;
    QComboBox* map_ = nullptr;
    QComboBox* channel_ = nullptr;
    std::array<QDoubleSpinBox*, 6> numbers_{};
    QCheckBox* useAlpha_ = nullptr;
    QTabWidget* tabs_ = nullptr;
    MapGridWidget* correctionGrid_ = nullptr;
    MapGridWidget* targetGrid_ = nullptr;
    QPushButton* record_ = nullptr;
    QLabel* status_ = nullptr;
    bool showingTargets_ = false;
};
