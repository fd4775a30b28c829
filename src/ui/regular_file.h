// The regular-file test of the file layer for Qt paths and files: every window
// and controller asks it before it opens a file that a person or a setting named.
#pragma once

#include "ui/binary_files.h"

#include <QFile>
#include <QFileInfo>
#include <QString>

namespace vexorin::files {

// Empty when the path may be opened for the access; otherwise why not.
inline QString openProblem(const QString& path, Access access)
{
    return QString::fromStdString(OpenProblem(path.toStdString(), access));
}

// Opens the file (its name already set) once the path passes the test for the
// mode: read-only needs a regular file, any writing mode a regular or a new one.
// False with the reason otherwise.
inline bool openRegular(QFile& file, QIODevice::OpenMode mode, QString* error = nullptr)
{
    QString problem = openProblem(file.fileName(), mode & QIODevice::WriteOnly ? Access::Write : Access::Read);
    if (problem.isEmpty() && !file.open(mode))
        problem = file.errorString();
    if (error)
        *error = problem;
    return problem.isEmpty();
}

// What names one file however it is reached (links and "..", relative or
// absolute): its canonical path, or its absolute path while it does not exist.
inline QString identity(const QString& path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}

}  // namespace vexorin::files
