// The rows of a port menu: one per present device of the class "Ports", each
// with its caption and check mark, and the COM number a caption ends in.
// The Consult menu's `portss` and the external port's `ExternalPort` items
// follow the same rules.
#pragma once

#include "consult/dev_lister.h"

#include <QList>
#include <QStringList>
#include <functional>

class PortRows {
public:
    // Only rows 1 to 16 can be picked.
    static constexpr int kPickableRows = 16;

    // Rows counted from 1.
    int count() const { return int(captions_.size()); }
    QString caption(int row) const;
    bool checked(int row) const;

    void clear();
    // Lists the present ports afresh and fills the rows, see fill below. When the
    // listing fails the rows stay empty and the result names the error box.
    PortListing refresh(const DeviceSource& source, const QString& saved, const std::function<void(int comNumber)>& hit);
    // Unchecks rows 1 to 16 and checks `row`. Returns the COM number of its
    // caption (0 when it has none), or -1 when the row cannot be picked.
    int pick(int row);

    // The first of "(COM1)" to "(COM16)" in a caption, in that order, or 0.
    // "(COM1)" does not match "(COM10)" because of the closing bracket.
    static int comNumberIn(const QString& caption);

private:
    // One row per device of the listing. A row whose caption holds `saved` as a
    // plain substring is checked (an empty text is in every caption), and
    // `hit` gets its COM number when the caption has one; the last match
    // therefore has the last word.
    void fill(const DevLister& lister, const QString& saved, const std::function<void(int comNumber)>& hit);

    QStringList captions_;
    QList<bool> checked_;
};
