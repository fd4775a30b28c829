#include "rom/bin_compare_view.h"

#include "ui/regular_file.h"

#include <QDir>
#include <QFile>

using namespace vexorin::rom;

const QString BinCompareView::kCaption = QStringLiteral("Vexorin BIN Compare");

BinCompareView::BinCompareView(QObject* parent) : QObject(parent) {}

void BinCompareView::openA(const QString& path)
{
    open(a_, path);
}

void BinCompareView::openB(const QString& path)
{
    open(b_, path);
}

void BinCompareView::open(Side& side, const QString& path)
{
    if (path.isEmpty())
        return;
    const QString shown = QDir::toNativeSeparators(path);
    const auto refuse = [&](const QString& why) {
        emit message(tr("The file %1 could not be read: %2").arg(shown, why));
    };
    // Read-only, always: the comparison never writes either file.
    QFile file(path);
    QString problem;
    if (!vexorin::files::openRegular(file, QIODevice::ReadOnly, &problem))
        return refuse(problem);
    if (file.size() > kLargestFile)
        return refuse(tr("it holds %1 bytes, more than a BIN file can (at most %2 are compared)")
                          .arg(file.size())
                          .arg(kLargestFile));
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return refuse(file.errorString());
    side.path = path;
    side.bytes.assign(bytes.begin(), bytes.end());
    side.loaded = true;
    recompare();
}

void BinCompareView::recompare()
{
    if (compared())
        result_ = compareImages(a_.bytes.data(), a_.bytes.size(), b_.bytes.data(), b_.bytes.size());
    else
        result_ = CompareResult{};
    emit changed();
}

QString BinCompareView::summary() const
{
    if (!compared())
        return a_.loaded || b_.loaded ? tr("Open the other file to compare.") : tr("Open two BIN files to compare.");
    QString text = QString::fromStdString(differenceText(result_));
    const std::string lengths = lengthText(result_);
    if (!lengths.empty())
        text += QLatin1Char('\n') + QString::fromStdString(lengths);
    return text;
}

QStringList BinCompareView::rows() const
{
    QStringList out;
    out.reserve(int(result_.rows.size()));
    for (const CompareRow& row : result_.rows)
        out << QString::fromStdString(row.text);
    return out;
}

void BinCompareView::activateRow(int row)
{
    if (row < 0 || std::size_t(row) >= result_.rows.size())
        return;
    const int tab = result_.rows[std::size_t(row)].mapTab;
    if (tab >= 0)
        emit mapRequested(tab, a_.path, b_.path);
}
