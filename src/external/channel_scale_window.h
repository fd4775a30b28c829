// "Channel Scale - <sensor name>": the scale of one gauge of the External
// Gauge Monitor. Two points (Volts 1 and Figure 1, Volts 2 and Figure 2), a
// unit and the decimals shown; "Wideband 0-5 V" and "Pressure 0.5-4.5 V" fill
// the fields with a ready-made scale. OK (Enter) checks the fields and applies
// the scale, or names the wrong field in a message box and puts the focus
// there; "None" takes the gauge's scale away; Cancel (Esc) changes nothing.
// It blocks its gauge window while open.
#pragma once

#include "external/channel_scale.h"

#include <QDialog>
#include <array>
#include <functional>
#include <optional>

class QLineEdit;
class QSpinBox;

class ChannelScaleWindow : public QDialog {
    Q_OBJECT
public:
    // Gets the gauge and its new scale (none for "None").
    using Apply = std::function<void(int channel, const std::optional<vexorin::external::ChannelScale>& scale)>;

    explicit ChannelScaleWindow(Apply apply, QWidget* parent = nullptr);

    // Shows the window for a gauge, with this caption and its scale (empty fields without one).
    void openFor(int channel, const QString& caption, const std::optional<vexorin::external::ChannelScale>& scale);
    int channel() const { return channel_; }

    // The box of a field (Decimals: see decimalsBox).
    QLineEdit* field(vexorin::external::ScaleField f) const;
    QSpinBox* decimalsBox() const { return decimals_; }

    // What the preset buttons do: the scale into the fields, nothing applied yet.
    void fill(const vexorin::external::ChannelScale& scale);
    // "None": the gauge shows no figure any more; closes.
    void none();
    // OK: applies the fields' scale and closes, or says what is wrong and stays.
    void accept() override;

private:
    vexorin::external::ScaleEntry entry() const;

    Apply apply_;
    int channel_ = 0;
    // Volts 1, Figure 1, Volts 2, Figure 2, Unit.
    std::array<QLineEdit*, 5> edits_{};
    QSpinBox* decimals_ = nullptr;
};
