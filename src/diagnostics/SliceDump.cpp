// One slice with its classification and its value map, as text.
#include <cstddef>
#include <iostream>

#include "OrvantaWorker.h"
#include "frame/DataStore.h"

namespace OrvantaNS {

void OrvantaWorker::printFocusSlice(OV_DATA_STORE& store, unsigned slice) const {
    const OV_FOCUS_SLICE& shown = store.slices[slice];
    const SLICE_BREAKDOWN& breakdown = shown.breakdown;
    std::ostream& out = std::cout;
    out << "Slice #" << slice << ": (" << shown.start << " - " << shown.stop << ") "
        << "B:K:M = " << shown.blank << ":" << shown.keyframe << ":" << shown.mergeId << std::endl;
    out << "  Merge Type: " << shown.mergeType << " TWIN: " << breakdown.tight << " " << breakdown.window << " "
        << breakdown.inWindow << " " << breakdown.noWindow << std::endl;
    out << "  Window = (";
    breakdown.windowRect.printRect(out);
    out << ")" << std::endl;
    out << "  Tier4 = (";
    breakdown.tier4Rect.printRect(out);
    out << ")" << std::endl;
    for (const auto& [rect, density] : shown.map.spaces) {
        out << "    Space Value: " << density << " LRTB: ";
        rect.printRect(out);
        out << std::endl;
    }
    for (std::size_t position = 0; position < shown.map.tier4Rects.size(); ++position) {
        out << "    Tier4Rect: " << position << " LRTB: ";
        shown.map.tier4Rects[position].printRect(out);
        out << std::endl;
    }
}

} // namespace OrvantaNS
