#include "consult/request_cycle.h"

#include "consult/consult_link.h"

namespace vexorin::consult {

void StopData(ConsultLink& link)
{
    link.Output({CmdStop});
    link.Output({CmdStop});
}

void sendBytes(ConsultLink& link, const Bytes& bytes)
{
    for (std::uint8_t b : bytes)
        link.Output(QByteArray(1, char(b)));
}

std::optional<Bytes> runRequestCycle(ConsultLink& link, const Bytes& request, int count)
{
    link.setInBufferCount(0);
    sendBytes(link, request);
    const bool arrived = link.waitForInput(count);
    StopData(link);
    if (!arrived)
        return std::nullopt;
    const QByteArray in = link.Input();
    return Bytes(in.begin(), in.end());
}

QString timeoutMessage()
{
    return QStringLiteral(": No reply from the ECU within %1 seconds; request abandoned.")
        .arg(ConsultLink::kReplyTimeoutMs / 1000);
}

}  // namespace vexorin::consult
