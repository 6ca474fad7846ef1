// Fuzz target: merging of two value maps, and the questions that merging asks of a map.

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "ByteReader.h"
#include "Check.h"
#include "OrvantaWorker.h"
#include "frame/Geometry.h"
#include "frame/ValueMap.h"

namespace {

using namespace OrvantaNS;
using namespace OrvantaNS::fuzz;

// Every map that merging meets comes from a summary or a merge, which give at most this many.
constexpr unsigned kMostSpaces = 8;
constexpr std::array<double, 8> kTiers{12.0, 10.0, 8.0, 6.0, 4.0, 3.0, 2.0, 1.0};

double value(ByteReader& bytes, double span) {
    const std::uint8_t choice = bytes.u8();
    if (choice < 64) {
        return kTiers[choice % kTiers.size()] * span;
    }
    return choice < 224 ? (choice - 64) * 0.25 : bytes.f64();
}

Rectangle rectangle(ByteReader& bytes) {
    const std::uint8_t choice = bytes.u8();
    if (choice < 208) {
        const std::uint8_t across = bytes.u8();
        const std::uint8_t down = bytes.u8();
        constexpr std::int32_t kCell = 40;
        const std::int32_t left = across % 16 * kCell;
        const std::int32_t top = down % 16 * kCell;
        return {left, left + (across / 16 + 1) * kCell, top, top + (down / 16 + 1) * kCell};
    }
    return {bytes.coordinate(), bytes.coordinate(), bytes.coordinate(), bytes.coordinate()};
}

VS_VALUE_MAP map(ByteReader& bytes) {
    VS_VALUE_MAP map;
    const std::uint8_t form = bytes.u8();
    map.span = form < 240 ? form % 16 * 0.5 : bytes.f64();
    const unsigned spaces = bytes.u8() % (kMostSpaces + 1);
    for (unsigned i = 0; i < spaces; ++i) {
        const Rectangle rect = rectangle(bytes);
        map.spaces.emplace_back(rect, value(bytes, map.span));
    }
    if (form % 5 == 0) {
        map.tier4Rects.push_back(rectangle(bytes));
    }
    return map;
}

bool isSane(const VS_VALUE_MAP& map) {
    return map.span >= 0.0 && map.span < 1e9 &&
           std::all_of(map.spaces.begin(), map.spaces.end(), [](const auto& entry) {
               const Rectangle& r = entry.first;
               return r.left >= 0 && r.left < r.right && r.right < 4096 && r.top >= 0 && r.top < r.bottom &&
                      r.bottom < 4096 && entry.second >= 0.0 && entry.second < 1e9;
           });
}

bool isSame(const VS_VALUE_MAP& a, const VS_VALUE_MAP& b) {
    const auto isEqual = [](const auto& x, const auto& y) {
        return x.first == y.first && std::bit_cast<std::uint64_t>(x.second) == std::bit_cast<std::uint64_t>(y.second);
    };
    return std::bit_cast<std::uint64_t>(a.span) == std::bit_cast<std::uint64_t>(b.span) &&
           std::equal(a.spaces.begin(), a.spaces.end(), b.spaces.begin(), b.spaces.end(), isEqual) &&
           a.tier4Rects == b.tier4Rects;
}

Rectangle bounds(const VS_VALUE_MAP& a, const VS_VALUE_MAP& b) {
    Rectangle all{4096, 0, 4096, 0};
    for (const VS_VALUE_MAP* source : {&a, &b}) {
        for (const auto& [rect, density] : source->spaces) {
            all = boundingUnion(all, rect);
        }
    }
    return all;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteReader bytes(data, size);
    const VS_VALUE_MAP first = map(bytes);
    const VS_VALUE_MAP second = map(bytes);
    const OrvantaWorker engine;

    const VS_VALUE_MAP merged = engine.mergeMaps(first, second);
    FUZZ_CHECK(isSame(merged, engine.mergeMaps(first, second)));
    FUZZ_CHECK(isSame(merged, OrvantaWorker().mergeMaps(first, second)));
    FUZZ_CHECK(std::bit_cast<std::uint64_t>(merged.span) == std::bit_cast<std::uint64_t>(first.span + second.span) ||
               std::isnan(merged.span));
    FUZZ_CHECK(merged.spaces.size() <= kTiers.size() && merged.tier4Rects.empty());
    for (const auto& [rect, density] : merged.spaces) {
        FUZZ_CHECK(!isEmpty(rect));
    }

    const bool areSane = isSane(first) && isSane(second);
    if (areSane) {
        // One pair a tier at most, from the highest down, each within what went in and each worth its tier.
        const Rectangle all = bounds(first, second);
        for (const auto& [rect, density] : merged.spaces) {
            FUZZ_CHECK(contains(all, rect));
        }
        if (first.spaces.empty() && second.spaces.size() < 2) {
            FUZZ_CHECK(merged.spaces.empty());
        }
    }

    const Rectangle hot = engine.getTier4Rect(merged);
    for (const auto& [rect, density] : merged.spaces) {
        if (!(density >= merged.span * 4.0)) {
            break;
        }
        // Where the area of what has been hot so far wraps round to nothing, the hot rectangle begins anew.
        FUZZ_CHECK(!areSane || contains(hot, rect));
    }
    VS_VALUE_MAP copy = merged;
    for (const double tier : kTiers) {
        const auto reduced = engine.summarizeMerge(copy, tier * merged.span);
        FUZZ_CHECK(isSame(copy, merged));
        FUZZ_CHECK(copy.spaces.size() >= 2 || (reduced.first == Rectangle{} && reduced.second == 0.0));
    }
    return 0;
}
