// Any bytes as a BIN file loaded into the Map Viewer, then edit steps taken
// from the front of the input: tab, edit mode, cell choice, up and down. An
// edit step writes at most the one byte it names (the selected cell or
// heading) and the file never changes its length.
#include "consult/fake_transport.h"
#include "fuzz_input_file.h"
#include "rom/map_viewer.h"
#include "session_rig.h"
#include "ui/binary_files.h"

#include <QCoreApplication>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <unistd.h>

namespace {
std::vector<std::uint8_t> onDisk(const std::string& path)
{
    std::vector<std::uint8_t> b;
    vexorin::files::ReadBytes(path, b, nullptr);
    return b;
}
}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::string path =
        (std::filesystem::temp_directory_path() / ("vexorin-fuzz-map-" + std::to_string(::getpid()) + ".bin")).string();
    static SessionRig* rig = new SessionRig([](int, QString*) { return new FakeTransport; });

    const std::size_t opCount = std::min<std::size_t>(size, 64);
    const std::vector<std::uint8_t> file = fileFromInput(data, size, opCount);
    const std::size_t fileSize = file.size();
    if (!vexorin::files::WriteBytes(path, file, nullptr))
        return 0;

    FileEdits::shared().forgetAll();  // the journal of one input, not of the whole run
    MapViewer viewer(rig->session);
    viewer.LoadBinFile(QString::fromStdString(path));
    int tab = 0;
    for (std::size_t i = 0; i + 1 < opCount; i += 2) {
        const int a = data[i], b = data[i + 1];
        const std::vector<std::uint8_t> before = onDisk(path);
        bool step = false;
        switch (a % 6) {
        case 0: tab = b % MapViewer::kTabs; viewer.setCurrentTab(tab); break;
        case 1: viewer.setEditMode(tab, b & 1); break;
        case 2: viewer.selectCell(tab, b >> 4, b & 0xF); break;
        case 3: viewer.selectCell(tab, b % 17, (a >> 3) % 17); break;
        case 4: viewer.spinUp(tab); step = true; break;
        default: viewer.spinDown(tab); step = true; break;
        }
        const std::vector<std::uint8_t> after = onDisk(path);
        if (after.size() != fileSize)
            __builtin_trap();
        std::size_t changed = 0;
        for (std::size_t k = 0; k < fileSize; ++k) {
            if (before[k] == after[k])
                continue;
            ++changed;
            // Only a step writes, and only at the byte it names.
            if (!step || long(k) != long(viewer.bytePosition()) - 1)
                __builtin_trap();
        }
        if (changed > 1)
            __builtin_trap();
    }
    return 0;
}
