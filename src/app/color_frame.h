// The colour frame: back, start and end colours for one sensor bar or all
// fourteen, shown live while picking and stored on OK.
#pragma once

#include <QObject>
#include <QString>
#include <array>

class FrameSpot;
class SensorDisplays;
class SettingsStore;

class ColorFrame : public QObject {
    Q_OBJECT
public:
    // ColorSwitch 0 is every bar; 1..14 one bar each.
    struct Target {
        const char* menuItem;
        const char* caption;
        int bar;  // index in SensorDisplays' bar colours; -1 for all
        const char* section;
    };
    static constexpr int kTargets = 15;
    static const std::array<Target, kTargets> kTargetTable;
    // The bars in the order "all" sets and stores them.
    static const std::array<int, 14> kAllOrder;
    enum Picker { Back, Start, End };

    ColorFrame(SettingsStore& store, SensorDisplays& displays, FrameSpot& spot, QObject* parent = nullptr);

    int ColorSwitch() const { return colorSwitch_; }
    QString caption() const { return caption_; }
    quint32 pickerColor(Picker p) const { return pickers_[std::size_t(p)]; }

    // A menu item: caption and switch, then the frame at the shared spot.
    void ShowFrame(int colorSwitch);
    // A click in a picker: the target bar (or every bar) shows it at once.
    void pick(Picker p, quint32 bgr);
    void OK();
    void Cancel();

    // Start-up: every bar's three stored colours. A store that holds none of
    // them (the first run) leaves the design colours; otherwise a missing
    // value reads as 0.
    void restore();

signals:
    void changed();

private:
    void applyPreview();
    void writeBar(const char* section);

    SettingsStore& store_;
    SensorDisplays& displays_;
    FrameSpot& spot_;
    int colorSwitch_ = 0;
    QString caption_;
    std::array<quint32, 3> pickers_{};
};
