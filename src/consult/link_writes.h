// Writes on the Consult link that wait for nothing: the stop pair, a request
// one byte a write, and the session log line of a read given up.
#pragma once

#include "consult/wire.h"

#include <QString>

class ConsultLink;

namespace vexorin::consult {

// Sends 48 twice; nothing is read.
void StopData(ConsultLink& link);

// Sends every byte in a write of its own.
void sendBytes(ConsultLink& link, const Bytes& bytes);

// The session log line of an abandoned cycle.
QString timeoutMessage();

}  // namespace vexorin::consult
