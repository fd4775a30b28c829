// Every window beside the main one, in one place: made on first use by its
// maker, shown and raised, known while it lives (the link rule asks which
// tool windows are showing), and unloaded in one fixed order.
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <array>
#include <functional>

class WindowRegistry : public QObject {
    Q_OBJECT
public:
    // The kinds of window, in the order the main window unloads them.
    enum class Kind {
        Credits, HexChart, MapViewer, StartupAnnounce, ByteViewer, GraphTest, BinViewer, BinCompare, BinFileDownloader,
        ActiveTest, FuelCorrection, LogChart, LogPlayer, RegisterViewer, InterfaceCheck, FaultCodes, Dash, ExternalSensors, SensorName,
        SpeechEngines, Splash,
    };
    static constexpr int kKinds = int(Kind::Splash) + 1;

    using QObject::QObject;

    // How the window of a kind is made on first use.
    void setMaker(Kind kind, std::function<QWidget*()> make) { makers_[index(kind)] = std::move(make); }
    // The first living window of a kind, or null; makes none.
    QWidget* existing(Kind kind) const;
    template <class W>
    W* existing(Kind kind) const
    {
        return static_cast<W*>(existing(kind));
    }
    // The first living window of a kind, made now if there is none.
    QWidget* make(Kind kind);
    template <class W>
    W* make(Kind kind)
    {
        return static_cast<W*>(make(kind));
    }
    // Made on first use, shown and raised.
    QWidget* show(Kind kind);
    // A window made elsewhere (a second Map Viewer) belongs to its kind while it lives.
    void add(Kind kind, QWidget* window);
    QList<QWidget*> all(Kind kind) const;
    // Whether any window of the kind is on the screen.
    bool showing(Kind kind) const;
    // Every window, kind by kind in the fixed order: `unloading` hears of each, then it goes.
    void unloadAll(const std::function<void(QWidget*)>& unloading);

private:
    static std::size_t index(Kind kind) { return std::size_t(kind); }

    std::array<std::function<QWidget*()>, kKinds> makers_;
    std::array<QList<QPointer<QWidget>>, kKinds> windows_;
};
