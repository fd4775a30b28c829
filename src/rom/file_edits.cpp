#include "rom/file_edits.h"

#include "ui/regular_file.h"

using namespace vexorin::rom;

FileEdits& FileEdits::shared()
{
    static FileEdits edits;
    return edits;
}

QString FileEdits::key(const QString& path)
{
    return vexorin::files::identity(path);
}

bool FileEdits::finish(const QString& path, const WriteResult& result, Views views, QString* error, int* bytes)
{
    if (bytes)
        *bytes = int(result.changed.size());
    const QString k = key(path);
    if (!result.changed.empty()) {
        if (views == Views::Refresh)
            emit bytesChanged(k, QVector<long>(result.changed.begin(), result.changed.end()));
        emit journalChanged(k);
    }
    if (!result.ok && error)
        *error = QString::fromStdString(result.error);
    return result.ok;
}

bool FileEdits::write(const QString& path, const ByteWrites& writes, Views views, QString* error)
{
    return finish(path, writeBytes(path.toStdString(), writes, journals_[key(path)]), views, error);
}

bool FileEdits::step(const QString& path, bool back, QString* error, int* bytes)
{
    EditJournal& journal = journals_[key(path)];
    const std::string file = path.toStdString();
    return finish(path, back ? undoStep(file, journal) : redoStep(file, journal), Views::Refresh, error, bytes);
}

bool FileEdits::canUndo(const QString& path) const
{
    const auto it = journals_.constFind(key(path));
    return it != journals_.constEnd() && it->canUndo();
}

bool FileEdits::canRedo(const QString& path) const
{
    const auto it = journals_.constFind(key(path));
    return it != journals_.constEnd() && it->canRedo();
}

FileEdits::Backup FileEdits::backupOnFirstEdit(const QString& path)
{
    Backup backup;
    const QString k = key(path);
    if (backedUp_.contains(k))
        return backup;
    backup.first = true;
    backup.result = makeBackup(path.toStdString());
    // A failed copy is tried again at the next switch into edit mode.
    if (backup.result.kind != BackupResult::Kind::Failed)
        backedUp_.insert(k);
    return backup;
}

QString FileEdits::Backup::failure() const
{
    if (!first || result.kind != BackupResult::Kind::Failed)
        return {};
    return QStringLiteral("No backup could be made: %1. Edits go to the file itself.")
        .arg(QString::fromStdString(result.error));
}

QString FileEdits::Backup::notice() const
{
    if (!first || (result.kind != BackupResult::Kind::Made && result.kind != BackupResult::Kind::Existed))
        return {};
    return backupNotice(QString::fromStdString(result.path));
}

QString FileEdits::backupNotice(const QString& backupPath)
{
    return QStringLiteral("Backup: %1").arg(backupPath);
}

FileEdits::Revert FileEdits::planRevert(const QString& path) const
{
    Revert revert;
    const std::string backupPath = backupPathFor(path.toStdString());
    const RevertPlan plan = vexorin::rom::planRevert(path.toStdString(), backupPath);
    switch (plan.kind) {
    case RevertPlan::Kind::NoBackup:
        revert.refusal = QStringLiteral("No backup of this file exists.");
        break;
    case RevertPlan::Kind::LengthDiffers:
        revert.refusal = QStringLiteral("The backup is not the same length as the file.");
        break;
    case RevertPlan::Kind::Unreadable:
        revert.refusal = QStringLiteral("The BIN file could not be read: %1").arg(QString::fromStdString(plan.error));
        break;
    case RevertPlan::Kind::Ready:
        if (plan.writes.empty()) {
            revert.refusal = QStringLiteral("The file is the same as its backup.");
        } else {
            revert.question = QStringLiteral("Write back %1 bytes from %2?")
                                  .arg(plan.writes.size())
                                  .arg(QString::fromStdString(backupPath));
            revert.writes = plan.writes;
        }
        break;
    }
    return revert;
}

bool FileEdits::revert(const QString& path, const Revert& plan, QString* error)
{
    return write(path, plan.writes, Views::Refresh, error);
}

void FileEdits::forgetAll()
{
    journals_.clear();
    backedUp_.clear();
}
