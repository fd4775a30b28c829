// A named pipe where a person might pick a file: opening it for reading or
// writing would wait for the other end for ever.
#pragma once

#include <string>
#include <sys/stat.h>

// Makes the FIFO; true when it is there.
inline bool makeFifo(const std::string& path)
{
    return ::mkfifo(path.c_str(), 0600) == 0;
}
