#include "ui/common_dialog.h"

#include "ui/owned_dialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>

namespace mCommonDialog {

namespace {
Answerer& answerer()
{
    static Answerer a;
    return a;
}

QString withExtension(QString path, const QString& ext)
{
    if (!path.isEmpty() && !ext.isEmpty() && QFileInfo(path).suffix().isEmpty())
        path += ext.startsWith(QLatin1Char('.')) ? ext : QLatin1Char('.') + ext;
    return path;
}

bool run(const DialogRequest& req, DialogResult& res, bool save)
{
    res = DialogResult{};
    res.filterIndex = save ? 0 : -1;
    const QStringList filters = filterList(req.filter);
    QString path;
    QStringList files;
    QString chosenFilter;
    if (answerer()) {
        path = answerer()(req, save);
        files = path.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        path = files.value(0);
        chosenFilter = filters.value(qMax(0, req.filterIndex - 1));
    } else {
        // On the heap: the owner may be unloaded while the dialog waits, and takes the
        // dialog with it; exec() then returns Rejected.
        QPointer<QFileDialog> dialog = new QFileDialog(req.owner, req.dialogTitle, req.initialDirectory, QString());
        dialog->setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
        dialog->setFileMode(save ? QFileDialog::AnyFile
                                 : (req.multiSelect ? QFileDialog::ExistingFiles
                                                    : (req.fileMustExist ? QFileDialog::ExistingFile
                                                                         : QFileDialog::AnyFile)));
        if (!filters.isEmpty()) {
            dialog->setNameFilters(filters);
            dialog->selectNameFilter(filters.value(qMax(0, req.filterIndex - 1)));
        }
        QString ext = req.defaultExtension;
        if (ext.startsWith(QLatin1Char('.')))
            ext.remove(0, 1);
        dialog->setDefaultSuffix(ext);
        if (!save || !req.overwritePrompt)
            dialog->setOption(QFileDialog::DontConfirmOverwrite, !req.overwritePrompt);
        if (!req.fileSpec.isEmpty())
            dialog->selectFile(req.fileSpec);
        const vexorin::ui::DialogWait wait(req.owner);
        const int outcome = dialog->exec();
        if (dialog && outcome == QDialog::Accepted && !dialog->selectedFiles().isEmpty()) {
            files = dialog->selectedFiles();
            path = files.first();
            chosenFilter = dialog->selectedNameFilter();
        }
        delete dialog.data();
    }
    if (path.isEmpty())
        return false;
    res.fileSpec = withExtension(path, req.defaultExtension);
    res.files = save || !req.multiSelect ? QStringList{res.fileSpec} : files;
    res.fileTitle = QFileInfo(res.fileSpec).fileName();
    res.filter = chosenFilter;
    res.filterIndex = qMax(1, int(filters.indexOf(chosenFilter)) + 1);
    res.readOnly = req.readOnly;
    res.flags = req.flags;
    return true;
}
}  // namespace

QStringList filterList(const QString& filter)
{
    const QStringList parts = filter.split(QRegularExpression(QStringLiteral("[:|]")));
    QStringList out;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        const QString description = parts[i].trimmed();
        QString pattern = parts[i + 1].trimmed();
        pattern.replace(QLatin1Char(';'), QLatin1Char(' '));
        if (pattern.isEmpty())
            continue;
        if (description.endsWith(QLatin1Char(')')) && description.contains(QLatin1Char('(')))
            out << description;
        else if (description.isEmpty())
            out << pattern + QStringLiteral(" (") + pattern + QLatin1Char(')');
        else
            out << description + QStringLiteral(" (") + pattern + QLatin1Char(')');
    }
    return out;
}

bool OpenFile(const DialogRequest& request, DialogResult& result)
{
    return run(request, result, false);
}

bool SaveFile(const DialogRequest& request, DialogResult& result)
{
    return run(request, result, true);
}

void setAnswerer(Answerer a)
{
    answerer() = std::move(a);
}

namespace {
// The request of the windows' standard dialogs.
DialogRequest standardRequest(QWidget* owner, const QString& defaultExtension, const QString& filter)
{
    DialogRequest req;
    req.owner = owner;
    req.defaultExtension = defaultExtension;
    req.filter = filter;
    return req;
}
}  // namespace

QString saveFileName(QWidget* owner, const QString& defaultExtension, const QString& filter, const QString& initialName)
{
    DialogRequest req = standardRequest(owner, defaultExtension, filter);
    req.fileSpec = initialName;
    DialogResult res;
    return SaveFile(req, res) ? res.fileSpec : QString();
}

QStringList openFileNames(QWidget* owner, const QString& filter)
{
    DialogRequest req = standardRequest(owner, QString(), filter);
    req.multiSelect = true;
    DialogResult res;
    return OpenFile(req, res) ? res.files : QStringList();
}

QString openFileName(QWidget* owner, const QString& defaultExtension, const QString& filter)
{
    DialogResult res;
    return OpenFile(standardRequest(owner, defaultExtension, filter), res) ? res.fileSpec : QString();
}

}  // namespace mCommonDialog
