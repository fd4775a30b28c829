#include "sensors/sensor_catalog.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

using namespace vexorin::sensors;

namespace {
SensorId idByName(const std::string& name)
{
    static const std::map<std::string, SensorId> ids{
        {"Speed", SensorId::Speed}, {"RPM", SensorId::RPM},         {"TPS", SensorId::TPS},
        {"MAF", SensorId::MAF},     {"O2L", SensorId::O2L},         {"O2R", SensorId::O2R},
        {"INJ", SensorId::INJ},     {"Timing", SensorId::Timing},   {"IACV", SensorId::IACV},
        {"Water", SensorId::Water}, {"Fuel", SensorId::Fuel},       {"Battery", SensorId::Battery},
        {"AF", SensorId::AF}};
    return ids.at(name);
}
}  // namespace

// Every conversion over every byte (and every usable high byte) against a
// table computed independently with exact decimal arithmetic.
TEST(SensorConversions, MatchTheExactDecimalTable)
{
    std::ifstream in(VEXORIN_SOURCE_DIR "/tests/fixtures/sensor_conversions.txt");
    ASSERT_TRUE(in.good());
    std::string line;
    int rows = 0;
    std::map<std::string, int> perSensor;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#')
            continue;
        std::istringstream f(line);
        std::string name, value, text;
        int hi = 0, lo = 0, bar = 0;
        f >> name >> hi >> lo >> value >> text >> bar;
        const SensorReading r = convert(idByName(name), hi, lo);
        ASSERT_EQ(r.value, value) << line;
        ASSERT_EQ(r.text, text) << line;
        ASSERT_EQ(r.barPosition, bar) << line;
        ++rows;
        ++perSensor[name];
    }
    EXPECT_EQ(perSensor.size(), 13u);
    for (const auto& [name, n] : perSensor)
        EXPECT_GE(n, 256) << name;
    EXPECT_EQ(rows, 10 * 256 + 3 * 1024);
}

TEST(SensorConversions, EdgeCasesOfTheCatalogue)
{
    EXPECT_EQ(convert(SensorId::Speed, 0, 0).text, "0");
    const SensorReading speed = convert(SensorId::Speed, 0, 255);
    EXPECT_EQ(speed.text, "316.2");
    EXPECT_GT(speed.barPosition, spec(SensorId::Speed).barMax);
    EXPECT_EQ(convert(SensorId::Speed, 0, 15).text, "18.6");

    const SensorReading rpm = convert(SensorId::RPM, 3, 255);
    EXPECT_EQ(rpm.value, "12787.5");
    EXPECT_EQ(rpm.text, "12788");
    EXPECT_EQ(convert(SensorId::RPM, 0, 81).text, "1012");   // 1012.5, halves to even
    EXPECT_EQ(convert(SensorId::RPM, 0, 81).value, "1012.5");
    EXPECT_EQ(convert(SensorId::RPM, 0, 83).text, "1038");   // 1037.5
    EXPECT_FALSE(highByteUsable(4));
    EXPECT_TRUE(highByteUsable(3));

    EXPECT_EQ(convert(SensorId::Timing, 0, 111).text, "-1");
    const SensorReading timing = convert(SensorId::Timing, 0, 0);
    EXPECT_EQ(timing.text, "110");
    EXPECT_GT(timing.barPosition, spec(SensorId::Timing).barMax);

    EXPECT_EQ(convert(SensorId::Water, 0, 0).text, "-58");
    EXPECT_EQ(convert(SensorId::Water, 0, 50).text, "32");
    EXPECT_EQ(convert(SensorId::Water, 0, 255).text, "401");

    const SensorReading batt = convert(SensorId::Battery, 0, 150);
    EXPECT_EQ(batt.text, "12.00");
    EXPECT_EQ(batt.barPosition, 12);

    const SensorReading iacv = convert(SensorId::IACV, 0, 1);
    EXPECT_EQ(iacv.text, "0.5");
    EXPECT_EQ(iacv.barPosition, 0);

    EXPECT_EQ(convert(SensorId::TPS, 0, 23).text, "0.46");
    EXPECT_EQ(convert(SensorId::MAF, 0, 201).text, "1.01");  // 1.005, halves up
    EXPECT_EQ(convert(SensorId::O2L, 0, 45).barPosition, 4);
    EXPECT_EQ(convert(SensorId::O2L, 0, 46).barPosition, 5);
    EXPECT_EQ(convert(SensorId::TPS, 0, 117).barPosition, 2);  // 2.34 volts
    EXPECT_EQ(convert(SensorId::TPS, 0, 125).barPosition, 2);  // 2.50 volts, halves to even
    EXPECT_EQ(convert(SensorId::INJ, 1, 44).text, "3");        // 300 / 100
}

TEST(SensorConversions, RegionalDecimalSymbol)
{
    const NumberSymbols german{",", "."};
    EXPECT_EQ(convert(SensorId::Battery, 0, 150, german).text, "12,00");
    EXPECT_EQ(convert(SensorId::Speed, 0, 15, german).text, "18,6");
    EXPECT_EQ(convert(SensorId::RPM, 0, 81, german).value, "1012,5");
    EXPECT_EQ(twoDecimalText(123456, german), "1.234,56");
}

TEST(SensorCatalogue, NamesAndWords)
{
    EXPECT_STREQ(spec(SensorId::INJ).largeWord, "INJ");
    EXPECT_STREQ(spec(SensorId::INJ).selectedWord, "Injector");
    EXPECT_STREQ(spec(SensorId::Water).graphTitle, "Water Srnsor");
    EXPECT_STREQ(spec(SensorId::Battery).buttonCaption, "Batt");
    EXPECT_STREQ(spec(SensorId::Battery).largeWord, "Battery");
    EXPECT_STREQ(spec(SensorId::O2R).dashLabel, "DashoO2R");
    EXPECT_EQ(spec(SensorId::AF).dashLabel, nullptr);
    EXPECT_EQ(spec(SensorId::IACV).barMax, 100);
    for (int i = 0; i < kSensorCount; ++i)
        EXPECT_EQ(int(kSensors[std::size_t(i)].id), i);
}

TEST(SensorCatalogue, ByteViewerCells)
{
    EXPECT_EQ(byteViewerCellOf(35), 1);
    EXPECT_EQ(byteViewerCellOf(49), 15);
    EXPECT_EQ(byteViewerCellOf(50), 33);
    EXPECT_EQ(byteViewerCellOf(34), 0);
    EXPECT_EQ(byteViewerCellOf(51), 0);
}

TEST(MilliTest, Rounding)
{
    EXPECT_EQ(Milli(2500).roundHalfEven(), 2);
    EXPECT_EQ(Milli(3500).roundHalfEven(), 4);
    EXPECT_EQ(Milli(-2500).roundHalfEven(), -2);
    EXPECT_EQ(Milli(-1500).roundHalfEven(), -2);
    EXPECT_EQ(Milli(1005).hundredthsHalfUp(), 101);
    EXPECT_EQ(Milli(-58000).plainText({}), "-58");
    EXPECT_EQ(Milli(-500).plainText({}), "-0.5");
    EXPECT_EQ(Milli(0).plainText({}), "0");
}

TEST(SensorCatalog, UnitCaptionsComeFromTheUnitColumn)
{
    using vexorin::sensors::SensorId;
    using vexorin::sensors::unitSymbol;
    EXPECT_STREQ(unitSymbol(SensorId::Speed), "mph");
    EXPECT_STREQ(unitSymbol(SensorId::RPM), "rpm");
    for (SensorId id : {SensorId::TPS, SensorId::MAF, SensorId::O2L, SensorId::O2R, SensorId::Battery})
        EXPECT_STREQ(unitSymbol(id), "V");
    EXPECT_STREQ(unitSymbol(SensorId::INJ), "ms");
    EXPECT_STREQ(unitSymbol(SensorId::Timing), "\u00b0");
    EXPECT_STREQ(unitSymbol(SensorId::IACV), "%");
    EXPECT_STREQ(unitSymbol(SensorId::Water), "\u00b0F");
    EXPECT_STREQ(unitSymbol(SensorId::Fuel), "\u00b0F");
    EXPECT_STREQ(unitSymbol(SensorId::AF), "");
}
