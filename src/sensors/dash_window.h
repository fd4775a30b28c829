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

private:
    void refresh(int id);

    SensorDisplays& displays_;
    std::array<QLabel*, 13> values_{};
};
