// What the BIN File Viewer/Editor writes into its grid and how it reads a
// cell back: row labels, headings, the address text of a click, and the
// edit box's key filter.
#pragma once

#include <string>
#include <vector>

namespace vexorin::rom {

// Upper-case hexadecimal with no leading zeros ("7F00", "100", "0").
std::string hexNoPad(int value);

// The file range of a bank, "7F00 - 7FFF", for cell (0, 0).
std::string bankRangeLabel(int firstOffset);
// Column 0 of row r (1..16): the row's first and last offset, "7F00 - 7F0F".
std::string rowLabel(int bankFirstOffset, int row);
// Row 0 heading of column c (1..16) while row r is in use: (r-1)*16 + c-1, two digits.
std::string columnHeading(int row, int column);

// The address text of a click: the first three characters of the row's label
// and the hexadecimal digit of the column (column 1 is "0"). For the short
// labels of banks 128 to 143 this is not the cell's own address.
std::string addressText(const std::string& rowLabelText, int column);
// The value of leading hexadecimal digits (0 when there are none).
int hexValue(const std::string& text);

// A number with no fixed decimals and no grouping: 1.2, 1, 0.05.
std::string plainNumber(double value);

// The key filter of the edit box: true for the codes that pass (digits, "A".."F",
// and 96..105, which are "`" and "a".."i").
bool editKeyPasses(int keyCode);

}  // namespace vexorin::rom
