// Two BIN files side by side, byte for byte: how many bytes differ over the
// length both have, and where — one row per named region of the register list
// that holds a difference (the six single values with their converted A and B
// values), then one row per bank for the differences outside every region.
// Plain C++, no Qt: the BIN Compare window, its fuzz target and its benchmark
// all call compareImages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vexorin::rom {

enum class CompareRowKind {
    Region,  // a named region of kRegions
    Bank,    // differences outside every region, in one bank
    Beyond,  // differences past the 32 KB of an image (files longer than a ROM)
};

struct CompareRow {
    CompareRowKind kind;
    int region;         // index in kRegions, -1 for the other kinds
    int bank;           // 128..255 for a Bank row, -1 for the other kinds
    int mapTab;         // the Map Viewer tab of a map region (0..5), else -1
    std::size_t count;  // differing bytes the row stands for
    std::string text;   // UTF-8, as the list shows it
};

struct CompareResult {
    std::size_t lengthA = 0;
    std::size_t lengthB = 0;
    std::size_t differing = 0;  // over the common length
    std::vector<CompareRow> rows;
};

// Compares the first min(na, nb) bytes. Region rows come in the order of the
// register list, then bank rows in ascending bank order, then the Beyond row.
CompareResult compareImages(const std::uint8_t* a, std::size_t na, const std::uint8_t* b, std::size_t nb);

// "1 byte differs", "N bytes differ", "Files are identical" (same length, no
// difference); with lengths that differ and no difference, "0 bytes differ".
std::string differenceText(const CompareResult& result);
// "Lengths differ: A <n> bytes, B <m> bytes", or empty when they are equal.
std::string lengthText(const CompareResult& result);
// "1 byte" or "N bytes".
std::string byteCountText(std::size_t count);

// The Map Viewer tab (index in kMaps) of a region of kRegions, or -1 for a region that is no map.
int mapTabOfRegionIndex(int regionIndex);

}  // namespace vexorin::rom
