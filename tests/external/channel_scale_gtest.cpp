// A gauge's scale: the figure of a reading on the line through two points,
// rounded half up, the ready-made scales, the fields' check, and where the
// scale is kept in the settings.
#include "app/settings/settings_store.h"
#include "external/channel_scale.h"
#include "external/channel_scale_settings.h"
#include "temp_settings.h"

#include <gtest/gtest.h>
#include <limits>

using namespace vexorin::external;

namespace {
const ChannelScale kWideband{0.0, 10.0, 5.0, 20.0, QStringLiteral("AFR"), 2};
const ChannelScale kPressure{0.5, 0.0, 4.5, 100.0, QStringLiteral("psi"), 1};

std::string shown(const ChannelScale& s, const char* reading)
{
    return scaledReading(s, QString::fromLatin1(reading)).toStdString();
}

ScaleEntry entry(const char* v1, const char* f1, const char* v2, const char* f2, const char* unit = "AFR",
                 int decimals = 2)
{
    return {QString::fromLatin1(v1), QString::fromLatin1(f1), QString::fromLatin1(v2), QString::fromLatin1(f2),
            QString::fromLatin1(unit), decimals};
}
}  // namespace

TEST(ChannelScale, BothPointsGiveTheirFigures)
{
    EXPECT_EQ(shown(kWideband, "0.00V"), "10.00 AFR");
    EXPECT_EQ(shown(kWideband, "5.00V"), "20.00 AFR");
    EXPECT_EQ(shown(kPressure, "0.50V"), "0.0 psi");
    EXPECT_EQ(shown(kPressure, "4.50V"), "100.0 psi");
}

TEST(ChannelScale, BetweenThePointsTheLineThroughThem)
{
    EXPECT_EQ(shown(kWideband, "2.34V"), "14.68 AFR");
    EXPECT_EQ(shown(kWideband, "2.50V"), "15.00 AFR");
    EXPECT_EQ(shown(kPressure, "2.50V"), "50.0 psi");
    EXPECT_EQ(shown(kPressure, "1.23V"), "18.3 psi");  // 18.25, half up
}

TEST(ChannelScale, BeyondThePointsTheLineGoesOn)
{
    EXPECT_EQ(shown(kPressure, "0.00V"), "-12.5 psi");
    EXPECT_EQ(shown(kPressure, "0.10V"), "-10.0 psi");
    EXPECT_EQ(shown(kPressure, "5.00V"), "112.5 psi");
    EXPECT_EQ(shown(kWideband, "5.50V"), "21.00 AFR");
    EXPECT_EQ(shown(kWideband, "-1.00V"), "8.00 AFR");
}

TEST(ChannelScale, PointsMayComeInEitherOrderAndFallingFigures)
{
    const ChannelScale falling{4.0, -40.0, 1.0, 110.0, QStringLiteral("C"), 0};
    EXPECT_EQ(shown(falling, "4.00V"), "-40 C");
    EXPECT_EQ(shown(falling, "1.00V"), "110 C");
    EXPECT_EQ(shown(falling, "2.50V"), "35 C");
    EXPECT_EQ(shown(falling, "4.50V"), "-65 C");
}

TEST(ChannelScale, HalvesRoundUpDespiteBinaryNoise)
{
    EXPECT_EQ(shown(kWideband, "2.3375V"), "14.68 AFR");  // 14.675
    EXPECT_EQ(shown(kPressure, "2.33V"), "45.8 psi");      // 45.75
    EXPECT_EQ(roundedFigure(14.675, 2), "14.68");
    EXPECT_EQ(roundedFigure(1.005, 2), "1.01");
    EXPECT_EQ(roundedFigure(0.125, 2), "0.13");
    EXPECT_EQ(roundedFigure(2.5, 0), "3");
    EXPECT_EQ(roundedFigure(14.674999, 2), "14.67");
    // Half up is towards the larger number, on both sides of zero.
    EXPECT_EQ(roundedFigure(-2.5, 0), "-2");
    EXPECT_EQ(roundedFigure(-2.51, 0), "-3");
    EXPECT_EQ(roundedFigure(-14.675, 2), "-14.67");
}

TEST(ChannelScale, NegativeFiguresAndZeroHaveNoStraySign)
{
    EXPECT_EQ(roundedFigure(-0.004, 2), "0.00");
    EXPECT_EQ(roundedFigure(-0.0, 1), "0.0");
    EXPECT_EQ(roundedFigure(-0.05, 2), "-0.05");
    EXPECT_EQ(roundedFigure(-12.5, 1), "-12.5");
    EXPECT_EQ(roundedFigure(0.001, 3), "0.001");
}

TEST(ChannelScale, DecimalsFromNoneToFour)
{
    EXPECT_EQ(roundedFigure(14.68, 0), "15");
    EXPECT_EQ(roundedFigure(14.68, 1), "14.7");
    EXPECT_EQ(roundedFigure(14.68, 4), "14.6800");
    EXPECT_EQ(roundedFigure(3.0, 0), "3");
    EXPECT_EQ(roundedFigure(1.0, 5), "");
    EXPECT_EQ(roundedFigure(1.0, -1), "");
    ChannelScale whole = kWideband;
    whole.decimals = 0;
    EXPECT_EQ(shown(whole, "2.34V"), "15 AFR");
}

TEST(ChannelScale, FiguresTooLargeOrNotFiniteShowNothing)
{
    EXPECT_EQ(roundedFigure(std::numeric_limits<double>::infinity(), 2), "");
    EXPECT_EQ(roundedFigure(std::numeric_limits<double>::quiet_NaN(), 2), "");
    EXPECT_EQ(roundedFigure(1e12, 0), "");
    EXPECT_EQ(roundedFigure(-1e8, 4), "");
    EXPECT_EQ(roundedFigure(1e7, 4), "10000000.0000");
    EXPECT_EQ(roundedFigure(-123456789.125, 2), "-123456789.12");
    EXPECT_EQ(roundedFigure(999999999999.0, 0), "999999999999");
}

TEST(ChannelScale, ReadingsAreReadWithBlanksAndWithoutTheirV)
{
    EXPECT_EQ(readingVolts("2.34V"), 2.34);
    EXPECT_EQ(readingVolts(" 2.34 V\r\n"), 2.34);
    EXPECT_EQ(readingVolts("2.34"), 2.34);
    EXPECT_EQ(readingVolts("2.34v"), 2.34);
    EXPECT_EQ(readingVolts("0.00V"), 0.0);
    EXPECT_EQ(readingVolts("-0.5V"), -0.5);
}

TEST(ChannelScale, NoNumberNoFigure)
{
    for (const char* bad : {"", "   ", "V", "Fuel", "2.34V2.35V", "2,34V", "1,000V", "nanV", "infV", "2.34 Volts",
                            "abc", "0x10V"}) {
        EXPECT_FALSE(readingVolts(QString::fromLatin1(bad))) << bad;
        EXPECT_EQ(shown(kWideband, bad), "") << bad;
    }
}

TEST(ChannelScale, WithoutAUnitTheFigureAlone)
{
    ChannelScale bare = kWideband;
    bare.unit.clear();
    EXPECT_EQ(shown(bare, "2.34V"), "14.68");
}

TEST(ChannelScale, TheTwoReadyMadeScales)
{
    ASSERT_EQ(kScalePresets.size(), 2u);
    EXPECT_STREQ(kScalePresets[0].caption, "Wideband 0-5 V");
    EXPECT_EQ(kScalePresets[0].scale(), kWideband);
    EXPECT_STREQ(kScalePresets[1].caption, "Pressure 0.5-4.5 V");
    EXPECT_EQ(kScalePresets[1].scale(), kPressure);
}

TEST(ChannelScale, SpanTextsAreTheDevicesEnds)
{
    const auto span = spanTexts(kPressure);
    EXPECT_EQ(span[0].toStdString(), "-12.5 psi");
    EXPECT_EQ(span[1].toStdString(), "112.5 psi");
}

TEST(ChannelScale, NumbersForBoxesAndSettings)
{
    EXPECT_EQ(numberText(0.5), "0.5");
    EXPECT_EQ(numberText(100), "100");
    EXPECT_EQ(numberText(-12.25), "-12.25");
    EXPECT_EQ(numberText(-0.0), "0");
    EXPECT_EQ(numberText(1000000), "1000000");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(parseNumber(" 0.5 "), 0.5);
    EXPECT_EQ(parseNumber("0,5"), 0.5);
    EXPECT_EQ(parseNumber("-4"), -4.0);
    EXPECT_FALSE(parseNumber(""));
    EXPECT_FALSE(parseNumber("-"));
    EXPECT_FALSE(parseNumber("1,000.5"));
    EXPECT_FALSE(parseNumber("abc"));
    EXPECT_FALSE(parseNumber("inf"));
}

TEST(ChannelScale, FieldCaptions)
{
    QStringList captions;
    for (int i = 0; i < kScaleFieldCount; ++i)
        captions << fieldCaption(ScaleField(i));
    EXPECT_EQ(captions, (QStringList{"Volts 1", "Figure 1", "Volts 2", "Figure 2", "Unit", "Decimals"}));
}

TEST(ChannelScale, GoodFieldsMakeAScale)
{
    const ScaleCheck c = checkEntry(entry("0", "10", "5", "20"));
    ASSERT_TRUE(c.scale);
    EXPECT_EQ(*c.scale, kWideband);
    EXPECT_TRUE(c.problem.isEmpty());
    // A comma for the mark, blanks around the unit, a unit cut to its length.
    const ScaleCheck d = checkEntry(entry(" 0,5", "0", "4,5 ", "100", "  psi ", 1));
    ASSERT_TRUE(d.scale);
    EXPECT_EQ(*d.scale, kPressure);
    EXPECT_EQ(checkEntry(entry("0", "1", "5", "2", "abcdefghijk")).scale->unit, "abcdefgh");
    EXPECT_EQ(checkEntry(entry("0", "1", "5", "2", "")).scale->unit, "");
}

TEST(ChannelScale, EqualVoltsAreRefused)
{
    const ScaleCheck c = checkEntry(entry("2.5", "10", "2.50", "20"));
    EXPECT_FALSE(c.scale);
    EXPECT_EQ(c.field, ScaleField::Volts2);
    EXPECT_EQ(c.problem.toStdString(),
              "Volts 1 and Volts 2 are the same: the two points need two different voltages.");
}

TEST(ChannelScale, EachBadFieldIsNamed)
{
    struct Case {
        ScaleEntry e;
        ScaleField field;
        const char* problem;
    } cases[] = {
        {entry("", "10", "5", "20"), ScaleField::Volts1, "Volts 1 must be a number, such as 0.5."},
        {entry("0", "x", "5", "20"), ScaleField::Figure1, "Figure 1 must be a number, such as 0."},
        {entry("0", "10", "-", "20"), ScaleField::Volts2, "Volts 2 must be a number, such as 4.5."},
        {entry("0", "10", "5", "."), ScaleField::Figure2, "Figure 2 must be a number, such as 100."},
        {entry("0", "10", "5", "2000000"), ScaleField::Figure2, "Figure 2 must lie between -1000000 and 1000000."},
        {entry("0", "10", "5", "20", "AFR", 5), ScaleField::Decimals, "Decimals must be 0 to 4."},
        {entry("0", "10", "5", "20", "AFR", -1), ScaleField::Decimals, "Decimals must be 0 to 4."},
    };
    for (const Case& c : cases) {
        const ScaleCheck r = checkEntry(c.e);
        EXPECT_FALSE(r.scale) << c.problem;
        EXPECT_EQ(r.field, c.field) << c.problem;
        EXPECT_EQ(r.problem.toStdString(), c.problem);
    }
}

TEST(ChannelScale, FieldsOfAScaleGiveItBack)
{
    for (const ChannelScale& s : {kWideband, kPressure, ChannelScale{-0.25, -3.5, 4.75, 1234.5, "kPa", 3}}) {
        const ScaleCheck c = checkEntry(entryOf(s));
        ASSERT_TRUE(c.scale);
        EXPECT_EQ(*c.scale, s);
    }
}

TEST(ChannelScaleSettings, SavedPerChannelWithAPointForTheMark)
{
    TempSettings t;
    saveChannelScale(*t.store, 4, kPressure);
    const auto read = [&](const char* key) { return t.store->ReadSetting("ExSensor4Scale", key).toStdString(); };
    EXPECT_EQ(read("V1"), "0.5");
    EXPECT_EQ(read("F1"), "0");
    EXPECT_EQ(read("V2"), "4.5");
    EXPECT_EQ(read("F2"), "100");
    EXPECT_EQ(read("Unit"), "psi");
    EXPECT_EQ(read("Decimals"), "1");
    EXPECT_EQ(loadChannelScale(*t.store, 4), kPressure);
    EXPECT_FALSE(loadChannelScale(*t.store, 3));
    EXPECT_EQ(channelScaleSection(8), "ExSensor8Scale");

    // A new store over the same file reads the same scale.
    SettingsStore again(t.file());
    EXPECT_EQ(loadChannelScale(again, 4), kPressure);
}

TEST(ChannelScaleSettings, NoneRemovesTheSection)
{
    TempSettings t;
    saveChannelScale(*t.store, 2, kWideband);
    saveChannelScale(*t.store, 5, kPressure);
    saveChannelScale(*t.store, 2, std::nullopt);
    EXPECT_FALSE(loadChannelScale(*t.store, 2));
    EXPECT_TRUE(t.store->keys("ExSensor2Scale").isEmpty());
    EXPECT_EQ(loadChannelScale(*t.store, 5), kPressure);
}

TEST(ChannelScaleSettings, ABrokenSectionIsNoScale)
{
    TempSettings t;
    const auto write = [&](const char* v1, const char* f1, const char* v2, const char* f2, const char* unit,
                           const char* decimals) {
        t.store->WriteSetting("ExSensor1Scale", "V1", v1);
        t.store->WriteSetting("ExSensor1Scale", "F1", f1);
        t.store->WriteSetting("ExSensor1Scale", "V2", v2);
        t.store->WriteSetting("ExSensor1Scale", "F2", f2);
        t.store->WriteSetting("ExSensor1Scale", "Unit", unit);
        t.store->WriteSetting("ExSensor1Scale", "Decimals", decimals);
    };
    write("0", "10", "5", "20", "AFR", "2");
    ASSERT_EQ(loadChannelScale(*t.store, 1), kWideband);
    write("1", "10", "1", "20", "AFR", "2");  // one voltage twice
    EXPECT_FALSE(loadChannelScale(*t.store, 1));
    write("zero", "10", "5", "20", "AFR", "2");
    EXPECT_FALSE(loadChannelScale(*t.store, 1));
    write("0", "10", "5", "20", "AFR", "");
    EXPECT_FALSE(loadChannelScale(*t.store, 1));
    write("0", "10", "5", "20", "AFR", "2.5");
    EXPECT_FALSE(loadChannelScale(*t.store, 1));
    write("0", "10", "5", "20", "AFR", "9");
    EXPECT_FALSE(loadChannelScale(*t.store, 1));
    write("0", "10", "5", "1e400", "AFR", "2");
    EXPECT_FALSE(loadChannelScale(*t.store, 1));
    t.store->remove("ExSensor1Scale", "F2");  // a key missing
    EXPECT_FALSE(loadChannelScale(*t.store, 1));
    // No unit is a scale all the same.
    write("0", "10", "5", "20", "", "2");
    ChannelScale bare = kWideband;
    bare.unit.clear();
    EXPECT_EQ(loadChannelScale(*t.store, 1), bare);
}
