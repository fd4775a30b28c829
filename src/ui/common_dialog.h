// The file open and save dialogs. Callers fill a request; the result says
// what the user chose. Tests answer the dialogs through an answerer, so no
// dialog waits for a person.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class QWidget;

namespace mCommonDialog {

struct DialogRequest {
    QString fileSpec;        // initial name
    QString fileTitle;
    bool fileMustExist = true;    // open only
    bool overwritePrompt = true;  // save only
    bool multiSelect = false;     // open only
    bool readOnly = false;        // open only
    bool hideReadOnly = true;     // open only
    QString filter;          // description and pattern pairs, each followed by a bar: "LOG Files (*.log)|*.log"
    int filterIndex = 1;     // one-based
    QString initialDirectory;
    QString dialogTitle;
    QString defaultExtension;  // ".log"
    QWidget* owner = nullptr;
    quint32 flags = 0;
};

struct DialogResult {
    QString fileSpec;       // chosen path; empty on cancel
    QStringList files;      // every chosen path (several with multiSelect)
    QString fileTitle;      // name part of the path; empty on cancel
    QString filter;         // the chosen filter's description; empty on cancel
    int filterIndex = 0;    // chosen index; on cancel -1 for open, 0 for save
    bool readOnly = false;
    quint32 flags = 0;
};

// The dialog's filter list: ":" and "|" separate, pairs are description and pattern.
QStringList filterList(const QString& filter);

// True when a file was chosen.
bool OpenFile(const DialogRequest& request, DialogResult& result);
bool SaveFile(const DialogRequest& request, DialogResult& result);

// Answers dialogs instead of a person (an empty function restores the real dialogs).
// The answer is the chosen path, or empty for a cancel; for a multiSelect
// request, several paths each on a line of their own.
using Answerer = std::function<QString(const DialogRequest& request, bool save)>;
void setAnswerer(Answerer answerer);

// The standard save and open of the windows: default extension and filter as given.
QString saveFileName(QWidget* owner, const QString& defaultExtension, const QString& filter,
                     const QString& initialName = QString());
QString openFileName(QWidget* owner, const QString& defaultExtension, const QString& filter);
// An open of one or more files; empty on cancel.
QStringList openFileNames(QWidget* owner, const QString& filter);

}  // namespace mCommonDialog
