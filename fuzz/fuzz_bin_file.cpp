// Any bytes as a BIN file in the BIN File Viewer/Editor, driven by a few
// operations taken from the front of the input: bank choices, clicks,
// region look-ups and typed keys in edit mode. Whatever happens, the file
// keeps its length.
#include "fuzz_input_file.h"
#include "rom/bin_viewer.h"
#include "ui/binary_files.h"

#include <QCoreApplication>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_bin_file";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
    static const std::string path =
        (std::filesystem::temp_directory_path() / ("vexorin-fuzz-" + std::to_string(::getpid()) + ".bin")).string();

    const std::size_t opCount = std::min<std::size_t>(size, 48);
    const std::vector<std::uint8_t> file = fileFromInput(data, size, opCount);
    const std::size_t fileSize = file.size();
    if (!vexorin::files::WriteBytes(path, file, nullptr))
        return 0;

    BinViewer viewer;
    viewer.OpenBINFile(QString::fromStdString(path));
    for (std::size_t i = 0; i + 1 < opCount; i += 2) {
        const int a = data[i], b = data[i + 1];
        switch (a % 8) {
        case 0: viewer.selectBank(b % 128); break;
        case 1: viewer.clickCell(b >> 4, b & 0xF); break;
        case 2: viewer.doubleClickRegion(b % 24); break;
        case 3: viewer.setEditMode(b & 1); break;
        case 4: viewer.doubleClickCell(b >> 4, (b & 0xF) + 1); break;
        case 5: viewer.keyOnGrid(b, (a >> 3) % 17, b % 17); break;
        case 6: viewer.editBoxKey(b); break;
        default: viewer.editBoxFocusLost(); break;
        }
    }
    std::error_code ec;
    if (std::filesystem::file_size(path, ec) != fileSize)
        __builtin_trap();
    return 0;
}
