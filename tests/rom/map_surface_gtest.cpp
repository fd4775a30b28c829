// A map grid as the 3D view draws it: heights from the cell texts, positions
// and labels from the headings, the band colours, and what becomes of
// headings out of order and of empty cells.
#include "rom/map_surface.h"

#include "rom/rules/map_decoding.h"
#include "sim/ecu_simulator.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace vexorin::rom;

namespace {
using Rom = std::array<std::uint8_t, vexorin::sim::EcuSimulator::kRomSize>;

// The grid of one map as a BIN file load fills it.
MapGrid loadedGrid(const Rom& rom, int tab)
{
    const MapSpec& map = kMaps[std::size_t(tab)];
    MapGrid grid;
    grid.rebuild(true);
    grid.setText(0, 0, QString::fromLatin1(MapGrid::kCorner));
    for (int i = 0; i < kScaleLength; ++i) {
        grid.setText(i + 1, 0, QString::number(rom[std::size_t(kRpmScaleOffset + i)] * kRpmPerStep));
        grid.setText(0, i + 1, QString::number(rom[std::size_t(map.tpScaleOffset() + i)]));
    }
    for (int r = 1; r <= 16; ++r) {
        for (int c = 1; c <= 16; ++c) {
            const int value = rom[std::size_t(map.fileOffset() + (r - 1) * 16 + c - 1)];
            grid.setText(r, c, QString::fromStdString(formatMapByte(map.fuel, value)));
            grid.setColor(r, c, mapByteColor(map.fuel, value));
        }
    }
    return grid;
}

Headings headingsOf(std::initializer_list<double> figures)
{
    Headings h;
    std::size_t i = 0;
    for (double f : figures)
        h[i++] = f;
    return h;
}

Headings rising()
{
    Headings h;
    for (int i = 0; i < kSurfaceSide; ++i)
        h[std::size_t(i)] = 400.0 + 400 * i;
    return h;
}

QRgb rgbOf(const Rgb& c)
{
    return qRgb(c.r, c.g, c.b);
}

// The texture pixel that lies under a point of the surface.
QRgb pixelAt(const QImage& image, const MapSurface& s, int rpm, int tp)
{
    auto at = [](const SurfaceAxis& axis, int i, int side) {
        const double first = axis.positions.front(), last = axis.positions.back();
        const double u = (axis.positions[std::size_t(i)] - first) / (last - first);
        return std::min(side - 1, int(u * side));
    };
    // The first RPM lies at the foot of the image.
    return image.pixel(at(s.tp, tp, image.width()), image.height() - 1 - at(s.rpm, rpm, image.height()));
}
}  // namespace

TEST(MapSurfaceTest, FiguresOfGridTexts)
{
    EXPECT_DOUBLE_EQ(*figureOf(QStringLiteral("14.70")), 14.7);
    EXPECT_DOUBLE_EQ(*figureOf(QStringLiteral(" 6400 ")), 6400);
    EXPECT_DOUBLE_EQ(*figureOf(QStringLiteral("-12")), -12);
    for (const char* none : {"", " ", "RPM / TP", "14.7x", "inf", "nan", "1e10", "-2e9"})
        EXPECT_FALSE(figureOf(QLatin1String(none))) << none;
}

TEST(MapSurfaceTest, OnlyStrictlyRisingCompleteHeadingsArePositions)
{
    EXPECT_TRUE(headingsArePositions(rising()));
    Headings repeated = rising();
    repeated[5] = repeated[4];
    EXPECT_FALSE(headingsArePositions(repeated));
    Headings falling = rising();
    std::reverse(falling.begin(), falling.end());
    EXPECT_FALSE(headingsArePositions(falling));
    Headings dip = rising();
    dip[9] = 100;
    EXPECT_FALSE(headingsArePositions(dip));
    Headings missing = rising();
    missing[15].reset();
    EXPECT_FALSE(headingsArePositions(missing));
    EXPECT_FALSE(headingsArePositions(Headings{}));
    // Apart as doubles, one and the same float: the surface could not order them.
    Headings tooClose = rising();
    tooClose[1] = *tooClose[0] + 1e-9;
    EXPECT_FALSE(headingsArePositions(tooClose));
    EXPECT_TRUE(headingsArePositions(headingsOf({-5, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 1e9})));
}

TEST(MapSurfaceTest, LoadedFuelMapStandsOnItsHeadings)
{
    const Rom rom = vexorin::sim::makeSyntheticRom(7);
    const MapGrid grid = loadedGrid(rom, 0);
    const MapSurface s = mapSurface(grid, true);
    EXPECT_EQ(s.tp.title, QStringLiteral("TP"));
    EXPECT_EQ(s.rpm.title, QStringLiteral("RPM"));
    EXPECT_EQ(s.valueTitle, QStringLiteral("A/F Ratio"));
    EXPECT_TRUE(s.tp.byHeading);
    EXPECT_TRUE(s.rpm.byHeading);
    for (int i = 0; i < kSurfaceSide; ++i) {
        EXPECT_DOUBLE_EQ(s.tp.positions[std::size_t(i)], rom[std::size_t(kTpScaleFuelOffset + i)]);
        EXPECT_DOUBLE_EQ(s.rpm.positions[std::size_t(i)], rom[std::size_t(kRpmScaleOffset + i)] * 50.0);
        EXPECT_EQ(s.tp.labels[std::size_t(i)], grid.text(0, i + 1));
        EXPECT_EQ(s.rpm.labels[std::size_t(i)], grid.text(i + 1, 0));
    }
    EXPECT_EQ(s.rpm.labels.front(), QStringLiteral("600"));
    EXPECT_EQ(s.rpm.labels.back(), QStringLiteral("6400"));
    for (int r = 0; r < kSurfaceSide; ++r) {
        for (int c = 0; c < kSurfaceSide; ++c) {
            const QString text = grid.text(r + 1, c + 1);
            EXPECT_DOUBLE_EQ(s.heights[std::size_t(r)][std::size_t(c)], text.toDouble()) << r << "," << c;
            EXPECT_EQ(s.colors[std::size_t(r)][std::size_t(c)], *grid.color(r + 1, c + 1)) << r << "," << c;
            EXPECT_GE(s.heights[std::size_t(r)][std::size_t(c)], s.range.low);
            EXPECT_LE(s.heights[std::size_t(r)][std::size_t(c)], s.range.high);
        }
    }
    // The synthetic map runs from stoichiometric to rich: more than one band shows.
    EXPECT_FALSE(s.colors[0][0] == s.colors[15][15]);
}

TEST(MapSurfaceTest, TimingMapShowsDegreesOnTheTimingScale)
{
    const Rom rom = vexorin::sim::makeSyntheticRom(7);
    const MapGrid grid = loadedGrid(rom, 4);
    const MapSurface s = mapSurface(grid, false);
    EXPECT_EQ(s.valueTitle, QStringLiteral("Timing"));
    for (int i = 0; i < kSurfaceSide; ++i)
        EXPECT_DOUBLE_EQ(s.tp.positions[std::size_t(i)], rom[std::size_t(kTpScaleTimingOffset + i)]);
    const int value = rom[std::size_t(kMaps[4].fileOffset() + 5 * 16 + 7)];
    EXPECT_DOUBLE_EQ(s.heights[5][7], timingDegrees(value));
    EXPECT_EQ(s.colors[5][7], TimingBandColor(timingDegrees(value)));
}

TEST(MapSurfaceTest, HeadingsOutOfOrderPlaceByIndexAndKeepTheirLabels)
{
    const Rom rom = vexorin::sim::makeSyntheticRom(7);
    MapGrid grid = loadedGrid(rom, 0);
    grid.setText(4, 0, grid.text(3, 0));       // an RPM heading repeated
    grid.setText(0, 1, QStringLiteral("250"));  // a TP heading above all the others
    const MapSurface s = mapSurface(grid, true);
    EXPECT_FALSE(s.rpm.byHeading);
    EXPECT_FALSE(s.tp.byHeading);
    for (int i = 0; i < kSurfaceSide; ++i) {
        EXPECT_DOUBLE_EQ(s.rpm.positions[std::size_t(i)], i);
        EXPECT_DOUBLE_EQ(s.tp.positions[std::size_t(i)], i);
        EXPECT_EQ(s.rpm.labels[std::size_t(i)], grid.text(i + 1, 0));
    }
    EXPECT_EQ(s.rpm.labels[2], s.rpm.labels[3]);
    EXPECT_EQ(s.tp.labels[0], QStringLiteral("250"));
    // The cells are where they were.
    EXPECT_DOUBLE_EQ(s.heights[3][0], grid.text(4, 1).toDouble());

    // One axis out of order leaves the other on its headings.
    MapGrid oneAxis = loadedGrid(rom, 0);
    oneAxis.setText(9, 0, QStringLiteral("100"));
    const MapSurface t = mapSurface(oneAxis, true);
    EXPECT_FALSE(t.rpm.byHeading);
    EXPECT_TRUE(t.tp.byHeading);
}

TEST(MapSurfaceTest, EmptyGridLiesFlatInGrey)
{
    MapGrid grid;
    grid.rebuild(true);
    grid.setText(0, 0, QString::fromLatin1(MapGrid::kCorner));
    const MapSurface s = mapSurface(grid, true);
    EXPECT_FALSE(s.tp.byHeading);
    EXPECT_FALSE(s.rpm.byHeading);
    EXPECT_DOUBLE_EQ(s.range.low, 0);
    EXPECT_DOUBLE_EQ(s.range.high, 1);
    for (int r = 0; r < kSurfaceSide; ++r) {
        EXPECT_TRUE(s.rpm.labels[std::size_t(r)].isEmpty());
        for (int c = 0; c < kSurfaceSide; ++c) {
            EXPECT_FALSE(s.figures[std::size_t(r)][std::size_t(c)]);
            EXPECT_DOUBLE_EQ(s.heights[std::size_t(r)][std::size_t(c)], 0);
            EXPECT_EQ(s.colors[std::size_t(r)][std::size_t(c)], kNoFigureColor);
        }
    }
    const QImage texture = bandTexture(s, 64);
    EXPECT_EQ(texture.pixel(0, 0), rgbOf(kNoFigureColor));
    EXPECT_EQ(texture.pixel(63, 63), rgbOf(kNoFigureColor));
}

TEST(MapSurfaceTest, EmptyCellsLieOnTheFloorInGrey)
{
    const Rom rom = vexorin::sim::makeSyntheticRom(7);
    MapGrid grid = loadedGrid(rom, 0);
    grid.setText(8, 8, QString());                // cleared
    grid.setText(2, 2, QStringLiteral("?"));      // no figure
    grid.setText(3, 3, QStringLiteral("14.70"));  // a text whose colour has not come yet
    MapGrid uncoloured;
    uncoloured.rebuild(true);
    uncoloured.setText(3, 3, QStringLiteral("14.70"));
    const MapSurface s = mapSurface(grid, true);
    EXPECT_FALSE(s.figures[7][7]);
    EXPECT_FALSE(s.figures[1][1]);
    EXPECT_DOUBLE_EQ(s.heights[7][7], s.range.low);
    EXPECT_DOUBLE_EQ(s.heights[1][1], s.range.low);
    EXPECT_EQ(s.colors[7][7], kNoFigureColor);
    EXPECT_EQ(s.colors[2][2], *grid.color(3, 3));
    const MapSurface u = mapSurface(uncoloured, true);
    EXPECT_DOUBLE_EQ(u.heights[2][2], 14.7);
    EXPECT_EQ(u.colors[2][2], kNoFigureColor);
    // The floor is below every figure.
    for (const auto& row : s.figures) {
        for (const auto& f : row) {
            if (f) {
                EXPECT_LE(s.range.low, *f);
            }
        }
    }
}

TEST(MapSurfaceTest, ValueRangeTakesRoundSteps)
{
    auto rangeOf = [](std::initializer_list<double> figures) {
        SurfaceCells<std::optional<double>> cells;
        std::size_t i = 0;
        for (double f : figures) {
            cells[i / 16][i % 16] = f;
            ++i;
        }
        return valueRangeOf(cells);
    };
    ValueRange fuel = rangeOf({10.78, 14.7, 16.41});
    EXPECT_DOUBLE_EQ(fuel.step, 1);
    EXPECT_DOUBLE_EQ(fuel.low, 10);
    EXPECT_DOUBLE_EQ(fuel.high, 17);
    EXPECT_EQ(fuel.segments, 7);
    EXPECT_EQ(fuel.decimals, 0);

    ValueRange timing = rangeOf({-5, 12, 40});
    EXPECT_DOUBLE_EQ(timing.step, 5);
    EXPECT_DOUBLE_EQ(timing.low, -5);
    EXPECT_DOUBLE_EQ(timing.high, 40);
    EXPECT_EQ(timing.segments, 9);

    ValueRange narrow = rangeOf({14.59, 14.82});
    EXPECT_NEAR(narrow.step, 0.05, 1e-12);
    EXPECT_NEAR(narrow.low, 14.55, 1e-9);
    EXPECT_NEAR(narrow.high, 14.85, 1e-9);
    EXPECT_EQ(narrow.segments, 6);
    EXPECT_EQ(narrow.decimals, 2);

    ValueRange flat = rangeOf({14.7, 14.7});
    EXPECT_DOUBLE_EQ(flat.low, 14);
    EXPECT_DOUBLE_EQ(flat.high, 15);
    EXPECT_EQ(flat.segments, 1);

    ValueRange whole = rangeOf({20, 20});
    EXPECT_DOUBLE_EQ(whole.low, 20);
    EXPECT_DOUBLE_EQ(whole.high, 21);

    // Every range holds its figures in at most ten segments.
    for (double span : {0.001, 0.37, 3.0, 45.0, 999.0, 12750.0}) {
        const ValueRange r = rangeOf({-1.5, -1.5 + span});
        EXPECT_LE(r.low, -1.5) << span;
        EXPECT_GE(r.high, -1.5 + span) << span;
        EXPECT_LE(r.segments, 10) << span;
        EXPECT_GE(r.segments, 1) << span;
        EXPECT_NEAR(r.low + r.segments * r.step, r.high, 1e-9 * std::max(1.0, span)) << span;
    }
}

TEST(MapSurfaceTest, TexturePaintsEachPointInItsBandColour)
{
    const Rom rom = vexorin::sim::makeSyntheticRom(7);
    const MapSurface s = mapSurface(loadedGrid(rom, 0), true);
    const QImage texture = bandTexture(s, 512);
    ASSERT_EQ(texture.size(), QSize(512, 512));
    for (int r = 0; r < kSurfaceSide; ++r)
        for (int c = 0; c < kSurfaceSide; ++c)
            EXPECT_EQ(pixelAt(texture, s, r, c), rgbOf(s.colors[std::size_t(r)][std::size_t(c)])) << r << "," << c;
}

TEST(MapSurfaceTest, FirstRpmLiesAtTheFootOfTheTexture)
{
    // OpenGL, and so the graph, takes an image's last line for the first RPM.
    const Rom rom = vexorin::sim::makeSyntheticRom(7);
    MapGrid grid = loadedGrid(rom, 0);
    const Rgb red{0xFF, 0x80, 0x80}, green{0x80, 0xFF, 0x80}, blue{0x80, 0x80, 0xFF};
    for (int r = 1; r <= 16; ++r)
        for (int c = 1; c <= 16; ++c)
            grid.setColor(r, c, r == 1 ? red : green);
    grid.setColor(1, 16, blue);
    const QImage texture = bandTexture(mapSurface(grid, true), 64);
    EXPECT_EQ(texture.pixel(0, 63), rgbOf(red));
    EXPECT_EQ(texture.pixel(63, 63), rgbOf(blue));
    EXPECT_EQ(texture.pixel(0, 0), rgbOf(green));
    EXPECT_EQ(texture.pixel(63, 0), rgbOf(green));
}

TEST(MapSurfaceTest, TextureBordersLieHalfwayBetweenUnevenPoints)
{
    // TP at 10, 16, 22, ... 112, 128: the borders follow the positions, not the indexes.
    const Rom rom = vexorin::sim::makeSyntheticRom(7);
    MapGrid grid = loadedGrid(rom, 0);
    for (int r = 1; r <= 16; ++r)
        for (int c = 1; c <= 16; ++c)
            grid.setColor(r, c, c % 2 ? Rgb{0xFF, 0, 0} : Rgb{0, 0, 0xFF});
    const MapSurface s = mapSurface(grid, true);
    const int side = 1180;  // one pixel to a tenth of a TP step: the midpoints fall on whole pixels
    const QImage texture = bandTexture(s, side);
    const double first = s.tp.positions.front(), last = s.tp.positions.back();
    for (int c = 0; c + 1 < kSurfaceSide; ++c) {
        const double middle = (s.tp.positions[std::size_t(c)] + s.tp.positions[std::size_t(c) + 1]) / 2;
        const int border = int((middle - first) / (last - first) * side);
        EXPECT_EQ(texture.pixel(border - 1, 0), rgbOf(s.colors[0][std::size_t(c)])) << c;
        EXPECT_EQ(texture.pixel(border + 1, 0), rgbOf(s.colors[0][std::size_t(c) + 1])) << c;
    }
}

TEST(MapSurfaceTest, NearestIndexPrefersTheLowerOnATie)
{
    std::array<double, kSurfaceSide> p{};
    for (int i = 0; i < kSurfaceSide; ++i)
        p[std::size_t(i)] = i * 10.0;
    EXPECT_EQ(nearestIndex(p, -100), 0);
    EXPECT_EQ(nearestIndex(p, 14), 1);
    EXPECT_EQ(nearestIndex(p, 15), 1);
    EXPECT_EQ(nearestIndex(p, 16), 2);
    EXPECT_EQ(nearestIndex(p, 1000), 15);
}
