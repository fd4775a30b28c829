// The edit journal of one file: every write of the editors that changed a
// byte, as steps that can be taken back and done again. Writes, undos, redos
// and reverts all go to the file one byte per write; the file's length never
// changes.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vexorin::rom {

struct ByteChange {
    long offset;
    std::uint8_t before;
    std::uint8_t after;
};
// One step: a spin step, a typed figure or byte, a block operation, a revert.
using EditStep = std::vector<ByteChange>;
// Bytes to write: offset and value.
using ByteWrites = std::vector<std::pair<long, int>>;

class EditJournal {
public:
    // A step with changes; a new step drops whatever had been undone.
    void record(EditStep step);
    bool canUndo() const { return done_ > 0; }
    bool canRedo() const { return done_ < steps_.size(); }
    const EditStep& nextUndo() const { return steps_[done_ - 1]; }
    const EditStep& nextRedo() const { return steps_[done_]; }
    void undone() { --done_; }
    void redone() { ++done_; }
    std::size_t size() const { return steps_.size(); }

private:
    std::vector<EditStep> steps_;
    std::size_t done_ = 0;
};

// The outcome of a write to the file.
struct WriteResult {
    bool ok = true;
    std::string error;
    std::vector<long> changed;  // offsets whose byte is now different
};

// Writes each byte (changed or not) one byte per write, in order, and records
// the bytes that changed as one step. A write that fails ends the run; the
// bytes written before it stay recorded.
WriteResult writeBytes(const std::string& path, const ByteWrites& writes, EditJournal& journal);

// Writes the step's old bytes back (undo) or its new bytes again (redo). The
// file must still hold what the step left (or, for a redo, what it found):
// after a change from outside, nothing is written and the error says so.
WriteResult undoStep(const std::string& path, EditJournal& journal);
WriteResult redoStep(const std::string& path, EditJournal& journal);

// Revert to a backup: the bytes of the file that differ from the backup.
struct RevertPlan {
    enum class Kind { Ready, NoBackup, LengthDiffers, Unreadable } kind = Kind::Ready;
    std::string error;  // Unreadable: why
    ByteWrites writes;  // Ready: the backup's bytes where they differ
};
RevertPlan planRevert(const std::string& path, const std::string& backupPath);

inline const char* const kChangedOutside =
    "The file has changed since this edit was made, so it cannot be taken back or done again. Nothing was written.";

}  // namespace vexorin::rom
