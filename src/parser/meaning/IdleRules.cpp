// What moves on the screen while the cursor does not.

#include "parser/DataParser.h"

#include <algorithm>
#include <optional>

#include "frame/Geometry.h"
#include "frame/Steps.h"
#include "parser/meaning/WorkingList.h"

namespace OrvantaNS {

namespace {

// A rest or absence of at least this long is a long one, seconds.
constexpr double kLongRestSeconds = 2.0;
// A stroke out of the window belongs to a rest that begins at most this much later, seconds.
constexpr double kLeftWindowSeconds = 2.0;
// What changed from this long before that stroke on counts as well, seconds.
constexpr double kBeforeLeavingSeconds = 0.5;

// The windows in front at the two ends of a rest.
struct RestWindows {
    Interval_Type<long long> ticks; ///< The rest.
    Rectangle atStart;
    Rectangle atStop;
};

RestWindows windowsOf(DataParser& parser, const OV_VALUE_OBJECT& rest) {
    const Interval_Type<long long> ticks{DataParser::revertTime(rest.start), DataParser::revertTime(rest.stop)};
    return {ticks, parser.getPrimitiveWindowAtTime(ticks.start), parser.getPrimitiveWindowAtTime(ticks.stop)};
}

bool isLong(const OV_VALUE_OBJECT& rest) { return !(rest.stop - rest.start < kLongRestSeconds); }

// Hands over an object for every changing area inside the window, cut to the interval.
void addIdleDirty(DataParser& parser, OV_DATA_STORE& store, Interval_Type<long long> interval,
                  const Rectangle& window) {
    for (const std::uint32_t object : parser.getDRObjectsInTime(interval)) {
        countSteps(store, 1);
        const DR_OBJECT& area = parser.drObjects[object];
        Rectangle rect = area.bounds;
        parser.clipRectToLZ(store.currentZone, store, rect);
        if (contains(window, rect)) {
            const Interval_Type<double> time =
                DataParser::convertInterval({std::max(area.start, interval.start), std::min(area.stop, interval.stop)});
            store.valueObjects.push_back({IdleDirty, time.start, time.stop, rect, 0.0});
        }
    }
}

} // namespace

void DataParser::metaOutOfWindowIdle(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    const OV_VALUE_OBJECT rest = objects[index];
    const RestWindows windows = windowsOf(*this, rest);
    double from = rest.start;
    if (windows.atStart == windows.atStop) {
        if (contains(windows.atStart, rest.rect) || !isLong(rest) || index == 0) {
            return;
        }
        std::optional<WorkingList> own;
        const std::size_t leaving =
            listFor(own, store).beginningAfter(WorkingList::Departures, 0, rest.start - kLeftWindowSeconds);
        if (leaving >= index) {
            return;
        }
        from = objects[leaving].start - kBeforeLeavingSeconds;
    }
    addIdleDirty(*this, store, {revertTime(from), windows.ticks.stop}, windows.atStart);
}

void DataParser::metaInWindowIdle(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    const OV_VALUE_OBJECT& rest = objects[index];
    const RestWindows windows = windowsOf(*this, rest);
    if (windows.atStart == windows.atStop && !isLong(rest) && contains(windows.atStart, rest.rect)) {
        addIdleDirty(*this, store, windows.ticks, windows.atStart);
    }
}

void DataParser::metaOutOfRegion(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    const OV_VALUE_OBJECT& absence = objects[index];
    const RestWindows windows = windowsOf(*this, absence);
    if (windows.atStart == windows.atStop && !isLong(absence)) {
        addIdleDirty(*this, store, windows.ticks, windows.atStart);
    }
    std::optional<WorkingList> own;
    listFor(own, store).retype(index, Dead);
}

} // namespace OrvantaNS
