// Insertion and deletion once more, with no thought for speed: queues are shifted and lists copied. The order of every
// list is part of the result, so the library's graph must equal this one to the last index.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "frame/Geometry.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS::testing {

class PlainValueSpace {
public:
    using List = std::vector<std::uint32_t>;

    std::vector<OV_INTERSECTION> graph;
    List topSpaces;
    List freeSpaces;
    std::map<std::uint32_t, std::uint32_t> objectMap;
    const std::vector<OV_VALUE_OBJECT>& objects;

    explicit PlainValueSpace(const std::vector<OV_VALUE_OBJECT>& source) : objects(source) {}

    void insertObject(std::uint32_t object) {
        if (objectMap.count(object) != 0) {
            return;
        }
        const Rectangle rect = objects[object].rect;
        std::vector<VS_CREATION_SPACE> creation{{rect, {}, false, 0}};
        List toCheck = topSpaces;
        while (!toCheck.empty()) {
            const std::uint32_t s = toCheck.front();
            if (graph[s].rect.nearSameSize(rect)) {
                insertQuick(s, object);
                return;
            }
            const Rectangle common = intersection(rect, graph[s].rect);
            if (width(common) > 0 && height(common) > 0 && wrapMul(width(common), height(common)) > 0) {
                const std::size_t c = locate(creation, common);
                if (common == graph[s].rect) {
                    creation[c].reuse = true;
                    creation[c].space = s;
                } else {
                    offer(creation, c, {PARENT_IN_GRAPH, s});
                    for (const std::uint32_t child : graph[s].children) {
                        append(toCheck, child);
                    }
                }
            }
            toCheck.erase(toCheck.begin());
        }
        for (VS_CREATION_SPACE& record : creation) {
            if (!record.reuse) {
                record.space = create(record.rect);
            }
        }
        for (const VS_CREATION_SPACE& record : creation) {
            if (record.reuse) {
                const List old = graph[record.space].parents;
                for (auto parent = old.rbegin(); parent != old.rend(); ++parent) {
                    unlink(*parent, record.space);
                }
            }
            for (const auto& [kind, index] : record.parents) {
                const std::uint32_t parent = kind == PARENT_IN_CREATION ? creation[index].space : index;
                append(graph[parent].children, record.space);
                append(graph[record.space].parents, parent);
                if (!record.reuse) {
                    const List inherited = graph[parent].objects;
                    for (const std::uint32_t one : inherited) {
                        append(graph[record.space].objects, one);
                    }
                }
            }
        }
        insertQuick(creation[0].space, object);
        List stillTop;
        for (const std::uint32_t top : topSpaces) {
            if (graph[top].parents.empty()) {
                stillTop.push_back(top);
            }
        }
        topSpaces = stillTop;
        if (graph[creation[0].space].parents.empty()) {
            append(topSpaces, creation[0].space);
        }
    }

    void deleteObject(std::uint32_t object) {
        if (objectMap.count(object) == 0) {
            return;
        }
        List work{objectMap[object]};
        objectMap.erase(object);
        while (!work.empty()) {
            const std::uint32_t s = work.front();
            if (!graph[s].valid) {
                work.erase(work.begin());
                continue;
            }
            drop(graph[s].objects, object);
            bool redundant = graph[s].objects.empty();
            for (std::size_t k = 0; !redundant && k < graph[s].parents.size(); ++k) {
                redundant = holdsAll(graph[s].parents[k], s);
            }
            for (int k = static_cast<int>(graph[s].parents.size()) - 1; k >= 0; --k) {
                const List parents = graph[s].parents;
                const std::uint32_t parent = parents[static_cast<std::size_t>(k)];
                bool superfluous = false;
                for (std::size_t q = 0; q < parents.size(); ++q) {
                    superfluous |= q != static_cast<std::size_t>(k) && holdsAll(parents[q], parent);
                }
                if (superfluous) {
                    unlink(parent, s);
                }
            }
            const List snapshot = graph[s].children;
            if (!redundant && graph[s].parents.empty()) {
                append(topSpaces, s);
            }
            if (redundant) {
                if (graph[s].parents.empty()) {
                    drop(topSpaces, s);
                }
                for (const std::uint32_t child : snapshot) {
                    unlink(s, child);
                }
                const List parents = graph[s].parents;
                for (auto parent = parents.rbegin(); parent != parents.rend(); ++parent) {
                    unlink(*parent, s);
                    for (const std::uint32_t child : snapshot) {
                        append(graph[*parent].children, child);
                        append(graph[child].parents, *parent);
                    }
                }
                freeSpaces.push_back(s);
                graph[s].valid = false;
                graph[s].parents = graph[s].children = graph[s].objects = {};
            }
            for (const std::uint32_t child : snapshot) {
                if (work.size() > 1) {
                    for (std::size_t k = 0; k + 1 < work.size(); ++k) {
                        if (work[k] == child) {
                            work.erase(work.begin() + static_cast<std::ptrdiff_t>(k));
                            break;
                        }
                    }
                }
                work.push_back(child);
            }
            work.erase(work.begin());
        }
    }

private:
    static void append(List& list, std::uint32_t value) {
        if (std::count(list.begin(), list.end(), value) == 0) {
            list.push_back(value);
        }
    }
    static void drop(List& list, std::uint32_t value) {
        for (std::size_t k = 0; k < list.size(); ++k) {
            if (list[k] == value) {
                list.erase(list.begin() + static_cast<std::ptrdiff_t>(k));
                return;
            }
        }
    }
    void unlink(std::uint32_t parent, std::uint32_t child) {
        drop(graph[parent].children, child);
        drop(graph[child].parents, parent);
    }
    bool holdsAll(std::uint32_t container, std::uint32_t contained) const {
        const List& held = graph[container].objects;
        return std::all_of(graph[contained].objects.begin(), graph[contained].objects.end(),
                           [&](std::uint32_t one) { return std::count(held.begin(), held.end(), one) != 0; });
    }
    std::uint32_t create(const Rectangle& rect) {
        std::uint32_t index = static_cast<std::uint32_t>(graph.size());
        if (freeSpaces.empty()) {
            graph.push_back({});
        } else {
            index = freeSpaces.back();
            freeSpaces.pop_back();
        }
        graph[index] = {rect, 0.0, true, {}, {}, {}};
        return index;
    }
    void insertQuick(std::uint32_t space, std::uint32_t object) {
        List work{space};
        for (std::size_t k = 0; k < work.size(); ++k) {
            const List children = graph[work[k]].children;
            for (const std::uint32_t child : children) {
                append(work, child);
            }
            graph[work[k]].objects.push_back(object);
        }
        objectMap.insert({object, space});
    }
    std::size_t locate(std::vector<VS_CREATION_SPACE>& creation, const Rectangle& rect) {
        for (std::size_t k = 0; k < creation.size(); ++k) {
            if (creation[k].rect == rect) {
                return k;
            }
        }
        creation.push_back({rect, {}, false, 0});
        const std::size_t added = creation.size() - 1;
        for (std::size_t back = 0; back < creation.size(); ++back) {
            const std::size_t j = creation.size() - 1 - back;
            if (creation[j].rect == rect) {
                continue;
            }
            if (contains(creation[j].rect, rect)) {
                offer(creation, added, {PARENT_IN_CREATION, static_cast<std::uint32_t>(j)});
            } else if (contains(rect, creation[j].rect)) {
                offer(creation, j, {PARENT_IN_CREATION, static_cast<std::uint32_t>(added)});
            }
        }
        return added;
    }
    void offer(std::vector<VS_CREATION_SPACE>& creation, std::size_t index,
               std::pair<std::uint32_t, std::uint32_t> parent) {
        const auto rectOfParent = [&](std::pair<std::uint32_t, std::uint32_t> named) {
            return named.first == PARENT_IN_CREATION ? creation[named.second].rect : graph[named.second].rect;
        };
        if (!contains(rectOfParent(parent), creation[index].rect)) {
            return;
        }
        auto& parents = creation[index].parents;
        std::size_t k = 0;
        while (k < parents.size()) {
            if (contains(rectOfParent(parents[k]), rectOfParent(parent))) {
                parents.erase(parents.begin() + static_cast<std::ptrdiff_t>(k));
            } else if (contains(rectOfParent(parent), rectOfParent(parents[k]))) {
                return;
            } else {
                ++k;
            }
        }
        parents.push_back(parent);
    }
};

/// True when the two graphs are equal to the last index and list order.
inline bool sameGraph(const ValueSpace& space, const PlainValueSpace& plain) {
    if (space.topSpaces != plain.topSpaces || space.freeSpaces != plain.freeSpaces ||
        space.objectMap != plain.objectMap || space.graph.size() != plain.graph.size()) {
        return false;
    }
    for (std::size_t s = 0; s < space.graph.size(); ++s) {
        const OV_INTERSECTION& a = space.graph[s];
        const OV_INTERSECTION& b = plain.graph[s];
        if (a.rect != b.rect || a.valid != b.valid || a.parents != b.parents || a.children != b.children ||
            a.objects != b.objects) {
            return false;
        }
    }
    return true;
}

} // namespace OrvantaNS::testing
