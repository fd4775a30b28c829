#include "consult/link_writes.h"

#include "consult/consult_link.h"
#include "consult/read_plans.h"

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

QString timeoutMessage()
{
    return QStringLiteral(": No reply from the ECU within %1 seconds; request abandoned.").arg(kReplyTimeoutMs / 1000);
}

}  // namespace vexorin::consult
