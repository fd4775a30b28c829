#include "sensors/sensor_selection.h"

#include "consult/session_log.h"
#include "consult/session_outputs.h"
#include "sensors/sensor_displays.h"

using namespace vexorin::sensors;

namespace {
// The words DisplaySensorValues tests SelectedSensor against, in its order,
// with the label each copies. The oxygen sensors' words never equal what
// their buttons set, so their value is not copied.
struct DisplayWord {
    const char* word;
    SensorId source;
};
constexpr DisplayWord kDisplayWords[] = {
    {"Speed", SensorId::Speed},     {"RPM", SensorId::RPM},     {"TPS", SensorId::TPS},
    {"MAF", SensorId::MAF},         {"(L)O2", SensorId::O2L},   {"(R)O2", SensorId::O2R},
    {"A/F", SensorId::AF},          {"Injector", SensorId::INJ}, {"Timing", SensorId::Timing},
    {"IACV", SensorId::IACV},       {"Water", SensorId::Water}, {"Fuel", SensorId::Fuel},
    {"Battery", SensorId::Battery},
};
}  // namespace

SensorSelection::SensorSelection(SensorDisplays& displays, SessionLog& log, SessionOutputs& voice, QObject* parent)
    : QObject(parent), displays_(displays), log_(log), voice_(voice)
{
    DisplaySensorValues.setInterval(100);
    connect(&DisplaySensorValues, &QTimer::timeout, this, &SensorSelection::DisplaySensorValuesTick);
}

void SensorSelection::SelectSensor(SensorId id)
{
    const SensorSpec& s = spec(id);
    displays_.setGraphSensorLabel(QString::fromLatin1(s.graphTitle));
    displays_.setLargeSensorWord(QString::fromLatin1(s.largeWord));
    displays_.setLargeValue(displays_.label(id));

    BarColors large = displays_.barColors(SensorDisplays::kLargeBarIndex);
    const BarColors own = displays_.barColors(int(id));
    large.back = own.back;
    large.start = own.start;
    large.end = own.end;
    displays_.setBarColors(SensorDisplays::kLargeBarIndex, large);

    if (graphMaximum_)
        graphMaximum_(s.barMax);
    displays_.setLargeBarMax(s.barMax);

    for (SensorId other : kPanelOrder)
        displays_.setLabelColor(other, other == id ? SensorDisplays::kSelectedColor : SensorDisplays::kUnselectedColor);

    displays_.setSelectedSensor(QString::fromLatin1(s.selectedWord));
    log_.AddLogMessage(QString::fromLatin1(s.logMessage));
    voice_.say(QString::fromLatin1(s.spokenText));
}

void SensorSelection::DisplaySensorValuesTick()
{
    const QString selected = displays_.selectedSensor();
    for (const DisplayWord& w : kDisplayWords) {
        if (selected == QLatin1String(w.word)) {
            const QString text = displays_.label(w.source);
            displays_.setLargeValue(text);
            displays_.setSelectedSensorValue(text);
            return;
        }
    }
}
