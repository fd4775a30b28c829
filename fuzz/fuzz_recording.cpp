// Any text as a recorded Consult session, replayed against writes.
#include "consult/fake_transport.h"
#include "consult/recording_transport.h"

#include <QCoreApplication>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = QString::fromLatin1(reinterpret_cast<const char*>(data), qsizetype(size));
    const QList<RecordedExchange> steps = parseRecording(text);
    FakeTransport* t = FakeTransport::fromRecording(text);
    t->open(nullptr);
    for (const RecordedExchange& e : steps)
        if (e.direction == RecordedExchange::Write)
            t->write(e.bytes);
    if (!t->mismatches().isEmpty())
        __builtin_trap();  // writing back exactly what was recorded must match
    t->readAll();
    delete t;
    QCoreApplication::processEvents();  // lets the arrival notices of the deleted device go
    return 0;
}
