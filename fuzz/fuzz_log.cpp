// Any bytes as a log file in the Log Player: forward, back, reload.
#include "logging/log_player.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("fuzz.log"));
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        f.write(reinterpret_cast<const char*>(data), qint64(size));
    }
    LogPlayer player;
    player.loadChosen(path);
    const int steps = size > 0 ? data[0] % 8 : 0;
    for (int i = 0; i < steps; ++i)
        player.ReadNext();
    for (int i = 0; i < steps; ++i)
        player.ReadPrevious();
    player.Reload();
    for (int i = 14; i <= 27; ++i)
        if (player.label(i).size() > 4096)
            __builtin_trap();
    return 0;
}
