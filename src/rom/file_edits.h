// Every editor's writes to a BIN file pass through here: the one edit journal
// per file (shared by every open editor of it and kept while the application
// runs), the backup made before the first edit of a file in this run, and
// the notice that lets every open view of a file show what undo, redo,
// revert and the block edits wrote.
#pragma once

#include "rom/backup_file.h"
#include "rom/edit_journal.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QVector>

class FileEdits : public QObject {
    Q_OBJECT
public:
    // The one instance of the application: editors of one file in different
    // windows must find the same journal.
    static FileEdits& shared();

    // The name under which a file's journal is kept: its canonical path.
    static QString key(const QString& path);

    // Whether the views of the file show what a write put there.
    enum class Views { Keep, Refresh };
    // Writes the bytes, one byte per write, and journals those that changed
    // as one step. False with the reason when a write failed.
    bool write(const QString& path, const vexorin::rom::ByteWrites& writes, Views views, QString* error = nullptr);
    // Undo (`back`) or redo the file's next step; `bytes`: how many were written.
    bool step(const QString& path, bool back, QString* error = nullptr, int* bytes = nullptr);
    bool canUndo(const QString& path) const;
    bool canRedo(const QString& path) const;

    // The backup on a file's first switch into edit mode in this run: made
    // (or found) the first time, nothing after (`first` false).
    struct Backup {
        bool first = false;
        vexorin::rom::BackupResult result;
        // "No backup could be made: <reason>. Edits go to the file itself." when the copy failed now.
        QString failure() const;
        // "Backup: <path>" when a backup was made or found now.
        QString notice() const;
    };
    static QString backupNotice(const QString& backupPath);
    Backup backupOnFirstEdit(const QString& path);

    // "Revert to Backup": the question to ask, or the reason there is nothing to do.
    struct Revert {
        QString question;  // empty when refused
        QString refusal;
        vexorin::rom::ByteWrites writes;
    };
    Revert planRevert(const QString& path) const;
    // Writes the plan back as one step.
    bool revert(const QString& path, const Revert& plan, QString* error = nullptr);

    // Forgets every journal and backup note (tests start afresh).
    void forgetAll();

signals:
    // Bytes of the file changed, and its open views show them now.
    void bytesChanged(const QString& key, const QVector<long>& offsets);
    // What undo and redo can do for the file changed.
    void journalChanged(const QString& key);

private:
    bool finish(const QString& path, const vexorin::rom::WriteResult& result, Views views, QString* error,
                int* bytes = nullptr);
    QHash<QString, vexorin::rom::EditJournal> journals_;
    QSet<QString> backedUp_;
};
