// A simulated DLP-IO8-G served on a pseudo-terminal: the request letters the
// PC writes go to the device, and its answers go back as they fall due, no
// more than kMaxQueued of them waiting in the pty. Used by vexorin-dlp-sim,
// and by vexorin-ecu-sim for the DLP-IO8-G of its engine (--dlp-link).
#pragma once

#include "sim/dlp_simulator.h"
#include "sim/pty_link.h"

#include <cstdio>

namespace vexorin::sim {

class DlpPtyPort {
public:
    // With `verbose`, every request and answer is logged on `log`.
    DlpPtyPort(DlpSimulator& dlp, bool verbose, std::FILE* log);

    PtyLink& pty() { return pty_; }
    int fd() const { return pty_.masterFd(); }
    // Whether answers wait for their time (a late device): poll often then.
    bool waiting() const { return dlp_.waiting(); }

    // After a poll of fd(): reads what the PC wrote (`revents` as poll gave them).
    void read(short revents);
    // Passes on the answers due now.
    void write();

private:
    DlpSimulator& dlp_;
    bool verbose_;
    std::FILE* log_;
    PtyLink pty_;
};

}  // namespace vexorin::sim
