#include "sensors/byte_viewer_cells.h"

QString ByteViewerCells::cell(int index) const
{
    return index >= 1 && index <= kCount ? cells_[std::size_t(index - 1)] : QString();
}

void ByteViewerCells::setCell(int index, const QString& text)
{
    if (index < 1 || index > kCount)
        return;
    cells_[std::size_t(index - 1)] = text;
    emit cellChanged(index, text);
}
