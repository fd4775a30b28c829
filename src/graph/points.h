// The ordered data behind the graph: points of one double each, counted from 1.
#pragma once

#include "graph/property_blob.h"

#include <functional>
#include <string>
#include <vector>

namespace vexorin::graph {

class Point {
public:
    double Value = 0.0;

    // The state of a point: the value's eight bytes as four UTF-16 code units.
    std::u16string state() const;
    void setState(const std::u16string& s);
    PropertyBlob blob() const;
};

class Points {
public:
    Points();

    // Called synchronously after every Add, Remove and Clear.
    void setChangedHandler(std::function<void()> h) { changed_ = std::move(h); }

    Point& Add(double value);
    // Counted from 1; a bad index is refused (false).
    bool Remove(int index);
    void Clear();
    const Point& Item(int index) const { return items_.at(std::size_t(index - 1)); }
    int Count() const { return int(items_.size()); }
    std::vector<double> values() const;

    PropertyBlob blob() const;
    // Replaces the series by the one in the blob; fires Changed once (through Clear).
    bool fromBlob(const PropertyBlob& blob, std::string* error);

    // Files hold the blob alone. Errors come back as text ("File not found.", ...).
    bool Save(const std::string& path, std::string* error) const;
    bool Load(const std::string& path, std::string* error);

private:
    void fire()
    {
        if (changed_)
            changed_();
    }
    std::vector<Point> items_;
    std::function<void()> changed_;
};

}  // namespace vexorin::graph
