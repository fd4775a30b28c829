// "Vexorin Dash": twelve live values in large print (no A/F).
#pragma once

#include <QWidget>
#include <array>

class QLabel;
class SensorDisplays;

class DashWindow : public QWidget {
    Q_OBJECT
public:
    explicit DashWindow(SensorDisplays& displays, QWidget* parent = nullptr);

    // The value label of a Dash entry by its name, such as "DashRPM".
    QLabel* valueLabel(const QString& name) const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void refresh(int id);
    void fitValues();  // the digits as large as the window lets them be

    SensorDisplays& displays_;
    std::array<QLabel*, 13> values_{};
};
