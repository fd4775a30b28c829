// The Active Test's logic: every control sends one three-byte active test
// request at once (10, code, value); "Check Actual" reads the sensors once;
// the cylinder cut, the on/off outputs and the self-learn clear keep their
// state in the labels the window shows.
#pragma once

#include "tools/ecu_tool_tables.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <array>

class ConsultSession;
class SensorStream;

class ActiveTest : public QObject {
    Q_OBJECT
public:
    static constexpr int kSparkMs = 100;
    static constexpr int kSelfLearnMs = 10000;

    // The three options of the group "Active Tests".
    static constexpr std::array<const char*, 3> kTestOptions{"Water Temp", "Power Balance", "VTC Release Point"};

    // `stream` fills the main window's sensor labels at "Check Actual"; it may be null.
    ActiveTest(ConsultSession& session, SensorStream* stream, QObject* parent = nullptr);

    QTimer SparkTimer;
    QTimer SelfLearnTimer;

    // Labels.
    QString OnOffLabel = QStringLiteral("ON");
    std::array<QString, vexorin::tools::kOnOffCount> onOffLabels;   // OnOffLabel1..5, FuelPumpLabel
    QString SelfLearnLabel = QStringLiteral("Full");
    QString WaterTempLabel = QStringLiteral("0");
    QString RPMLabel = QStringLiteral("0");
    QString MAFLabel = QStringLiteral("0");
    QString TPSLabel = QStringLiteral("0");
    QString IACVLabel = QStringLiteral("0");
    QString trimLabel(vexorin::tools::Trim trim) const { return trimLabels_[std::size_t(trim)]; }

    // Scrolls.
    int waterTempPosition() const { return waterTemp_; }
    bool waterTempEnabled() const { return waterTempEnabled_; }
    int trimPosition(vexorin::tools::Trim trim) const { return trims_[std::size_t(trim)]; }

    // Cylinder list and spark pictures.
    int selectedCylinder() const { return cylinder_; }
    bool firstSparkVisible() const { return firstSpark_; }
    bool secondSparkVisible() const { return secondSpark_; }

    // A change of a scroll's position (nothing happens when it is the same).
    void setWaterTempPosition(int degreesF);
    void setTrimPosition(vexorin::tools::Trim trim, int position);
    // "Check Actual".
    void CheckActual();
    void GetSensorInfo();
    // One of the on/off buttons, by its row in kOnOffs.
    void pressOnOff(int index);
    // "Clear" of "Clear Self Learn".
    void ClearSelfLearn();
    void SelfLearnTimerTick();
    // Choosing in the cylinder list (0..5).
    void selectCylinder(int index);
    void CylinderOnOff();
    void SparkTimerTick();
    // A click on one of the three "Active Tests" options.
    void chooseTestOption(int index);
    // The window is unloaded.
    void closing();
    // The RPM text the sensor stream hands over.
    void setRpmText(const QString& text);

signals:
    void changed();

private:
    void showActual(const std::vector<std::uint8_t>& reply);
    void send(int code, int value);

    ConsultSession& session_;
    SensorStream* stream_;
    int waterTemp_ = 0;
    bool waterTempEnabled_ = false;
    std::array<int, 3> trims_{vexorin::tools::kTrimMiddle, vexorin::tools::kTrimMiddle, vexorin::tools::kTrimMiddle};
    std::array<QString, 3> trimLabels_;
    int cylinder_ = -1;
    bool firstSpark_ = true;
    bool secondSpark_ = false;
};
