#include "sensors/byte_viewer_window.h"

#include "sensors/byte_viewer_cells.h"
#include "ui/plain_text.h"
#include "ui/window_keys.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>

ByteViewerWindow::ByteViewerWindow(ByteViewerCells& cells, QWidget* parent)
    : QWidget(parent, Qt::Window), cells_(cells)
{
    setObjectName(QStringLiteral("ByteViewer"));
    setWindowTitle(QStringLiteral("Form6"));
    auto* h = new QHBoxLayout(this);
    const QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (int frame = 0; frame < 2; ++frame) {
        auto* box = new QGroupBox(QStringLiteral("Bytes"), this);
        auto* grid = new QGridLayout(box);
        grid->setHorizontalSpacing(4);
        grid->setVerticalSpacing(4);
        for (int i = 0; i < 32; ++i) {
            const int index = frame * 32 + i + 1;
            auto* number = new QLabel(QString::number(index), box);
            QPalette np = number->palette();
            np.setColor(QPalette::WindowText, QColor(128, 128, 128));
            number->setPalette(np);
            number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            auto* l = new QLabel(box);
            l->setObjectName(QStringLiteral("ByteViewerCell%1").arg(index));
            l->setFont(mono);
            l->setFrameShape(QFrame::StyledPanel);
            l->setMinimumWidth(36);
            l->setAlignment(Qt::AlignCenter);
            const int row = i % 8, col = (i / 8) * 2;
            grid->addWidget(number, row, col);
            grid->addWidget(l, row, col + 1);
            labels_[std::size_t(index - 1)] = l;
        }
        h->addWidget(box);
    }
    connect(&cells_, &ByteViewerCells::cellChanged, this, &ByteViewerWindow::refresh);
    for (int i = 1; i <= 64; ++i)
        refresh(i);
    vexorin::ui::addEscapeToClose(this);
    vexorin::ui::keepTextPlain(this);
}

QLabel* ByteViewerWindow::cell(int index) const
{
    return index >= 1 && index <= 64 ? labels_[std::size_t(index - 1)] : nullptr;
}

void ByteViewerWindow::refresh(int index)
{
    if (QLabel* l = cell(index))
        l->setText(cells_.cell(index));
}
