// The edit journal on a real file: writes journal only the bytes they change,
// undo and redo write them back and again, a change from outside stops them,
// a revert plan lists the bytes that differ from the backup; and the backup
// itself: its name, made once, never overwritten, none for a backup.
#include "rom/backup_file.h"
#include "rom/edit_journal.h"
#include "rom/rom_image.h"
#include "ui/binary_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>

using namespace vexorin::rom;
namespace fs = std::filesystem;

namespace {
using Bytes = std::vector<std::uint8_t>;

class EditJournalTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        dir = fs::temp_directory_path() / ("vexorin-journal-" + std::to_string(::getpid()) + "-" +
                                           ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
        path = (dir / "tune.bin").string();
        Bytes bytes(64);
        std::iota(bytes.begin(), bytes.end(), 0);
        put(path, bytes);
    }
    void TearDown() override { fs::remove_all(dir); }
    static void put(const std::string& p, const Bytes& bytes) { ASSERT_TRUE(vexorin::files::WriteBytes(p, bytes, nullptr)); }
    static Bytes get(const std::string& p)
    {
        Bytes b;
        readImage(p, b);
        return b;
    }
    fs::path dir;
    std::string path;
    EditJournal journal;
};
}  // namespace

TEST_F(EditJournalTest, AWriteJournalsTheBytesItChangesAsOneStep)
{
    const WriteResult r = writeBytes(path, {{3, 3}, {4, 0xAA}, {5, 0xBB}}, journal);
    EXPECT_TRUE(r.ok);
    EXPECT_EQ(r.changed, (std::vector<long>{4, 5}));
    EXPECT_EQ(journal.size(), 1u);
    EXPECT_EQ(get(path)[4], 0xAA);
    EXPECT_EQ(get(path).size(), 64u);
    // A write that changes nothing is no step.
    writeBytes(path, {{4, 0xAA}}, journal);
    EXPECT_EQ(journal.size(), 1u);
}

TEST_F(EditJournalTest, UndoAndRedoWriteTheOldAndTheNewBytes)
{
    const Bytes before = get(path);
    writeBytes(path, {{10, 1}, {11, 2}}, journal);
    const Bytes after = get(path);
    ASSERT_TRUE(undoStep(path, journal).ok);
    EXPECT_EQ(get(path), before);
    EXPECT_FALSE(journal.canUndo());
    ASSERT_TRUE(redoStep(path, journal).ok);
    EXPECT_EQ(get(path), after);
    // A new edit after an undo drops what could have been redone.
    undoStep(path, journal);
    writeBytes(path, {{20, 0}}, journal);
    EXPECT_FALSE(journal.canRedo());
    EXPECT_EQ(journal.size(), 1u);
}

TEST_F(EditJournalTest, AByteChangedTwiceInOneStepEndsAsItBegan)
{
    writeBytes(path, {{7, 100}, {7, 200}}, journal);
    EXPECT_EQ(get(path)[7], 200);
    ASSERT_TRUE(undoStep(path, journal).ok);
    EXPECT_EQ(get(path)[7], 7);
    ASSERT_TRUE(redoStep(path, journal).ok);
    EXPECT_EQ(get(path)[7], 200);
}

TEST_F(EditJournalTest, AChangeFromOutsideStopsUndoAndNothingIsWritten)
{
    writeBytes(path, {{30, 0xEE}, {31, 0xEF}}, journal);
    Bytes outside = get(path);
    outside[31] = 0x01;
    put(path, outside);
    const WriteResult r = undoStep(path, journal);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.error, kChangedOutside);
    EXPECT_EQ(get(path), outside);
    EXPECT_TRUE(journal.canUndo());
}

TEST_F(EditJournalTest, AWriteBehindTheEndFailsAndKeepsWhatWasWritten)
{
    const WriteResult r = writeBytes(path, {{2, 0x77}, {64, 1}, {3, 0x77}}, journal);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(get(path).size(), 64u);
    EXPECT_EQ(get(path)[2], 0x77);
    EXPECT_EQ(get(path)[3], 3);
    ASSERT_TRUE(undoStep(path, journal).ok);
    EXPECT_EQ(get(path)[2], 2);
}

TEST_F(EditJournalTest, ARevertPlanListsTheBackupsBytesWhereTheyDiffer)
{
    const std::string backup = (dir / "tune.orig.bin").string();
    EXPECT_EQ(planRevert(path, backup).kind, RevertPlan::Kind::NoBackup);
    Bytes b = get(path);
    b[9] = 0x99;
    b[40] = 0x40 + 1;
    put(backup, b);
    const RevertPlan plan = planRevert(path, backup);
    ASSERT_EQ(plan.kind, RevertPlan::Kind::Ready);
    EXPECT_EQ(plan.writes, (ByteWrites{{9, 0x99}, {40, 0x41}}));
    b.push_back(0);
    put(backup, b);
    EXPECT_EQ(planRevert(path, backup).kind, RevertPlan::Kind::LengthDiffers);
}

TEST(BackupName, OrigGoesBeforeTheLastExtension)
{
    EXPECT_EQ(backupPathFor("/maps/tune.bin"), "/maps/tune.orig.bin");
    EXPECT_EQ(backupPathFor("/maps/tune.BIN"), "/maps/tune.orig.BIN");
    EXPECT_EQ(backupPathFor("/maps/tune.v2.bin"), "/maps/tune.v2.orig.bin");
    EXPECT_EQ(backupPathFor("/maps.d/tune"), "/maps.d/tune.orig");
    EXPECT_EQ(backupPathFor("/maps/tune.orig.bin"), "");
    EXPECT_EQ(backupPathFor("/maps/TUNE.ORIG.BIN"), "");
    EXPECT_TRUE(isBackupName("tune.orig.bin"));
    EXPECT_FALSE(isBackupName("tuneorig.bin"));
    EXPECT_FALSE(isBackupName("/maps/.orig.bin"));
}

TEST_F(EditJournalTest, TheBackupIsMadeOnceAndNeverOverwritten)
{
    const Bytes original = get(path);
    BackupResult r = makeBackup(path);
    EXPECT_EQ(r.kind, BackupResult::Kind::Made);
    EXPECT_EQ(r.path, (dir / "tune.orig.bin").string());
    EXPECT_EQ(get(r.path), original);
    writeBytes(path, {{0, 0xFF}}, journal);
    r = makeBackup(path);
    EXPECT_EQ(r.kind, BackupResult::Kind::Existed);
    EXPECT_EQ(get(r.path), original);
    EXPECT_FALSE(fs::exists(r.path + ".part"));
}

TEST_F(EditJournalTest, ABackupGetsNoBackup)
{
    const std::string orig = (dir / "tune.orig.bin").string();
    put(orig, get(path));
    EXPECT_EQ(makeBackup(orig).kind, BackupResult::Kind::NotNeeded);
    EXPECT_FALSE(fs::exists(dir / "tune.orig.orig.bin"));
}

TEST_F(EditJournalTest, ABackupThatCannotBeWrittenSaysWhyAndLeavesNothing)
{
    fs::create_directory(dir / "tune.orig.bin.part");  // in the way of the copy
    const BackupResult r = makeBackup(path);
    EXPECT_EQ(r.kind, BackupResult::Kind::Failed);
    EXPECT_FALSE(r.error.empty());
    EXPECT_FALSE(fs::exists(dir / "tune.orig.bin"));
}
