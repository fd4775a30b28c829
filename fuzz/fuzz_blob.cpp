// Any bytes as a property bag: a points file, a graph settings file, a state record.
#include "graph/graph_settings.h"
#include "graph/points.h"
#include "graph/property_blob.h"

#include <cstddef>
#include <cstdint>

using namespace vexorin::graph;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string error;
    const auto blob = PropertyBlob::parse(data, size, &error);
    if (!blob) {
        if (error.empty())
            __builtin_trap();  // a refusal always says why
        return 0;
    }
    // What parses writes back and parses to the same records.
    const ByteVector again = blob->serialize();
    const auto reparsed = PropertyBlob::parse(again, &error);
    if (!reparsed || reparsed->records().size() != blob->records().size())
        __builtin_trap();
    Points points;
    points.fromBlob(*blob, &error);
    GraphSettings s;
    GraphSettings::fromBytes(blob->readBytes(u16("Graph")), s);
    GraphControlRecord c;
    GraphControlRecord::fromBytes(blob->readBytes(u16("Control")), c);
    const auto inner = PropertyBlob::parse(blob->readBytes(u16("Points")), &error);
    if (inner)
        points.fromBlob(*inner, &error);
    return 0;
}
