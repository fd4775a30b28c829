// The bytes of the Consult line: commands, the reply buffer every reader
// fills, and the small text conversions of the identity reads.
// Plain C++ so it can be unit-tested and fuzzed without Qt.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vexorin::consult {

using Bytes = std::vector<std::uint8_t>;

// Commands as they go on the wire.
inline const Bytes CmdInit{0xFF, 0xFF, 0xEF};
constexpr std::uint8_t CmdGo = 0xF0;
constexpr std::uint8_t CmdStop = 0x30;
constexpr std::uint8_t CmdRegisterStream = 0x5A;
constexpr std::uint8_t CmdReadPartNumber = 0xD0;
constexpr std::uint8_t CmdReadFaults = 0xD1;
constexpr std::uint8_t CmdClearFaults = 0xC1;
constexpr std::uint8_t CmdReadMemory = 0xC9;
constexpr std::uint8_t CmdActiveTest = 0x0A;

// The Map Viewer's "Activation Byte Test": sent bare, nothing is read.
inline const Bytes kActivationByteTest{10, 253, 8, 253, 15, 240};

constexpr std::uint8_t HandshakeAccepted = 0x10;
constexpr std::uint8_t FrameStart = 0xFF;

// Reply lengths the readers wait for.
constexpr int kPartNumberReplyLength = 26;
constexpr int kKValueReplyLength = 10;
constexpr int kAllSensorsReplyLength = 50;
constexpr int kFaultCodesReplyLength = 32;

// Addresses of the K value word.
constexpr std::uint16_t kKValueHighAddress = 0xFF2B;
constexpr std::uint16_t kKValueLowAddress = 0xFF2C;

// The ECU part number prefix is a constant of the program, not read from the ECU.
inline const std::string kPartNumberPrefix = "23710";

// Register list of the all-sensor stream, in request order.
inline const Bytes kAllSensorRegisters{11, 0, 1, 13, 4, 5, 9, 10, 20, 21, 22, 23, 8, 15, 12, 26};

// Requests built from the command table. Each request ends with CmdGo unless said otherwise.
Bytes registerStreamRequest(const Bytes& registers, bool withGo = true);
Bytes memoryReadRequest(const std::vector<std::uint16_t>& addresses);
Bytes partNumberRequest();
Bytes faultCodesRequest();
Bytes kValueRequest();

// The reply of one request, indexed from 1. Positions the reply did not reach read 0.
class ReplyBuffer {
public:
    static constexpr int kLimit = 35000;

    ReplyBuffer() = default;
    // Copies `count` bytes of `reply` starting at reply index `skip` (0-based) into positions 1..count.
    ReplyBuffer(const Bytes& reply, int count, int skip = 0);

    int operator()(int position) const;
    int size() const { return static_cast<int>(bytes_.size()); }

private:
    Bytes bytes_;
};

// Upper-case hexadecimal without leading zeros: 0 gives "0", 10 gives "A".
std::string hexText(int value);

// Turns pairs of hexadecimal digits into characters and appends them to one
// accumulating text; "A" (a single digit) gives the character of code 10.
class Hex2Ascii {
public:
    const std::string& operator()(const std::string& hex);
    const std::string& text() const { return text_; }
    void clear() { text_.clear(); }

private:
    std::string text_;
};

// "23710 - " followed by the five characters at reply positions 21..25.
std::string partNumberText(const ReplyBuffer& reply);

// The K value from the bytes at 0xFF2B and 0xFF2C: their hexadecimal texts are
// joined, read as a decimal 16-bit integer, whose digits are then read as a
// hexadecimal 16-bit integer. A text that is no decimal number, or one over
// 32767, gives 0.
int kValueFromBytes(int high, int low);

}  // namespace vexorin::consult
