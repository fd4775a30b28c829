// The bar rule of the external gauges and the order of the polling round.
#include "consult/port_rows.h"
#include "external/external_channels.h"

#include <gtest/gtest.h>

using namespace vexorin::external;

namespace {
std::optional<int> bar(const char* text, int channel = 2)
{
    return barValueFor(channel, QString::fromLatin1(text));
}
}  // namespace

TEST(ExternalBar, IdleReadingGivesZeroAndFiveVoltsGivesFive)
{
    EXPECT_EQ(bar("0.00V"), 0);
    EXPECT_EQ(bar("5.00V"), 5);
}

TEST(ExternalBar, FirstThreeCharactersRoundHalvesToEven)
{
    EXPECT_EQ(bar("2.50V"), 2);
    EXPECT_EQ(bar("3.50V"), 4);
    EXPECT_EQ(bar("0.50V"), 0);
    EXPECT_EQ(bar("1.50V"), 2);
    EXPECT_EQ(bar("4.87V"), 5);  // from 4.8
    EXPECT_EQ(bar("2.34V"), 2);  // from 2.3
    EXPECT_EQ(bar("2.59V"), 2);  // 2.5, to even
    EXPECT_EQ(bar("2.69V"), 3);
    EXPECT_EQ(bar("2.49V"), 2);  // 2.4: the third decimal is never seen
}

TEST(ExternalBar, TextThatIsNoNumberLeavesTheBar)
{
    EXPECT_EQ(bar(""), std::nullopt);
    EXPECT_EQ(bar("V"), std::nullopt);
    EXPECT_EQ(bar("abc"), std::nullopt);
    EXPECT_EQ(bar("\xff\x01\x02"), std::nullopt);
    EXPECT_EQ(bar("inf"), std::nullopt);
    EXPECT_EQ(bar("nan"), std::nullopt);
}

TEST(ExternalBar, ShortTextsCount)
{
    EXPECT_EQ(bar("3"), 3);
    EXPECT_EQ(bar("4."), 4);
    EXPECT_EQ(bar(" 1"), 1);
}

TEST(ExternalBar, NumbersOutsideTheBarsRangeLeaveIt)
{
    EXPECT_EQ(bar("7.0V"), std::nullopt);
    EXPECT_EQ(bar("-1.0"), std::nullopt);
    EXPECT_EQ(bar("9e9"), std::nullopt);
    EXPECT_EQ(leadingWholeNumber(QStringLiteral("9e9")), std::nullopt);
    EXPECT_EQ(leadingWholeNumber(QStringLiteral("-2.5")), -2);
    EXPECT_EQ(leadingWholeNumber(QStringLiteral("999")), 999);
}

TEST(ExternalBar, FuelTestLooksAtTheReadingAndNotTheName)
{
    // The whole text "Fuel" on the first channel counts down from 5, but its
    // first three characters are no number, so the bar stays where it was.
    for (const char* t : {"Fuel", "fuel", "FUEL"}) {
        EXPECT_EQ(bar(t, 1), std::nullopt) << t;
        EXPECT_EQ(bar(t, 2), std::nullopt) << t;
    }
    // A reading on the first channel takes the first rule like every other.
    EXPECT_EQ(bar("3.21V", 1), 3);
}

TEST(ExternalChannels, RequestLettersAndDefaultNames)
{
    QByteArray letters;
    QStringList names;
    for (const ExternalChannel& c : kChannels) {
        letters += c.letter;
        names << QString::fromLatin1(c.defaultName);
    }
    EXPECT_EQ(letters, QByteArray("ZXCVBNM,"));
    EXPECT_EQ(QByteArray("ZXCVBNM,").toStdString(), std::string({90, 88, 67, 86, 66, 78, 77, 44}));
    EXPECT_EQ(names.join(QLatin1Char('|')).toStdString(), "Fuel|Boost PSI|Oil PSI|Wideband L|Wideband R|Spare|Spare|Spare");
}

TEST(ExternalChannels, AfterEightComesOne)
{
    EXPECT_EQ(nextChannel(1), 2);
    EXPECT_EQ(nextChannel(7), 8);
    EXPECT_EQ(nextChannel(8), 1);
}

TEST(PortRows, ComNumberNeedsTheClosingBracket)
{
    EXPECT_EQ(PortRows::comNumberIn(QStringLiteral("USB Serial Port (COM10)")), 10);
    EXPECT_EQ(PortRows::comNumberIn(QStringLiteral("USB Serial Port (COM1)")), 1);
    EXPECT_EQ(PortRows::comNumberIn(QStringLiteral("USB Serial Port (COM17)")), 0);
    EXPECT_EQ(PortRows::comNumberIn(QStringLiteral("USB Serial Port")), 0);
}
