// Every section and key of the settings store, in one place.
// A default is the program's own value for a missing key; an empty default
// means the program has none and the reader's rule for an empty value applies.
#pragma once

#include "consult/port_settings.h"
#include <QLatin1StringView>
#include <array>

struct SettingKey {
    QLatin1StringView section;
    QLatin1StringView key;
    QLatin1StringView defaultValue;
};

namespace Settings {
using L = QLatin1StringView;

// Main window geometry, in twips.
inline constexpr SettingKey WindowHeight{L("SetWindowSize"), L("Height"), L("8040")};
inline constexpr SettingKey WindowWidth{L("SetWindowSize"), L("Width"), L("13080")};
inline constexpr SettingKey WindowTop{L("SetWindowSize"), L("Top"), L("375")};
inline constexpr SettingKey WindowLeft{L("SetWindowSize"), L("Left"), L("1140")};

// Options menu.
inline constexpr SettingKey StayOnTop{L("StayOnTop"), L("Setting"), L("")};
// View, Night Mode: the dark palette for driving at night.
inline constexpr SettingKey NightMode{L("NightMode"), L("Setting"), L("")};
// The version page that "Check For Updates" reads.
inline constexpr SettingKey UpdatePage{L("CheckForUpdates"), L("Address"), L("")};
inline constexpr SettingKey Mph{L("MPH"), L("Setting"), L("")};
inline constexpr SettingKey Kph{L("KPH"), L("Setting"), L("")};
inline constexpr SettingKey WindowsSeven{L("WindowsSeven"), L("Setting"), L("")};
inline constexpr SettingKey WindowsXP{L("WindowsXP"), L("Setting"), L("")};
// Fast Logging: the all-sensor stream left running while monitoring.
inline constexpr SettingKey FastLogging{L("FastLogging"), L("Setting"), L("")};

// Consult port.
inline constexpr SettingKey UseConZultInterface{L("UseConZultInterface"), L("Setting"), L("")};
inline constexpr SettingKey NotifyPorts{L("NotifyPorts"), L("Setting"), L("")};
inline constexpr SettingKey PortNumber{L("PortNumber"), L("Setting"), L("")};

// Voice.
inline constexpr SettingKey VoiceMonitorInterval{L("VoiceMonitorInterval"), L("Interval"), L("")};
inline constexpr SettingKey VoiceType{L("VoiceType"), L("Type"), L("")};
inline constexpr SettingKey VoiceOn{L("VoiceOn"), L("Setting"), L("")};
inline constexpr SettingKey StartupAnnounce{L("StartupAnnounce"), L("Setting"), L("")};

// Alerts.
inline constexpr SettingKey SpeedAlertValue{L("SpeedAlert"), L("SpeedAlertValue"), L("")};
inline constexpr SettingKey SpeedAlert{L("SpeedAlert"), L("SpeedAlert"), L("")};
inline constexpr SettingKey SpeedAlertMessage{L("SpeedAlert"), L("SpeedAlertMessage"), L("")};
inline constexpr SettingKey WaterAlertValue{L("WaterAlert"), L("WaterAlertValue"), L("")};
inline constexpr SettingKey WaterAlert{L("WaterAlert"), L("Alert"), L("")};
inline constexpr SettingKey WaterAlertMessage{L("WaterAlert"), L("WaterAlertMessage"), L("")};

// Log capture.
inline constexpr SettingKey LogFileName{L("LogFile"), L("FileName"), L("")};

// Bar colours: the section is the bar's name.
inline constexpr std::array<QLatin1StringView, 14> BarSections{
    L("SPEEDbar"), L("RPMbar"), L("TPSbar"), L("MAFbar"), L("LO2bar"), L("RO2bar"), L("AFbar"),
    L("INJECTORbar"), L("TIMINGbar"), L("IACVbar"), L("WATERbar"), L("FUELbar"), L("BATTERYbar"),
    L("LargeSensorBar")};
inline constexpr QLatin1StringView BackColorKey{"BackColor"};
inline constexpr QLatin1StringView BarStartColorKey{"BarStartColor"};
inline constexpr QLatin1StringView BarEndColorKey{"BarEndColor"};
inline constexpr QLatin1StringView TextColorKey{"TextColor"};

// Graph colours.
inline constexpr SettingKey Graph1PointColor{L("Graph1PointColor"), L("PointColor"), L("")};
inline constexpr SettingKey Graph1BarColor{L("Graph1BarColor"), L("BarColor"), L("")};

// Map Viewer, Live Trace: S of TP = Q x K / (RPM x S).
inline constexpr SettingKey LiveTraceScale{L("LiveTrace"), L("Scale"), L("1024")};

// BIN File Downloader.
inline constexpr QLatin1StringView DownloadBarSection{"bindownloadbar"};
inline constexpr SettingKey MatrixTheme{L("MatrixTheme"), L("Setting"), L("")};

// External sensors.
inline constexpr SettingKey CaptionType{L("CaptionType"), L("Setting"), L("")};
inline constexpr SettingKey ExternalPortNumber{L("ExternalPortNumber"), L("Setting"), L("")};
inline constexpr SettingKey NotifySelected{L("NotifySelected"), L("Setting"), L("")};
inline constexpr QLatin1StringView ExSensorSectionPrefix{"ExSensor"};          // ExSensor1..8, key Setting
inline constexpr QLatin1StringView ExternalSensorSectionPrefix{"ExternalSensor"};  // ExternalSensor1..8, key Setting
// A gauge's scale from volts to a figure: ExSensor1Scale..ExSensor8Scale, numbers with '.' as the decimal mark.
inline constexpr QLatin1StringView ExSensorScaleSectionSuffix{"Scale"};
inline constexpr QLatin1StringView ScaleVolts1Key{"V1"};
inline constexpr QLatin1StringView ScaleFigure1Key{"F1"};
inline constexpr QLatin1StringView ScaleVolts2Key{"V2"};
inline constexpr QLatin1StringView ScaleFigure2Key{"F2"};
inline constexpr QLatin1StringView ScaleUnitKey{"Unit"};
inline constexpr QLatin1StringView ScaleDecimalsKey{"Decimals"};
// "Poll Checked Channels Only": "True" polls only the checked channels.
inline constexpr SettingKey ExternalPollingCheckedOnly{L("ExternalPolling"), L("CheckedOnly"), L("False")};

// Fuel Correction: the analysis settings, numbers with '.' as the decimal mark.
inline constexpr SettingKey FuelCorrectionLag{L("FuelCorrection"), L("Lag"), L("300")};
inline constexpr SettingKey FuelCorrectionMinSamples{L("FuelCorrection"), L("MinSamples"), L("5")};
inline constexpr SettingKey FuelCorrectionMaxChange{L("FuelCorrection"), L("MaxChange"), L("10")};
inline constexpr SettingKey FuelCorrectionMinWater{L("FuelCorrection"), L("MinWater"), L("160")};
inline constexpr SettingKey FuelCorrectionSteadyRpm{L("FuelCorrection"), L("SteadyRpm"), L("150")};
inline constexpr SettingKey FuelCorrectionSteadyTps{L("FuelCorrection"), L("SteadyTps"), L("0.10")};
inline constexpr SettingKey FuelCorrectionUseAlpha{L("FuelCorrection"), L("UseAlpha"), L("True")};

// The built-in simulators: the fuel error of the simulated engine in percent
// (8 runs 8 % lean) and a BIN file served as the simulated ECU's ROM.
inline constexpr SettingKey SimulatorFuelError{L("Simulator"), L("FuelError"), L("0")};
inline constexpr SettingKey SimulatorRomFile{L("Simulator"), L("RomFile"), L("")};

// Linux port discovery: extra device paths (any key, value = path) and the
// remembered COM number of every path seen (key COMn, value = path).
inline constexpr QLatin1StringView ExtraPortsSection = PortSettingKeys::ExtraPortsSection;
inline constexpr QLatin1StringView PortAssignmentsSection = PortSettingKeys::PortAssignmentsSection;

// Diagnostics: when set, every Consult exchange is written to this file.
inline constexpr SettingKey RecordConsultSession{PortSettingKeys::RecordSection, PortSettingKeys::RecordKey, L("")};

}  // namespace Settings
