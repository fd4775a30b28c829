#include "rom/edit_journal.h"

#include "rom/rom_image.h"

namespace vexorin::rom {

void EditJournal::record(EditStep step)
{
    if (step.empty())
        return;
    steps_.resize(done_);
    steps_.push_back(std::move(step));
    done_ = steps_.size();
}

namespace {
// Writes one step's bytes (old or new), one byte per write, after checking
// that the file holds the other side of the step.
WriteResult applyStep(const std::string& path, const EditStep& step, bool back)
{
    WriteResult result;
    std::vector<std::uint8_t> image;
    if (!readImage(path, image, &result.error)) {
        result.ok = false;
        return result;
    }
    // Backwards for an undo, so that a byte changed twice in one step ends as it began.
    auto change = [&](std::size_t i) -> const ByteChange& { return back ? step[step.size() - 1 - i] : step[i]; };
    for (std::size_t i = 0; i < step.size(); ++i) {
        const ByteChange& c = change(i);
        if (c.offset < 0 || std::size_t(c.offset) >= image.size() ||
            image[std::size_t(c.offset)] != (back ? c.after : c.before)) {
            result.ok = false;
            result.error = kChangedOutside;
            return result;
        }
        image[std::size_t(c.offset)] = back ? c.before : c.after;
    }
    for (std::size_t i = 0; i < step.size(); ++i) {
        const ByteChange& c = change(i);
        if (!writeByte(path, c.offset, back ? c.before : c.after, &result.error)) {
            result.ok = false;
            return result;
        }
        result.changed.push_back(c.offset);
    }
    return result;
}
}  // namespace

WriteResult writeBytes(const std::string& path, const ByteWrites& writes, EditJournal& journal)
{
    WriteResult result;
    std::vector<std::uint8_t> image;
    if (!readImage(path, image, &result.error)) {
        result.ok = false;
        return result;
    }
    EditStep step;
    for (const auto& [offset, value] : writes) {
        if (!writeByte(path, offset, value, &result.error)) {
            result.ok = false;
            break;
        }
        std::uint8_t& held = image[std::size_t(offset)];  // writeByte checked the offset
        if (held != std::uint8_t(value)) {
            step.push_back({offset, held, std::uint8_t(value)});
            result.changed.push_back(offset);
            held = std::uint8_t(value);
        }
    }
    journal.record(std::move(step));
    return result;
}

namespace {
// Takes the journal's next step back (undo) or forward (redo).
WriteResult moveStep(const std::string& path, EditJournal& journal, bool back)
{
    if (!(back ? journal.canUndo() : journal.canRedo()))
        return {};
    WriteResult result = applyStep(path, back ? journal.nextUndo() : journal.nextRedo(), back);
    if (result.ok)
        back ? journal.undone() : journal.redone();
    return result;
}
}  // namespace

WriteResult undoStep(const std::string& path, EditJournal& journal)
{
    return moveStep(path, journal, true);
}

WriteResult redoStep(const std::string& path, EditJournal& journal)
{
    return moveStep(path, journal, false);
}

RevertPlan planRevert(const std::string& path, const std::string& backupPath)
{
    RevertPlan plan;
    std::vector<std::uint8_t> file, backup;
    if (backupPath.empty() || !readImage(backupPath, backup)) {
        plan.kind = RevertPlan::Kind::NoBackup;
        return plan;
    }
    if (!readImage(path, file, &plan.error)) {
        plan.kind = RevertPlan::Kind::Unreadable;
        return plan;
    }
    if (file.size() != backup.size()) {
        plan.kind = RevertPlan::Kind::LengthDiffers;
        return plan;
    }
    for (std::size_t i = 0; i < file.size(); ++i)
        if (file[i] != backup[i])
            plan.writes.emplace_back(long(i), backup[i]);
    return plan;
}

}  // namespace vexorin::rom
