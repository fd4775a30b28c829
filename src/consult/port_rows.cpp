#include "consult/port_rows.h"

QString PortRows::caption(int row) const
{
    return row >= 1 && row <= captions_.size() ? captions_[row - 1] : QString();
}

bool PortRows::checked(int row) const
{
    return row >= 1 && row <= checked_.size() && checked_[row - 1];
}

void PortRows::clear()
{
    captions_.clear();
    checked_.clear();
}

PortListing PortRows::refresh(const DeviceSource& source, const QString& saved, const std::function<void(int)>& hit)
{
    clear();
    PortListing listing = listPresentPorts(source);
    if (listing.ok())
        fill(listing.lister, saved, hit);
    return listing;
}

int PortRows::comNumberIn(const QString& caption)
{
    for (int n = 1; n <= kPickableRows; ++n)
        if (caption.contains(QStringLiteral("(COM%1)").arg(n)))
            return n;
    return 0;
}

void PortRows::fill(const DevLister& lister, const QString& saved, const std::function<void(int)>& hit)
{
    for (int i = 1; i <= lister.ListCount(); ++i) {
        const QString caption = lister.Item(i).GetName();
        captions_.append(caption);
        checked_.append(false);
        if (caption.contains(saved)) {
            checked_.last() = true;
            if (const int n = comNumberIn(caption))
                hit(n);
        }
    }
}

int PortRows::pick(int row)
{
    for (int i = 0; i < qMin(int(checked_.size()), kPickableRows); ++i)
        checked_[i] = false;
    if (row < 1 || row > kPickableRows || row > captions_.size())
        return -1;
    checked_[row - 1] = true;
    return comNumberIn(captions_[row - 1]);
}
