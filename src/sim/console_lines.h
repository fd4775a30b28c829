// The console of a simulator tool: command lines typed on a file descriptor,
// read only when the tool may read it (a terminal in the foreground, a pipe,
// a file). End of input closes the console and leaves the tool running.
#pragma once

#include <string>
#include <vector>

namespace vexorin::sim {

class ConsoleLines {
public:
    explicit ConsoleLines(int fd) : fd_(fd) {}

    // Whether to poll the descriptor now.
    bool readable() const;
    // Reads what waits and returns the whole lines in it, without their line ends.
    std::vector<std::string> read();

private:
    int fd_;
    bool open_ = true;
    std::string buffer_;
};

}  // namespace vexorin::sim
