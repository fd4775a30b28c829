// Random sequences of edits, undos, redos and reverts to the backup, applied
// to a real file through the edit journal, checked after every step against
// a model that keeps every state of the file: the file always equals the
// model's state, never changes its length, and undo and redo are offered
// exactly when the model has a state behind or ahead.
#include "rom/backup_file.h"
#include "rom/edit_journal.h"
#include "ui/binary_files.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <numeric>
#include <unistd.h>

using namespace vexorin::rom;

namespace {
using Bytes = std::vector<std::uint8_t>;
constexpr std::size_t kFileSize = 64;

Bytes onDisk(const std::string& path)
{
    Bytes b;
    vexorin::files::ReadBytes(path, b, nullptr);
    return b;
}

struct Model {
    std::vector<Bytes> states;
    std::size_t at = 0;
    // The writes in order up to the first behind the end; a step when any of them changed a byte.
    void edit(const ByteWrites& writes)
    {
        Bytes next = states[at];
        bool changed = false;
        for (const auto& [offset, value] : writes) {
            if (offset < 0 || std::size_t(offset) >= next.size())
                break;
            changed = changed || next[std::size_t(offset)] != std::uint8_t(value);
            next[std::size_t(offset)] = std::uint8_t(value);
        }
        if (!changed)
            return;
        states.resize(at + 1);
        states.push_back(next);
        ++at;
    }
};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    namespace fs = std::filesystem;
    static const fs::path dir = [] {
        const fs::path d = fs::temp_directory_path() / ("vexorin-fuzz-journal-" + std::to_string(::getpid()));
        fs::create_directories(d);
        return d;
    }();
    const std::string path = (dir / "tune.bin").string();
    const std::string backup = (dir / "tune.orig.bin").string();
    Bytes start(kFileSize);
    std::iota(start.begin(), start.end(), 0);
    // The backup holds the file as it was before the first edit.
    std::error_code ec;
    fs::remove(backup, ec);
    if (!vexorin::files::WriteBytes(path, start, nullptr))
        return 0;
    const BackupResult made = makeBackup(path);
    if (made.kind != BackupResult::Kind::Made || made.path != backup || onDisk(backup) != start)
        __builtin_trap();

    EditJournal journal;
    Model model{{start}, 0};
    size = std::min<std::size_t>(size, 600);  // a few hundred steps: each one reads and writes a file
    std::size_t i = 0;
    auto next = [&]() -> int { return i < size ? data[i++] : 0; };
    while (i < size) {
        const int op = next() % 4;
        if (op == 0) {
            ByteWrites writes;
            const int n = next() % 4 + 1;
            for (int k = 0; k < n; ++k) {
                const long offset = next() % (kFileSize + 8);  // some behind the end
                writes.emplace_back(offset, next());
            }
            writeBytes(path, writes, journal);
            model.edit(writes);
        } else if (op == 1) {
            if (!undoStep(path, journal).ok)
                __builtin_trap();
            if (model.at > 0)
                --model.at;
        } else if (op == 2) {
            if (!redoStep(path, journal).ok)
                __builtin_trap();
            if (model.at + 1 < model.states.size())
                ++model.at;
        } else {
            const RevertPlan plan = planRevert(path, backup);
            if (plan.kind != RevertPlan::Kind::Ready)
                __builtin_trap();
            writeBytes(path, plan.writes, journal);
            model.edit(plan.writes);
            if (onDisk(path) != start)
                __builtin_trap();  // a revert always ends at the backup
        }
        const Bytes file = onDisk(path);
        if (file.size() != kFileSize || file != model.states[model.at])
            __builtin_trap();
        if (journal.canUndo() != (model.at > 0) || journal.canRedo() != (model.at + 1 < model.states.size()))
            __builtin_trap();
    }
    return 0;
}
