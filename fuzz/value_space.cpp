// Fuzz target: sequences of insertions, deletions and summaries on one value space.

#include <bit>

#include "ByteReader.h"
#include "Check.h"
#include "GraphInvariants.h"
#include "frame/DataStore.h"
#include "frame/Geometry.h"
#include "valuespace/ValueSpace.h"

namespace {

using namespace OrvantaNS;
using namespace OrvantaNS::fuzz;

// Overlaps of n rectangles can make some n^4 spaces; this many keep a step well under a millisecond.
constexpr unsigned kMostObjects = 16;

Rectangle rectangle(ByteReader& bytes, const Rectangle& previous) {
    const std::uint8_t choice = bytes.u8();
    if (choice < 160) {
        // A coarse grid: equal edges, containment and repeats are the interesting cases.
        const std::uint8_t across = bytes.u8();
        const std::uint8_t down = bytes.u8();
        constexpr std::int32_t kCell = 20;
        const std::int32_t left = across % 16 * kCell;
        const std::int32_t top = down % 16 * kCell;
        return {left, left + (across / 16 + 1) * kCell, top, top + (down / 16 + 1) * kCell};
    }
    if (choice < 224) {
        // About as large as the one before: some join its space, some do not.
        const std::uint16_t shift = bytes.u16();
        return {wrapAdd(previous.left, shift % 19 - 1), wrapSub(previous.right, shift / 19 % 19 - 1),
                wrapAdd(previous.top, shift / 361 % 19 - 1), previous.bottom};
    }
    return {bytes.coordinate(), bytes.coordinate(), bytes.coordinate(), bytes.coordinate()};
}

double value(ByteReader& bytes) {
    const std::uint8_t choice = bytes.u8();
    return choice < 240 ? choice * 0.25 : bytes.f64();
}

bool isSame(const VS_VALUE_MAP& a, const VS_VALUE_MAP& b) {
    if (a.spaces.size() != b.spaces.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.spaces.size(); ++i) {
        if (!(a.spaces[i].first == b.spaces[i].first) ||
            std::bit_cast<std::uint64_t>(a.spaces[i].second) != std::bit_cast<std::uint64_t>(b.spaces[i].second)) {
            return false;
        }
    }
    return std::bit_cast<std::uint64_t>(a.span) == std::bit_cast<std::uint64_t>(b.span);
}

void checkSummary(const VS_VALUE_MAP& map, double span, std::size_t most) {
    FUZZ_CHECK(std::bit_cast<std::uint64_t>(map.span) == std::bit_cast<std::uint64_t>(span));
    FUZZ_CHECK(map.spaces.size() <= most && map.tier4Rects.empty());
    for (std::size_t i = 0; i < map.spaces.size(); ++i) {
        FUZZ_CHECK(!isEmpty(map.spaces[i].first));
        for (std::size_t j = i + 1; j < map.spaces.size(); ++j) {
            FUZZ_CHECK(!(map.spaces[i].first == map.spaces[j].first) ||
                       !(map.spaces[i].second >= map.spaces[j].second));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteReader bytes(data, size);
    OV_DATA_STORE store;
    const unsigned objects = 1 + bytes.u8() % kMostObjects;
    Rectangle previous{0, 100, 0, 100};
    for (unsigned i = 0; i < objects; ++i) {
        previous = rectangle(bytes, previous);
        store.valueObjects.push_back({bytes.u8() % std::uint32_t{29}, 0.0, 1.0, previous, value(bytes)});
    }

    ValueSpace space(&store);
    GraphWatcher watcher(space);
    while (!bytes.empty()) {
        const std::uint8_t operation = bytes.u8();
        const unsigned object = operation % objects;
        switch (operation / 32) {
        case 0:
        case 1:
        case 2:
            watcher.insert(object);
            break;
        case 3:
        case 4:
            watcher.remove(object);
            // As slicing does: what is retired counts for nothing, wherever its index may linger.
            store.valueObjects[object].value = 0.0;
            break;
        case 5:
            store.valueObjects[object].value = value(bytes);
            break;
        case 6: {
            const double span = value(bytes);
            const VS_VALUE_MAP map = space.summarize(span);
            checkSummary(map, span, 8);
            FUZZ_CHECK(isSame(map, space.summarize(span)));
            break;
        }
        default: {
            const double span = value(bytes);
            const VS_VALUE_MAP map = space.quickSummarize(span);
            checkSummary(map, span, 1);
            FUZZ_CHECK(isSame(map, space.quickSummarize(span)));
            if (operation == 255) {
                watcher.reset();
            }
            break;
        }
        }
    }
    // Removing everything leaves nothing behind, as long as no space has fallen out of its place.
    for (const std::uint32_t object : space.listObjects()) {
        watcher.remove(object);
    }
    FUZZ_CHECK(space.objectMap.empty());
    FUZZ_CHECK(!watcher.isWhole() || (space.topSpaces.empty() && space.freeSpaces.size() == space.graph.size()));
    return 0;
}
