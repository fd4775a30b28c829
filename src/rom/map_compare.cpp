// Compare in the Map Viewer: the file on view against another BIN file. Every
// map cell and scale heading whose byte differs carries a mark and what the
// other file's byte would show there. Both files are only read.
#include "rom/map_viewer.h"

#include "rom/rom_image.h"

using namespace vexorin::rom;

namespace {
std::size_t cellIndex(int row, int column)
{
    return std::size_t(row * MapGrid::kSize + column);
}
}  // namespace

bool MapViewer::compareWith(const QString& otherPath)
{
    if (tab(0).pathBox == QLatin1String(kNoFile)) {
        emit message(QString::fromLatin1(vexorin::rom::kLoadBinFileFirst), false);
        return false;
    }
    const QString previous = comparePath_;
    comparePath_ = otherPath;
    if (!markDifferences()) {
        comparePath_ = previous;
        return false;
    }
    return true;
}

void MapViewer::clearCompare()
{
    comparePath_.clear();
    for (Tab& t : tabs_)
        t.compareTips.fill(QString());
    emit compareChanged();
}

bool MapViewer::markDifferences()
{
    if (comparePath_.isEmpty())
        return true;
    std::vector<std::uint8_t> a, b;
    std::string error;
    for (const auto& [path, bytes] : {std::pair{tab(0).pathBox, &a}, std::pair{comparePath_, &b}}) {
        if (!readImage(path.toStdString(), *bytes, &error)) {
            emit message(QString::fromStdString(vexorin::rom::unreadableText(error)), true);
            return false;
        }
    }
    // Bytes beyond the shorter file are not compared.
    auto differs = [&](int offset) {
        return std::size_t(offset) < a.size() && std::size_t(offset) < b.size() && a[std::size_t(offset)] != b[std::size_t(offset)];
    };
    auto tip = [](const QString& figure) { return QStringLiteral("B: ") + figure; };
    for (int t = 0; t < kTabs; ++t) {
        const MapSpec& map = kMaps[std::size_t(t)];
        Tab& shown = mutableTab(t);
        shown.compareTips.fill(QString());
        for (int i = 0; i < kScaleLength; ++i) {
            const int rpm = kRpmScaleOffset + i;
            if (differs(rpm))
                shown.compareTips[cellIndex(i + 1, 0)] = tip(QString::number(b[std::size_t(rpm)] * kRpmPerStep));
            const int tp = map.tpScaleOffset() + i;
            if (differs(tp))
                shown.compareTips[cellIndex(0, i + 1)] = tip(QString::number(b[std::size_t(tp)]));
        }
        for (int i = 0; i < kBankSize; ++i) {
            const int offset = map.fileOffset() + i;
            if (differs(offset))
                shown.compareTips[cellIndex(i / 16 + 1, i % 16 + 1)] =
                    tip(QString::fromStdString(formatMapByte(map.fuel, b[std::size_t(offset)])));
        }
    }
    emit compareChanged();
    return true;
}
