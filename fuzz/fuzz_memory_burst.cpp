// Any bytes as the ECU's answer to one burst of eight memory reads, through
// the link owner as the BIN File Downloader, its Verify, the Map Viewer and
// the E.C.U. Register Viewer run it: a reply comes back whole (at least the
// 34 bytes a burst waits for, in the order they came) or not at all, and the
// burst always ends with CmdGo then exactly one CmdStop on the line.
#include "consult/consult_link.h"
#include "consult/fake_transport.h"
#include "consult/link_owner.h"
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
    LinkOwner owner(link);
    if (!link.setPortOpen(true, nullptr) || !fake)
        __builtin_trap();
    const std::vector<int> request = burstRequest(0x80, 0);
    int ends = 0;
    LinkOwner::Reply reply;
    owner.run(burstCycle(request, settle), &owner, [&](const LinkOwner::Reply& r) {
        ++ends;
        reply = r;
    });
    fake->arrive(answer);
    emit link.bytesArrived();  // what the port's readyRead does
    owner.abandon();           // the time-out, or the end of a settling read
    if (ends != 1 || owner.busy())
        __builtin_trap();
    if (reply) {
        if (reply->size() < std::size_t(kBurstReplyLength))
            __builtin_trap();
        if (QByteArray(reinterpret_cast<const char*>(reply->data()), int(reply->size())) != answer)
            __builtin_trap();
    } else if (answer.size() >= kBurstReplyLength) {
        __builtin_trap();  // everything was there: the burst may not give up
    }
    const Bytes sent = sendable(request);
    const QByteArray expected = QByteArray(reinterpret_cast<const char*>(sent.data()), int(sent.size()))
        + QByteArray::fromHex("f030");
    if (fake->written() != expected)
        __builtin_trap();
    // Where the stream could end never lies inside the 34 bytes of the reply.
    const std::vector<std::uint8_t> bytes(data + 1, data + size);
    if (bytes.size() <= std::size_t(kBurstReplyLength) && burstStreamEnded(bytes))
        __builtin_trap();
    return 0;
}
