// The ECU's 32 KB ROM as a BIN file: ECU addresses 0x8000..0xFFFF in
// ascending order, no header, no trailer. Address arithmetic between the
// ECU form, the file form and bank/low byte, and the one-byte write.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vexorin::rom {

constexpr int kRomSize = 32768;
constexpr int kEcuBase = 0x8000;
constexpr int kBankSize = 256;
constexpr int kFirstBank = 128;
constexpr int kLastBank = 255;
constexpr int kBankCount = 128;

// The text of a path box in which no file has been chosen yet.
inline const char* const kNoFile = "C:\\";
inline const char* const kBinFilter = "BIN Files (*.BIN)|*.bin";
inline const char* const kBinExtension = ".bin";

inline const char* const kFileNotLoaded = "File Not Loaded.";
inline const char* const kBankNotLoaded = "Register Bank Not Loaded.";
inline const char* const kCorruptOrWrongSize = "BIN File corrupted or not the correct size.";
inline const char* const kAppearsCorrupt = "The BIN file appears to be corrupt.";
// The Map Viewer's word for a command that needs its BIN file.
inline const char* const kLoadBinFileFirst = "File not loaded. Please load a BIN file first.";
// A file that could not be read, with the reason.
inline std::string unreadableText(const std::string& reason) { return "The BIN file could not be read: " + reason; }

constexpr int fileOffsetOfEcu(int ecuAddress) { return ecuAddress - kEcuBase; }
constexpr int ecuAddressOfFileOffset(int offset) { return offset + kEcuBase; }
constexpr int fileOffsetOfBank(int bank, int low = 0) { return (bank - kFirstBank) * kBankSize + low; }
constexpr int bankOfEcuAddress(int ecuAddress) { return (ecuAddress >> 8) & 0xFF; }
constexpr int lowOfEcuAddress(int ecuAddress) { return ecuAddress & 0xFF; }
constexpr int bankOfFileOffset(int offset) { return offset / kBankSize + kFirstBank; }

// The bank selector lists 255 at the top down to 128: index i is bank 255 - i.
constexpr int bankOfListIndex(int index) { return kLastBank - index; }
constexpr int listIndexOfBank(int bank) { return kLastBank - bank; }
constexpr int firstOffsetOfListIndex(int index)
{
    const int v = (index + 1) * kBankSize - kRomSize;
    return v < 0 ? -v : v;
}
constexpr int lastOffsetOfListIndex(int index) { return firstOffsetOfListIndex(index) + kBankSize - 1; }

// A bank on screen: 16 rows of 16 bytes under one heading row and column.
struct Cell {
    int row;
    int column;
    bool operator==(const Cell& o) const { return row == o.row && column == o.column; }
};
constexpr Cell cellOfLow(int low) { return Cell{((low >> 4) & 0xF) + 1, (low & 0xF) + 1}; }
constexpr int lowOfCell(int row, int column) { return (row - 1) * 16 + (column - 1); }

// Two upper-case hexadecimal digits ("0A", "FF").
std::string hexByte(int value);

// The bytes of a ROM image that start at `offset`, big-endian.
int bigEndianWord(const std::vector<std::uint8_t>& image, int offset);

// Reads the whole file afresh: open, read every byte, close. False with the reason.
bool readImage(const std::string& path, std::vector<std::uint8_t>& bytes, std::string* error = nullptr);

// The 256 bytes of a bank, read afresh from the file. The size of the file
// is not compared with 32,768: the bank's bytes must exist, nothing more
// ("BIN File corrupted or not the correct size." when they do not).
bool readBank(const std::string& path, int bank, std::vector<std::uint8_t>& bytes, std::string* error = nullptr);

// Writes one byte in place. The file is never created, extended or truncated:
// an offset at or behind its end fails, and so does a value outside 0..255.
bool writeByte(const std::string& path, long offset, int value, std::string* error = nullptr);

}  // namespace vexorin::rom
