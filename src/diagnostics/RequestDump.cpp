// The captured request: everything a run was asked, as text that it can be replayed from.
#include <fstream>

#include "OrvantaWorker.h"

namespace OrvantaNS {

namespace {

constexpr const char* kRequestDumpPath = "/Users/Shared/cursordatadump.txt";

// Every line is flushed, here and in the other dumps: what was written must survive the crash that is hunted.
void dumpRects(std::ofstream& out, const std::vector<OV_TIME_RECT>& rects) {
    out << rects.size() << std::endl;
    for (const OV_TIME_RECT& entry : rects) {
        entry.rect.printRect(out);
        out << " " << entry.time << std::endl;
    }
}

} // namespace

void OrvantaWorker::printStuff(int targetWidth, int targetHeight, const std::vector<OV_TIME_RECT>& foreWindows,
                               const std::vector<OV_MOUSE_ACTION>& cursorActions,
                               const std::vector<OV_MOUSE_LOCATION>& cursorLocations,
                               const std::vector<OV_TIME_RECT>& dirtyRects, const std::vector<OV_TIME_RECT>& caretRects,
                               const std::vector<OV_TIME_RECT>& recordingRegions, double timeScale) const {
    std::ofstream out(kRequestDumpPath, std::ios::binary); // The same bytes on every system.
    out << targetWidth << " " << targetHeight << " " << timeScale << std::endl;
    dumpRects(out, foreWindows);
    // The place of the time within a line differs by record: last here, first for locations.
    out << cursorActions.size() << std::endl;
    for (const OV_MOUSE_ACTION& action : cursorActions) {
        out << action.action << " " << action.time << std::endl;
    }
    out << cursorLocations.size() << std::endl;
    for (const OV_MOUSE_LOCATION& location : cursorLocations) {
        out << location.time << " " << location.x << " " << location.y << std::endl;
    }
    dumpRects(out, dirtyRects);
    dumpRects(out, caretRects);
    dumpRects(out, recordingRegions);
    out.close();
}

} // namespace OrvantaNS
