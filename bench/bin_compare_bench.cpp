// The BIN Compare at its worst: two 32 KB files that differ in every byte.
// Times the controller from the reading of both files to the listed rows
// (what the window shows), and the byte comparison alone, over many rounds;
// prints the slowest, the median and the fastest. Target: under 50 ms.
// Usage: bin_compare_bench [rounds]
#include "rom/bin_compare.h"
#include "rom/bin_compare_view.h"
#include "rom/rom_image.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {
struct Figures {
    double slowest, median, fastest;
};

template <class F>
Figures timed(int rounds, F&& run)
{
    std::vector<double> ms;
    ms.reserve(std::size_t(rounds));
    QElapsedTimer t;
    for (int i = 0; i < rounds; ++i) {
        t.restart();
        run();
        ms.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    std::sort(ms.begin(), ms.end());
    return {ms.back(), ms[ms.size() / 2], ms.front()};
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}
}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 500;
    QTemporaryDir dir;
    const QString a = dir.filePath(QStringLiteral("a.bin")), b = dir.filePath(QStringLiteral("b.bin"));
    QByteArray bytesA(vexorin::rom::kRomSize, '\0'), bytesB(vexorin::rom::kRomSize, '\0');
    for (int i = 0; i < vexorin::rom::kRomSize; ++i) {
        bytesA[i] = char(i * 7);
        bytesB[i] = char(i * 7 + 1);  // every byte one more
    }
    if (!writeFile(a, bytesA) || !writeFile(b, bytesB))
        return 2;

    int rowCount = 0;
    QString summary;
    const Figures listed = timed(rounds, [&] {
        BinCompareView view;
        view.openA(a);
        view.openB(b);
        summary = view.summary();
        rowCount = int(view.rows().size());
    });
    std::size_t differing = 0;
    const auto* pa = reinterpret_cast<const std::uint8_t*>(bytesA.constData());
    const auto* pb = reinterpret_cast<const std::uint8_t*>(bytesB.constData());
    const Figures compared = timed(rounds, [&] {
        differing = vexorin::rom::compareImages(pa, std::size_t(bytesA.size()), pb, std::size_t(bytesB.size())).differing;
    });

    std::printf("two 32 KB files, every byte different: \"%s\", %d rows, %d rounds\n", qPrintable(summary), rowCount,
                rounds);
    std::printf("read both files to listed rows: slowest %.3f ms, median %.3f ms, fastest %.3f ms\n", listed.slowest,
                listed.median, listed.fastest);
    std::printf("byte comparison alone:          slowest %.3f ms, median %.3f ms, fastest %.3f ms\n",
                compared.slowest, compared.median, compared.fastest);
    std::printf("target: under 50 ms to the listed rows\n");
    return listed.slowest < 50 && differing == std::size_t(vexorin::rom::kRomSize) ? 0 : 2;
}
