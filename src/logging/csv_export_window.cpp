#include "logging/csv_export_window.h"

#include "logging/log_csv_export.h"
#include "logging/log_frames.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"

#include <QFileInfo>
#include <QPointer>
#include <QProgressDialog>

namespace vexorin::logging {

LogCsvExport* exportLogAsCsv(QWidget* owner, const QString& logPath)
{
    if (logPath.isEmpty())
        return nullptr;
    const QString csvPath =
        mCommonDialog::saveFileName(owner, QStringLiteral(".csv"), kCsvFilter, LogCsvExport::csvNameFor(logPath));
    if (csvPath.isEmpty())
        return nullptr;
    auto* job = new LogCsvExport(owner);
    QString error;
    if (!job->open(logPath, csvPath, &error)) {
        delete job;
        MessageBoxes::information(owner, error);
        return nullptr;
    }
    QPointer<QProgressDialog> progress;
    if (job->long_()) {
        progress = new QProgressDialog(QStringLiteral("Exporting %1...").arg(QFileInfo(logPath).fileName()),
                                       QStringLiteral("Cancel"), 0, 1000, owner);
        progress->setObjectName(QStringLiteral("ExportProgress"));
        progress->setWindowTitle(QStringLiteral("Export Log as CSV"));
        progress->setWindowModality(Qt::WindowModal);
        progress->setMinimumDuration(0);
        progress->setAutoClose(false);
        progress->setAutoReset(false);
        QObject::connect(progress, &QProgressDialog::canceled, job, &LogCsvExport::cancel);
        QObject::connect(job, &LogCsvExport::progress, progress, [progress](qint64 done, qint64 total) {
            if (progress && total > 0)
                progress->setValue(int(done * 1000 / total));
        });
    }
    QPointer<QWidget> parent = owner;
    QObject::connect(job, &LogCsvExport::finished, job, [job, progress, parent](const QString& problem) {
        if (progress)
            progress->deleteLater();
        const QString unreadable = QString::fromStdString(unreadableFramesText(job->unreadable()));
        job->deleteLater();
        if (job->cancelled())
            return;  // the person asked for it: nothing to say
        if (!problem.isEmpty())
            MessageBoxes::information(parent, problem);
        else if (problem.isEmpty() && !unreadable.isEmpty())
            MessageBoxes::information(parent, unreadable);
    });
    job->start();
    return job;
}

}  // namespace vexorin::logging
