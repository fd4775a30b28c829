// A pseudo-terminal pair for the standalone simulator: the ECU end is the
// master; the PC opens the slave path as if it were a serial port.
//
// The slave is also kept open here, so that the PC closing and reopening the
// port never hangs up the master (no endless POLLHUP, no lost settings), and
// so that the bytes still waiting for the PC can be counted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vexorin::sim {

class PtyLink {
public:
    PtyLink() = default;
    ~PtyLink();
    PtyLink(const PtyLink&) = delete;
    PtyLink& operator=(const PtyLink&) = delete;

    // Creates the pair, both ends raw at 9600 8N1, the master non-blocking.
    bool open(std::string* error);
    void close();
    bool isOpen() const { return master_ >= 0; }

    int masterFd() const { return master_; }
    const std::string& slavePath() const { return path_; }

    // Bytes written to the master that the PC has not read yet.
    std::size_t queuedForPeer() const;
    // What the PC wrote: the number of bytes read, 0 when nothing waits, -1 on error.
    long read(std::uint8_t* buf, std::size_t n);
    // Writes what the pty takes now; returns the number of bytes accepted.
    std::size_t write(const std::uint8_t* buf, std::size_t n);

private:
    int master_ = -1;
    int slave_ = -1;
    std::string path_;
};

// Raw mode at 9600 baud, 8 data bits, no parity, 1 stop bit, no flow control.
bool setRawSerialMode(int fd, std::string* error);

// Points the symbolic link `link` at `target`, replacing an older symbolic
// link there. Anything else at that path is left alone and reported.
bool createLink(const std::string& link, const std::string& target, std::string* error);
// Removes `link` if it is a symbolic link that still points at `target`.
void removeLink(const std::string& link, const std::string& target);

}  // namespace vexorin::sim
