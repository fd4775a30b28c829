// The one request cycle every reader of the ECU shares: clear the input,
// send the request one byte per write, wait for N bytes, stop the ECU, read.
#pragma once

#include "consult/wire.h"

#include <QString>
#include <optional>

class ConsultLink;

namespace vexorin::consult {

// Sends 48 twice; nothing is read.
void StopData(ConsultLink& link);

// Sends every byte in a write of its own.
void sendBytes(ConsultLink& link, const Bytes& bytes);

// The reply bytes, or nothing when fewer than `count` bytes came within the
// time-out: the cycle is then abandoned (the stop bytes still go out).
std::optional<Bytes> runRequestCycle(ConsultLink& link, const Bytes& request, int count);

// The session log line of an abandoned cycle.
QString timeoutMessage();

}  // namespace vexorin::consult
