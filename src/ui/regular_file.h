// The regular-file test of the file layer for Qt paths: every window and
// controller asks it before it opens a file that a person or a setting named.
#pragma once

#include "ui/binary_files.h"

#include <QString>

namespace vexorin::files {

// Empty when the path may be opened for the access; otherwise why not.
inline QString openProblem(const QString& path, Access access)
{
    return QString::fromStdString(OpenProblem(path.toStdString(), access));
}

}  // namespace vexorin::files
