// Any bytes as a DLP-IO8-G reply: the text a reading box takes and the bar
// position it gives, and the same bytes split over a polling round of
// ExternalLink on a test double.
#include "consult/fake_transport.h"
#include "external/external_channels.h"
#include "external/external_link.h"

#include <QCoreApplication>
#include <cstddef>
#include <cstdint>

using namespace vexorin::external;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_external_reply";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);

    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString text = QString::fromLatin1(bytes);
    for (int channel = 0; channel <= kChannelCount + 1; ++channel) {
        const std::optional<int> bar = barValueFor(channel, text);
        if (bar && (*bar < 0 || *bar > kBarMaximum))
            __builtin_trap();
    }
    const std::optional<int> whole = leadingWholeNumber(text);
    if (whole && (*whole < -32768 || *whole > 32767))
        __builtin_trap();

    // The bytes as eight replies of a round, cut where the device might cut them.
    FakeTransport* transport = nullptr;
    ExternalLink link([&transport](int, QString*) { return transport = new FakeTransport; });
    if (!link.setPortOpen(true))
        __builtin_trap();
    for (int n = 1; n <= kChannelCount; ++n)
        link.setChecked(n, n % 2 == 1);
    const qsizetype part = bytes.size() / kChannelCount + 1;
    for (int n = 1; n <= kChannelCount; ++n) {
        link.ChannelRequestTimerTick();
        transport->arrive(bytes.mid((n - 1) * part, part));
        link.ChannelReplyTimerTick();
        if (link.bar(n) < 0 || link.bar(n) > kBarMaximum || link.tracker() != n % kChannelCount + 1)
            __builtin_trap();
        if (n % 2 == 0 && link.reading(n) != QLatin1String(kIdleReading))
            __builtin_trap();
    }
    return 0;
}
