// The regular-file test of the file layer for Qt paths and files: every window
// and controller asks it before it opens a file that a person or a setting named.
#pragma once

#include "ui/binary_files.h"

#include <QFile>
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

}  // namespace vexorin::files
