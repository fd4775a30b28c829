#include "tools/fuel_targets.h"

#include "rom/map_figures.h"

#include <vector>

namespace vexorin::tools {

using vexorin::rom::FigureKind;

std::string targetPathFor(const std::string& binPath)
{
    return binPath + ".target.csv";
}

std::string targetsText(const Targets& targets)
{
    std::string text;
    for (int r = 0; r < kMapSide; ++r) {
        for (int c = 0; c < kMapSide; ++c) {
            if (c > 0)
                text += ',';
            text += twoDecimals(targets[std::size_t(r * kMapSide + c)]);
        }
        text += '\n';
    }
    return text;
}

namespace {
std::string_view trimmed(std::string_view s)
{
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t'))
        s.remove_suffix(1);
    return s;
}

std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n')
            continue;
        lines.push_back(text.substr(start, i - start));
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            ++i;
        start = i + 1;
        if (lines.size() > std::size_t(kMapSide))
            return lines;
    }
    if (start < text.size())
        lines.push_back(text.substr(start));
    return lines;
}
}  // namespace

std::optional<Targets> parseTargets(std::string_view text, std::string* problem)
{
    const auto fail = [problem](std::string why) -> std::optional<Targets> {
        if (problem)
            *problem = std::move(why);
        return std::nullopt;
    };
    const std::vector<std::string_view> lines = linesOf(text);
    if (lines.size() != std::size_t(kMapSide))
        return fail("it does not hold 16 lines");
    const vexorin::rom::FigureRange range = vexorin::rom::figureRange(FigureKind::Fuel);
    Targets targets{};
    for (int r = 0; r < kMapSide; ++r) {
        std::string_view line = lines[std::size_t(r)];
        for (int c = 0; c < kMapSide; ++c) {
            const std::size_t comma = line.find(',');
            if ((comma == std::string_view::npos) != (c == kMapSide - 1))
                return fail("line " + std::to_string(r + 1) + " does not hold 16 figures");
            const std::optional<double> figure = runNumber(trimmed(line.substr(0, comma)));
            if (!figure || *figure < range.min - 1e-9 || *figure > range.max + 1e-9)
                return fail("line " + std::to_string(r + 1) + " holds a figure outside " + range.minText + " to " +
                            range.maxText);
            targets[std::size_t(r * kMapSide + c)] = *figure;
            line = comma == std::string_view::npos ? std::string_view() : line.substr(comma + 1);
        }
    }
    return targets;
}

Targets targetsOfMap(const std::array<std::uint8_t, kMapCells>& bytes)
{
    Targets targets{};
    for (std::size_t i = 0; i < targets.size(); ++i)
        targets[i] = vexorin::rom::figureOfByte(FigureKind::Fuel, bytes[i]);
    return targets;
}

}  // namespace vexorin::tools
