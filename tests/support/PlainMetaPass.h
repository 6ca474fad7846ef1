// The meta pass with every rule reading the whole working list for every object: slow, obvious, and the yardstick of the
// pass whose questions an index answers.
#pragma once

#include <algorithm>
#include <vector>

#include "frame/Geometry.h"
#include "parser/DataParser.h"

namespace OrvantaNS::testing {

class PlainMetaPass {
public:
    PlainMetaPass(DataParser& parser, const Params& params, OV_DATA_STORE& store)
        : p(parser), objects(parser.objects), request(params), s(store) {}

    /// What `fluxCapacitor` does to the working list and the store; the bookkeeping of the next step is left to it.
    void run(unsigned int zone, Interval_Type<long long> interval) {
        p.findFullScreenDR(request, s, interval);
        p.processStrokes(s); // outside of a pass it looks for windows one by one
        const double now = DataParser::convertTime(p.metaStartTime);
        for (std::uint32_t i = 0; i < objects.size(); ++i) {
            if (isClick(objects[i]) && now >= objects[i].stop) {
                clickResults(zone, i);
            }
        }
        std::stable_sort(objects.begin(), objects.end(), CompareValueObjects2);
        const double limit = DataParser::convertTime(interval.stop);
        for (std::uint32_t i = 0; i < objects.size() && !(objects[i].start > limit); ++i) {
            apply(zone, i);
        }
        p.strokes.clear();
        std::erase_if(objects, [](const OV_VALUE_OBJECT& object) { return object.type == Dead; });
    }

private:
    static bool isClick(const OV_VALUE_OBJECT& o) { return o.type == Click || o.type == DoubleClick; }

    void apply(unsigned int zone, std::uint32_t i) {
        switch (objects[i].type) {
        case Move:
        case MoveOutOfWindow:
        case MoveIntoWindow:
            menuHover(zone, i);
            promoteHovers(i);
            return persist(i);
        case MouseIdle:
            outOfWindowIdle(i);
            inWindowIdle(i);
            break;
        case Click:
        case DoubleClick:
            menuClick(zone, i);
            clickDetect(i);
            return persist(i);
        case Drag:
            dragDirty(i);
            return persist(i);
        case Caret:
        case TextFocus:
        case FollowText:
        case FullScreenDirty:
        case HoverPopup:
        case ClickDirty:
            return persist(i);
        case ForeOpen:
            killPopWindow(i);
            break;
        case ForeAnimate:
            return joinAnimations(i);
        case ActiveWindow:
            windowPane(i);
            return persist(i);
        case Menu:
            hoversInMenu(i);
            menuResult(i);
            return persist(i);
        case OffScreen:
            outOfRegion(i);
            break;
        case ClickWindow:
            contextMenu(i);
            return persist(i);
        default:
            break;
        }
        objects[i].type = Dead;
    }

    void persist(std::uint32_t i) {
        if (objects[i].type != Dead && DataParser::convertTime(p.metaStartTime) >= objects[i].stop) {
            s.valueObjects.push_back(objects[i]);
            objects[i].type = Dead;
        }
    }

    Rectangle windowAt(long long time) const {
        const double t = DataParser::convertTime(time);
        for (const OV_VALUE_OBJECT& o : objects) {
            if (o.type == ActiveWindow && o.start <= t && t <= o.stop) {
                return o.rect;
            }
        }
        return {};
    }

    void clickResults(unsigned int zone, std::uint32_t i) {
        const double start = objects[i].start;
        const double end = start + 2.0;
        for (const OV_VALUE_OBJECT& o : std::vector<OV_VALUE_OBJECT>(objects)) {
            if ((o.type == ForeAnimate || o.type == ActiveWindow || o.type == Menu) && o.start >= start &&
                (o.stop <= end || std::max(start, o.start) < std::min(end, o.stop))) {
                objects.push_back({ClickWindow, o.start - 0.01, o.start - 0.01, o.rect, o.value});
                break;
            }
        }
        const Interval_Type<long long> reach{DataParser::revertTime(start), DataParser::revertTime(end)};
        for (const std::uint32_t area : p.getDRObjectsInTime(reach)) {
            const DR_OBJECT& d = p.drObjects[area];
            Rectangle rect = d.bounds;
            p.clipRectToLZ(zone, s, rect);
            const bool begins = d.start >= reach.start && !(d.stop > reach.stop && d.start >= reach.stop);
            if (begins && rect.top != 0 && (width(rect) <= 480 || height(rect) <= 480)) {
                const double time = DataParser::convertTime(d.start);
                objects.push_back({ClickDirty, time, time, rect, 0.0});
            }
        }
    }

    Rectangle bar(unsigned int zone) {
        const Rectangle region = request.recordingRegions().at(0).rect;
        Rectangle rect{std::min(region.left, region.right), std::max(region.left, region.right), region.top,
                       wrapAdd(region.top, 25)};
        p.clipRectToLZ(zone, s, rect);
        return rect;
    }

    void dropMenus(unsigned int zone, std::uint32_t i, Interval_Type<long long> interval) {
        for (const std::uint32_t area : p.getDRObjectsInTime(interval)) {
            Rectangle rect = p.drObjects[area].bounds;
            p.clipRectToLZ(zone, s, rect);
            if (rect.top >= 25 || rect.bottom < 26) {
                continue;
            }
            const Interval_Type<double> time =
                DataParser::convertInterval({p.drObjects[area].start, p.drObjects[area].stop});
            const bool known = std::any_of(objects.begin(), objects.end(), [&](const OV_VALUE_OBJECT& k) {
                return k.type == Menu && ((k.start <= time.start && k.stop >= time.stop) ||
                                          std::min(k.stop, time.stop) - std::max(k.start, time.start) > 0.0);
            });
            if (!known) {
                objects.insert(objects.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                               {Menu,
                                time.start,
                                time.stop,
                                {std::min(rect.left, rect.right), std::max(rect.left, rect.right), 0, rect.bottom},
                                0.0});
            }
        }
    }

    void menuClick(unsigned int zone, std::uint32_t i) {
        if (contains(bar(zone), objects[i].rect)) {
            const long long t = DataParser::revertTime(objects[i].stop);
            const long long d = DataParser::revertTime(0.25);
            dropMenus(zone, i, {wrapSub(t, d), wrapAdd(t, d)});
        }
    }

    void menuHover(unsigned int zone, std::uint32_t i) {
        if (overlaps(bar(zone), objects[i].rect)) {
            const long long d = DataParser::revertTime(0.25);
            dropMenus(zone, i,
                      {wrapSub(DataParser::revertTime(objects[i].start), d),
                       wrapAdd(DataParser::revertTime(objects[i].stop), d)});
        }
    }

    void promoteHovers(std::uint32_t i) {
        for (OV_VALUE_OBJECT& k : objects) {
            if (k.type == Hover && k.start >= objects[i].start && k.stop <= objects[i].stop) {
                s.valueObjects.push_back(k);
                k.type = Dead;
            }
        }
    }

    void hoversInMenu(std::uint32_t i) {
        const Rectangle reach = grown(objects[i].rect, 4);
        for (OV_VALUE_OBJECT& k : objects) {
            if (k.type == Hover && k.start >= objects[i].start && k.stop <= objects[i].stop &&
                contains(reach, k.rect)) {
                k.type = Pane;
                s.valueObjects.push_back(k);
                k.type = Dead;
            }
        }
    }

    void menuResult(std::uint32_t i) {
        const OV_VALUE_OBJECT& o = objects[i];
        const Rectangle reach = grown(o.rect, 16);
        for (std::size_t c = i + std::size_t{1}; c < objects.size(); ++c) {
            const OV_VALUE_OBJECT& click = objects[c];
            if (!isClick(click) || !contains(reach, click.rect) || !(click.start >= o.start && click.stop <= o.stop)) {
                continue;
            }
            for (std::size_t m = i + std::size_t{1}; m < objects.size(); ++m) {
                OV_VALUE_OBJECT& result = objects[m];
                if ((result.type == ClickDirty || result.type == ClickWindow) && result.start >= click.start &&
                    result.start <= click.start + 2.0 && !contains(reach, result.rect)) {
                    result.type = MenuResult;
                }
            }
        }
    }

    void clickDetect(std::uint32_t i) {
        OV_VALUE_OBJECT& o = objects[i];
        const Rectangle answer = p.detectClickDR(request, s, o);
        if (isEmpty(answer) || area(answer) < 2) {
            const std::int32_t top = std::min(o.rect.top, o.rect.bottom);
            o.rect = grown({o.rect.left, o.rect.left, top, top}, 16);
            return;
        }
        for (const OV_VALUE_OBJECT& k : objects) {
            if (k.type == ActiveWindow && k.start >= o.start && k.start <= o.start + 0.25 && contains(k.rect, o.rect)) {
                o.rect = intersection(answer, k.rect);
                return;
            }
        }
        o.rect = answer;
    }

    void dragDirty(std::uint32_t i) {
        OV_VALUE_OBJECT& o = objects[i];
        for (std::size_t k = i + std::size_t{1}; k < objects.size(); ++k) {
            if (objects[k].type == Hover && objects[k].start >= o.start && objects[k].stop <= o.stop) {
                o.rect = boundingUnion(o.rect, objects[k].rect);
                objects[k].type = Dead;
            }
        }
    }

    void contextMenu(std::uint32_t i) {
        for (std::size_t j = i + std::size_t{1}; j < objects.size(); ++j) {
            OV_VALUE_OBJECT& window = objects[j];
            if (window.start > objects[i].stop + 0.02) {
                return;
            }
            if (window.type != ActiveWindow) {
                continue;
            }
            OV_MOUSE_LOCATION mouse = p.getMouseAtTime(request, DataParser::revertTime(window.start));
            p.clipPointToLZ(s.currentZone, s, mouse);
            const bool isSmall = width(window.rect) < 480 || height(window.rect) < 480;
            if (!p.isFrameNearMouse(mouse, window.rect) || containsPoint(window.rect, mouse.x, mouse.y) || !isSmall) {
                continue;
            }
            window.type = Menu;
            objects[i].type = Dead;
            for (std::size_t k = i + std::size_t{1}; k < objects.size() && !(objects[k].start > window.start); ++k) {
                if (objects[k].type == ForeOpen && objects[k].start == window.start) {
                    objects[k].type = Dead;
                    break;
                }
            }
        }
    }

    void windowPane(std::uint32_t i) {
        OV_VALUE_OBJECT& o = objects[i];
        for (std::uint32_t k = 0; k < i; ++k) {
            OV_VALUE_OBJECT& parent = objects[k];
            if (parent.type != ActiveWindow || !(o.start < parent.stop + 1.0)) {
                continue;
            }
            const bool apart = std::any_of(objects.begin() + k + 1, objects.begin() + i, [](const auto& between) {
                return between.type == ForeAnimate || between.type == ActiveWindow;
            });
            if (!apart && contains(parent.rect, o.rect)) {
                parent.stop = o.stop;
                o.type = parent.rect == o.rect ? Dead : Pane;
                return;
            }
        }
    }

    void joinAnimations(std::uint32_t i) {
        OV_VALUE_OBJECT& o = objects[i];
        for (std::size_t j = i + std::size_t{1}; j < objects.size(); ++j) {
            OV_VALUE_OBJECT& next = objects[j];
            if (next.type == ActiveWindow || next.type == FullScreenDirty) {
                break;
            }
            if (next.type == ForeAnimate) {
                if (o.stop + 1.0 >= next.start) {
                    o.stop = next.stop;
                    o.rect = boundingUnion(o.rect, next.rect);
                    next.type = Dead;
                }
                break;
            }
        }
        if (DataParser::convertTime(p.metaStartTime) >= o.stop + 1.0) {
            s.valueObjects.push_back(o);
            o.type = Dead;
        }
    }

    void killPopWindow(std::uint32_t i) {
        const OV_VALUE_OBJECT o = objects[i];
        double acc = 0.0;
        for (std::size_t k = 0; k < objects.size(); ++k) {
            OV_VALUE_OBJECT& other = objects[k];
            const double limit = acc + o.start + 3.0;
            if (other.type == ActiveWindow && other.start >= o.start && other.rect == o.rect) {
                if (other.start >= limit) {
                    break;
                }
                acc = other.stop;
            }
            if (other.type == ForeOpen && k != i && other.rect == o.rect && other.start >= o.start &&
                other.start < limit) {
                other.type = Dead;
            }
        }
        if (acc >= 10.0) {
            s.valueObjects.push_back(o);
        }
    }

    void idleDirty(Interval_Type<long long> interval, const Rectangle& window) {
        for (const std::uint32_t area : p.getDRObjectsInTime(interval)) {
            const DR_OBJECT& d = p.drObjects[area];
            Rectangle rect = d.bounds;
            p.clipRectToLZ(s.currentZone, s, rect);
            if (contains(window, rect)) {
                const Interval_Type<double> time =
                    DataParser::convertInterval({std::max(d.start, interval.start), std::min(d.stop, interval.stop)});
                s.valueObjects.push_back({IdleDirty, time.start, time.stop, rect, 0.0});
            }
        }
    }

    void outOfWindowIdle(std::uint32_t i) {
        const OV_VALUE_OBJECT o = objects[i];
        const long long t0 = DataParser::revertTime(o.start);
        const long long t1 = DataParser::revertTime(o.stop);
        const Rectangle a = windowAt(t0);
        double from = o.start;
        if (a == windowAt(t1)) {
            if (contains(a, o.rect) || o.stop - o.start < 2.0) {
                return;
            }
            std::uint32_t k = 0;
            while (k < i && !(objects[k].type == MoveOutOfWindow && objects[k].start > o.start - 2.0)) {
                ++k;
            }
            if (k == i) {
                return;
            }
            from = objects[k].start - 0.5;
        }
        idleDirty({DataParser::revertTime(from), t1}, a);
    }

    void inWindowIdle(std::uint32_t i) {
        const OV_VALUE_OBJECT& o = objects[i];
        const Interval_Type<long long> t{DataParser::revertTime(o.start), DataParser::revertTime(o.stop)};
        const Rectangle a = windowAt(t.start);
        if (a == windowAt(t.stop) && o.stop - o.start < 2.0 && contains(a, o.rect)) {
            idleDirty(t, a);
        }
    }

    void outOfRegion(std::uint32_t i) {
        const OV_VALUE_OBJECT& o = objects[i];
        const Interval_Type<long long> t{DataParser::revertTime(o.start), DataParser::revertTime(o.stop)};
        const Rectangle a = windowAt(t.start);
        if (a == windowAt(t.stop) && o.stop - o.start < 2.0) {
            idleDirty(t, a);
        }
    }

    DataParser& p;
    std::vector<OV_VALUE_OBJECT>& objects;
    const Params& request;
    OV_DATA_STORE& s;
};

} // namespace OrvantaNS::testing
