// Any bytes as the ECU's answer to one burst of eight memory reads, through
// the burst routine of the BIN File Downloader, its Verify and the E.C.U.
// Register Viewer: a reply comes back whole (at least the 34 bytes a burst
// waits for, in the order they came) or not at all, and the burst always
// ends with CmdGo then exactly one CmdStop on the line.
#include "consult/consult_link.h"
#include "consult/fake_transport.h"
#include "consult/read_plans.h"

#include <QCoreApplication>
#include <cstddef>
#include <cstdint>

using namespace vexorin::consult;

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1)
        return 0;
    const bool settle = data[0] & 1;
    const QByteArray answer(reinterpret_cast<const char*>(data + 1), int(size - 1));

    FakeTransport* fake = nullptr;
    ConsultLink link([&fake](int, QString*) { return fake = new FakeTransport; });
    link.setCommPort(1);
    if (!link.setPortOpen(true, nullptr) || !fake)
        __builtin_trap();
    fake->arrive(answer);
    fake->clearWritten();

    const auto reply = finishBurst(link, settle);
    if (reply) {
        if (reply->size() < std::size_t(kBurstReplyLength))
            __builtin_trap();
        if (QByteArray(reinterpret_cast<const char*>(reply->data()), int(reply->size())) != answer)
            __builtin_trap();
    } else if (answer.size() >= kBurstReplyLength) {
        __builtin_trap();  // everything was there: the burst may not give up
    }
    if (fake->written() != QByteArray::fromHex("f030"))
        __builtin_trap();
    // Where the stream could end never lies inside the 34 bytes of the reply.
    const std::vector<std::uint8_t> bytes(data + 1, data + size);
    if (bytes.size() <= std::size_t(kBurstReplyLength) && burstStreamEnded(bytes))
        __builtin_trap();
    return 0;
}
