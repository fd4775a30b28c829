// The 64 value cells of the Byte Viewer: what the last reader wrote.
#pragma once

#include <QObject>
#include <QString>
#include <array>

class ByteViewerCells : public QObject {
    Q_OBJECT
public:
    static constexpr int kCount = 64;
    using QObject::QObject;

    // Cells count from 1.
    QString cell(int index) const;
    void setCell(int index, const QString& text);

signals:
    void cellChanged(int index, const QString& text);

private:
    std::array<QString, kCount> cells_;
};
