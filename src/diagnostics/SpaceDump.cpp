// One space as text, and the graph's test of its own structure.
#include <cstddef>
#include <iostream>

#include "frame/Geometry.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {

namespace {

// All on one line, each followed by a blank.
void dumpIndices(std::ostream& out, const std::vector<std::uint32_t>& indices) {
    for (const std::uint32_t index : indices) {
        out << index << " ";
    }
    out << std::endl;
}

} // namespace

void ValueSpace::printSpace(unsigned space) {
    const OV_INTERSECTION& shown = graph[space];
    std::ostream& out = std::cout;
    out << "Space: " << space << std::endl;
    out << "   Valid: " << (shown.valid ? 1 : 0) << std::endl;
    out << "   Value: " << truncateToInt32(shown.value) << std::endl;
    out << "   LRTB: ";
    shown.rect.printRect(out);
    out << std::endl;
    out << "   OBJECTS:" << std::endl;
    dumpIndices(out, shown.objects);
    out << "   PARENTS:" << std::endl;
    dumpIndices(out, shown.parents);
    out << "   CHILDREN:" << std::endl;
    dumpIndices(out, shown.children);
    out << std::endl;
}

void ValueSpace::testStructure() {
    std::ostream& out = std::cout;
    // The messages give positions within the list under test, not what stands there.
    for (std::size_t s = 0; s < graph.size(); ++s) {
        const OV_INTERSECTION& space = graph[s];
        if (!space.valid) {
            continue;
        }
        for (std::size_t p = 0; p < space.objects.size(); ++p) {
            if (objectMap.find(space.objects[p]) == objectMap.end()) {
                out << "Object Location Failure for Object: " << p << std::endl;
            }
        }
        // Non-strict containment: a link between equal rectangles fails, and one that points the wrong way; a parent
        // that merely does not contain its child goes unseen.
        for (std::size_t p = 0; p < space.parents.size(); ++p) {
            const OV_INTERSECTION& parent = graph[space.parents[p]];
            if (!parent.valid) {
                out << "Graph parent failed validity: " << p << std::endl;
            }
            if (contains(space.rect, parent.rect)) {
                out << "Failed parent contain test: " << s << " " << p << std::endl;
            }
        }
        for (std::size_t p = 0; p < space.children.size(); ++p) {
            const OV_INTERSECTION& child = graph[space.children[p]];
            if (!child.valid) {
                out << "Graph Children failed validity: " << p << std::endl;
            }
            if (contains(child.rect, space.rect)) {
                out << "Failed Children contain test: " << s << " " << p << std::endl;
            }
        }
    }
}

} // namespace OrvantaNS
