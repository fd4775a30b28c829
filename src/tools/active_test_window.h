// The window "Vexorin Active Test": the water temperature substitute, the
// three trims, the power balance test with its cylinder list and spark
// pictures, the solenoids, the fuel pump relay and the self-learn clear.
#pragma once

#include "tools/active_test.h"

#include <QWidget>
#include <array>

class QLabel;
class QListWidget;
class QRadioButton;
class QScrollBar;
class ConsultSession;
class SensorStream;

class ActiveTestWindow : public QWidget {
    Q_OBJECT
public:
    ActiveTestWindow(ConsultSession& session, SensorStream* stream, QWidget* parent = nullptr);

    ActiveTest& test() { return test_; }
    QScrollBar* scroll(const QString& objectName) const;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void refresh();

    ActiveTest test_;
    QScrollBar* waterTemp_ = nullptr;
    std::array<QScrollBar*, 3> trims_{};
    std::array<QLabel*, 3> trimLabels_{};
    std::array<QLabel*, vexorin::tools::kOnOffCount> onOffLabels_{};
    QLabel* waterTempLabel_ = nullptr;
    QLabel* onOffLabel_ = nullptr;
    QLabel* selfLearnLabel_ = nullptr;
    QLabel* rpm_ = nullptr;
    QLabel* maf_ = nullptr;
    QLabel* tps_ = nullptr;
    QLabel* iacv_ = nullptr;
    QLabel* spark1_ = nullptr;
    QLabel* spark2_ = nullptr;
    QListWidget* cylinders_ = nullptr;
};
