// The value objects in work, as text.
#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <iostream>

#include "OrvantaWorker.h"
#include "frame/DataStore.h"

namespace OrvantaNS {

namespace {

constexpr const char* kObjectDumpPath = "/Users/Shared/valuedatadump.txt";

// Labels of the first types; later types print by number.
constexpr std::array<const char*, 11> kTypeLabels{"Move",        "Mouse Idle",  "Click",       "Drag",
                                                  "DoubleClick", "Caret",       "TextFocus",   "FollowText",
                                                  "ForeOpen",    "ForeAnimate", "ActiveWindow"};

// Lies in the interval, or overlaps it by more than nothing. The decay after `stop` plays no part.
bool isShown(const OV_VALUE_OBJECT& object, const Interval_Type<double>& interval) {
    if (object.start >= interval.start && object.stop <= interval.stop) {
        return true;
    }
    return std::min(object.stop, interval.stop) - std::max(object.start, interval.start) > 0.0;
}

void dumpType(std::ostream& out, std::uint32_t type, bool toConsole) {
    // The console form has no label for idles, unlike the file form; readers of either rely on its own text.
    if (type < kTypeLabels.size() && !(toConsole && type == MouseIdle)) {
        out << kTypeLabels[type];
    } else {
        out << "Unidentified:" << type;
    }
}

void dumpObjects(std::ostream& out, const OV_DATA_STORE& store, bool toConsole, const Interval_Type<double>& interval) {
    // `nextObject` is shown too; once everything is loaded it stands past the last object.
    const std::size_t end = std::min(std::size_t{store.nextObject} + 1, store.valueObjects.size());
    for (std::size_t index = store.firstActiveObject; index < end; ++index) {
        const OV_VALUE_OBJECT& object = store.valueObjects[index];
        if (!isShown(object, interval)) {
            continue;
        }
        out << "Object: " << index << " (" << object.start << "-" << object.stop << ")" << std::endl;
        out << " LRTB: ";
        object.rect.printRect(out);
        out << std::endl;
        out << "Type: ";
        dumpType(out, object.type, toConsole);
        out << " Value: " << object.value << std::endl;
        out << std::endl;
    }
}

} // namespace

void OrvantaWorker::printValueObjects(OV_DATA_STORE& store, bool toConsole, Interval_Type<double> interval) const {
    if (toConsole) {
        dumpObjects(std::cout, store, toConsole, interval);
        return;
    }
    std::ofstream out(kObjectDumpPath, std::ios::binary); // The same bytes on every system.
    dumpObjects(out, store, toConsole, interval);
    out.close();
}

} // namespace OrvantaNS
