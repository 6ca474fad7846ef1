// A parser in the middle of its work: working list, changing areas and strokes put in place by hand, one operation
// driven at a time, the outcome read as text.
#pragma once

#include <charconv>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Scene.h"
#include "frame/ObjectTypeNames.h"
#include "parser/DataParser.h"

namespace OrvantaNS::testing {

/// The shortest text that reads back as the same double, so that equal texts mean equal values.
inline std::string text(double value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

inline std::string text(const Rectangle& r) {
    return "(" + std::to_string(r.left) + "," + std::to_string(r.right) + "," + std::to_string(r.top) + "," +
           std::to_string(r.bottom) + ")";
}

/// "Click 1..1.5 (left,right,top,bottom)", and the value when it is not zero.
inline std::string text(const OV_VALUE_OBJECT& o) {
    return objectTypeName(o.type) + " " + text(o.start) + ".." + text(o.stop) + " " + text(o.rect) +
           (o.value == 0.0 ? "" : " value " + text(o.value));
}

inline std::vector<std::string> texts(const std::vector<OV_VALUE_OBJECT>& objects) {
    std::vector<std::string> all;
    for (const OV_VALUE_OBJECT& object : objects) {
        all.push_back(text(object));
    }
    return all;
}

/// A parser over a 1280 by 800 recording at 1000 ticks a second, with one live zone of 60 seconds at the origin. Times
/// are in seconds throughout.
class ParserTest : public ::testing::Test {
protected:
    ParserTest() {
        DataParser::StoreTimeScale = 1000.0;
        store.clipStop = 60.0;
        store.liveZones.push_back({{0, 1280, 0, 800}, 0.0, 60.0});
    }

    static long long ticks(double seconds) { return DataParser::revertTime(seconds); }

    /// Replaces the only live zone.
    void zone(Rectangle rect, double start = 0.0, double stop = 60.0) { store.liveZones[0] = {rect, start, stop}; }

    /// Appends an object to the working list and returns its index.
    unsigned int object(std::uint32_t type, double start, double stop, Rectangle rect) {
        parser.objects.push_back({type, start, stop, rect, 0.0});
        return static_cast<unsigned int>(parser.objects.size() - 1);
    }

    /// Appends a changing area that shows one rectangle all its life.
    unsigned int changingArea(double start, double stop, Rectangle rect) {
        return changingArea(start, stop, rect, {{ticks(stop), rect}});
    }
    /// Appends a changing area with these frames.
    unsigned int changingArea(double start, double stop, Rectangle bounds, std::vector<OV_TIME_RECT> frames) {
        parser.drObjects.push_back({std::move(frames), ticks(start), ticks(stop), bounds});
        return static_cast<unsigned int>(parser.drObjects.size() - 1);
    }

    struct Sample {
        double time;
        std::int32_t x;
        std::int32_t y;
    };
    /// A stroke over these samples.
    static MOUSE_STROKE strokeOver(std::initializer_list<Sample> samples) {
        MOUSE_STROKE stroke;
        for (const Sample& s : samples) {
            stroke.points.push_back({ticks(s.time), s.x, s.y});
            stroke.bounds = {std::min(stroke.bounds.left, s.x), std::max(stroke.bounds.right, s.x),
                             std::min(stroke.bounds.top, s.y), std::max(stroke.bounds.bottom, s.y)};
        }
        return stroke;
    }

    std::vector<std::string> objects() const { return texts(parser.objects); }
    std::vector<std::string> stored() const { return texts(store.valueObjects); }

    Scene scene;
    OV_DATA_STORE store;
    DataParser parser;
};

} // namespace OrvantaNS::testing
