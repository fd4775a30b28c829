// The BIN file of a fuzz input: operations come from the input's front, and
// the file, of any length up to a little over a whole image, is filled from
// the rest repeated, so that short inputs still reach the upper banks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

inline std::vector<std::uint8_t> fileFromInput(const std::uint8_t* data, std::size_t size, std::size_t opCount)
{
    const std::size_t fileSize = opCount < size ? (std::size_t(data[0]) << 8 | data[opCount - 1]) % 33000 : 0;
    std::vector<std::uint8_t> file(fileSize);
    for (std::size_t i = 0; i < fileSize; ++i)
        file[i] = data[opCount + i % (size - opCount)];
    return file;
}
