#include "consult/memory_burst.h"

#include "consult/consult_link.h"

#include <QElapsedTimer>

namespace vexorin::consult {

bool burstStreamEnded(const std::vector<std::uint8_t>& received)
{
    constexpr std::size_t echoes = kBurstFirstData - 2;
    for (std::size_t slot = echoes + kBurstFrameLength; slot < received.size(); slot += kBurstFrameLength)
        if (received[slot] != FrameStart)
            return true;
    return false;
}

void requestBurst(ConsultLink& link, int high, int firstLow)
{
    std::vector<int> request;
    for (int i = 0; i < kBurstAddresses; ++i)
        request.insert(request.end(), {kCmdReadMemory, high, firstLow + i});
    sendEachByte(link, request);
}


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

}  // namespace vexorin::consult
