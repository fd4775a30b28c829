#include "tools/memory_burst.h"

#include "consult/consult_link.h"
#include "tools/ecu_tool_tables.h"

#include <QElapsedTimer>

namespace vexorin::tools {

void sendEachByte(ConsultLink& link, const std::vector<int>& values)
{
    for (int v : values)
        if (v >= 0 && v <= 255)
            link.Output(QByteArray(1, char(v)));
}

std::optional<std::vector<std::uint8_t>> finishBurst(ConsultLink& link, bool settle)
{
    link.Output({kCmdGo});
    const bool answered = link.waitForInput(kBurstReplyLength);
    link.Output({kCmdStop});
    if (!answered)
        return std::nullopt;
    const QByteArray in = link.Input();
    std::vector<std::uint8_t> received(in.begin(), in.end());
    if (received.size() < std::size_t(kBurstReplyLength))
        return std::nullopt;
    if (settle) {
        QElapsedTimer clock;
        clock.start();
        while (!burstStreamEnded(received) && clock.elapsed() < kSettleLimitMs) {
            if (!link.waitForInput(1, kSettleQuietMs))
                break;
            const QByteArray more = link.Input();
            received.insert(received.end(), more.begin(), more.end());
        }
    }
    return received;
}

}  // namespace vexorin::tools
