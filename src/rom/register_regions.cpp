#include "rom/register_regions.h"

#include <cctype>
#include <cstring>

namespace vexorin::rom {

const std::array<RegisterRegion, kRegionCount> kRegions = {{
    {"(255) 7F91 ----------- Feedback Control", 255, 0x7F91, 1},
    {"(255) 7FE0 - 7FE8 Knock Sensor Map", 255, 0x7FE0, 9},
    {"(255) 7FB4 ---------- Rev Limiter", 255, 0x7FB4, 1},
    {"(255) 7FA5 ---------- Top Speed Limiter", 255, 0x7FA5, 1},
    {"(255) 7F88 ----------- Injector Latency", 255, 0x7F88, 1},
    {"(255) 7F2B - 7F2C K Value", 255, 0x7F2B, 2},
    {"(254) 7E80 - 7E8F TTP Min", 254, 0x7E80, 16},
    {"(254) 7E90 - 7E9F TTP Max", 254, 0x7E90, 16},
    {"(254) 7E20 - 7E2F Throttle Enrichment Table", 254, 0x7E20, 16},
    {"(253) 7D00 - 7DFF Primary Fuel Map", 253, 0x7D00, 256},
    {"(252) 7C00 - 7CFF Secondary Timing Map (Knock)", 252, 0x7C00, 256},
    {"(251) 7B10 - 7B1F TP Scale Timing", 251, 0x7B10, 16},
    {"(251) 7B00 - 7B0F RPM Scale", 251, 0x7B00, 16},
    {"(251) 7B60 - 7B7F Ignition Dwell Duty", 251, 0x7B60, 32},
    {"(251) 7B30 - 7B4F Temp Conversion Table", 251, 0x7B30, 32},
    {"(250) 7A70 - 7AEF VQ Table", 250, 0x7A70, 128},
    {"(250) 7AF0 - 7AFF TP Scale Fuel", 250, 0x7AF0, 16},
    {"(249) 79F6 ----------- VTC Release", 249, 0x79F6, 1},
    {"(249) 79E3 - 79EF Knock Limit", 249, 0x79E3, 13},
    {"(249) 7960 - 796F Air Flow Limiter", 249, 0x7960, 16},
    {"(248) 7800 - 78FF Primary Timing Map", 248, 0x7800, 256},
    {"(242) 7200 - 72FF Secondary Fuel Map", 242, 0x7200, 256},
    {"(241) 7100 - 71FF High Octane High Gear Fuel Map", 241, 0x7100, 256},
    {"(240) 7000 - 70FF Low Octane High Gear Fuel Map", 240, 0x7000, 256},
}};

namespace {
constexpr std::size_t kAddressStart = 6;  // "(253) " precedes the first address
constexpr const char* kRangeJoin = " - ";

bool hasSecondAddress(const std::string& text)
{
    return text.compare(kAddressStart + 4, 3, kRangeJoin) == 0;
}
}  // namespace

std::string fileFormText(int index)
{
    return kRegions[std::size_t(index)].text;
}

std::string ecuFormText(int index)
{
    std::string text = fileFormText(index);
    text[kAddressStart] = 'F';
    if (hasSecondAddress(text))
        text[kAddressStart + 7] = 'F';
    return text;
}

std::string regionName(int index)
{
    const std::string text = fileFormText(index);
    std::size_t pos = kAddressStart + 4;
    if (hasSecondAddress(text))
        pos += 7;
    while (pos < text.size() && (text[pos] == ' ' || text[pos] == '-'))
        ++pos;
    return text.substr(pos);
}

std::string mapTabOfRegion(const std::string& name)
{
    static const struct {
        const char* region;
        const char* tab;
    } links[] = {
        {"Primary Fuel Map", "Fuel (High Octane)"},
        {"Secondary Fuel Map", "Fuel (Low Octane)"},
        {"High Octane High Gear Fuel Map", "Fuel (High Oct/High Gear)"},
        {"Low Octane High Gear Fuel Map", "Fuel (Low Oct/High Gear)"},
        {"Primary Timing Map", "Timing (High Octane)"},
        {"Secondary Timing Map (Knock)", "Timing (Low Octane)"},
    };
    for (const auto& l : links)
        if (name == l.region)
            return l.tab;
    return {};
}

}  // namespace vexorin::rom
