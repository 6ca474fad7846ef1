// The graph of rectangles that objects and their overlaps make.
#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "OrvantaExport.h"
#include "frame/DataStore.h"

namespace OrvantaNS {

/// One node of the graph: a rectangle with all objects that cover the whole of it.
struct OV_INTERSECTION {
    Rectangle rect;                      ///< Local pixels; stale in a free slot.
    double value = 0.0;                  ///< Sum of its objects' values as of the last `fillValues`; 0.0 until then.
    bool valid = false;                  ///< True while the slot holds a live space.
    std::vector<std::uint32_t> parents;  ///< The tightest spaces that contain it: indices into `graph`.
    std::vector<std::uint32_t> children; ///< The tightest spaces that it contains: indices into `graph`.
    std::vector<std::uint32_t> objects;  ///< Indices into the store's `valueObjects`.
};

/// Where a parent of a space in creation is to be looked up.
enum VS_PARENT_KIND : std::uint32_t {
    PARENT_IN_CREATION = 1, ///< The index is into the creation list.
    PARENT_IN_GRAPH = 2,    ///< The index is into `graph`.
};

/// A space that is about to exist; the list of them is local to one insertion.
struct VS_CREATION_SPACE {
    Rectangle rect;                                               ///< The rectangle wanted.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> parents; ///< Tightest known containers: kind and index.
    bool reuse = false;                                           ///< A space already has exactly this rectangle.
    std::uint32_t space = 0;                                      ///< Index in `graph`; 0 until known.
};

/// One space with its summed value.
struct VS_VALUE_ORDER {
    std::uint32_t space = 0; ///< Index into `graph`.
    double value = 0.0;      ///< Sum of the space's objects' values.
};

/// Descending by value. False when either value is not a number; ties keep their order under a stable sort.
inline bool CompareValuePairs(const VS_VALUE_ORDER& a, const VS_VALUE_ORDER& b) { return a.value > b.value; }

/// The set of spaces is the set of object rectangles closed under intersection, ordered by containment. An object is
/// listed at the space of its own rectangle and at every descendant, never at an ancestor.
///
/// Used by one thread in one call. Object and space indices are trusted, except by `clearSpace`.
class ORVANTA_EXPORT ValueSpace {
public:
    std::vector<OV_INTERSECTION> graph;               ///< All slots; a space keeps its index while it lives.
    std::vector<std::uint32_t> topSpaces;             ///< The spaces without a parent: every walk starts here.
    std::vector<std::uint32_t> freeSpaces;            ///< Slots free for reuse, used as a stack.
    std::map<std::uint32_t, std::uint32_t> objectMap; ///< Object to the space at which it was inserted.
    OV_DATA_STORE* store; ///< Source of rectangles and values, not owned; must outlive this.

    explicit ValueSpace(OV_DATA_STORE* store);
    ~ValueSpace();
    ValueSpace(const ValueSpace&) = delete;
    ValueSpace& operator=(const ValueSpace&) = delete;

    // ---- Graph ----

    /// Clears every slot, then empties the graph and all its lists.
    void reset();
    /// Puts a slot on the free list and empties its lists; the caller has unlinked it. Ignores an index past the end.
    void clearSpace(unsigned index);
    /// Makes an unlinked space, in the slot freed last if there is one; returns its index.
    unsigned createSpace(Rectangle rect);
    /// Puts both ends of a link in place; each is left alone where it stands already.
    void createLink(unsigned parent, unsigned child);
    /// Takes both ends of a link away; either may be absent.
    void removeLink(unsigned parent, unsigned child);
    /// Appends unless the value is present; true when it appended.
    bool exclusiveAppend(std::vector<std::uint32_t>& list, unsigned value);
    /// The objects in the graph, ascending.
    std::vector<std::uint32_t> listObjects();
    /// Slots in all, and slots free.
    std::pair<std::uint32_t, std::uint32_t> countSpaces();
    /// A copy of a slot; the index is not checked.
    OV_INTERSECTION getSpace(unsigned index);

    // ---- Insertion ----

    /// Adds an object with all its overlaps; a known object is left alone.
    void insertObject(unsigned object);
    /// Adds an object at a space that already stands for its rectangle, and at every descendant.
    void insertQuick(unsigned space, unsigned object);
    /// Finds or adds the creation record of a rectangle.
    unsigned getCreationLocation(std::vector<VS_CREATION_SPACE>& creation, Rectangle rect);
    /// Offers a parent (kind and index) to a creation record, which keeps only the tightest.
    void addCreationParent(std::vector<VS_CREATION_SPACE>& creation, unsigned index,
                           std::pair<std::uint32_t, std::uint32_t> parent);

    // ---- Deletion ----

    /// Removes an object and dissolves the spaces that it alone justified; an unknown object is ignored.
    void deleteObject(unsigned object);
    /// True when every object of the second space stands in the first.
    bool containsAllObjects(unsigned container, unsigned contained);

    // ---- Summaries: `span` is the length in seconds of the interval that the objects' values integrate ----

    /// The full summary: at most one rectangle for each of the eight tiers.
    VS_VALUE_MAP summarize(double span);
    /// The summary of tier 4 alone. It takes the spaces by descending sum up to the first that lies below the tier: all
    /// of them when `span` is not a number, where `summarize` reaches no tier.
    VS_VALUE_MAP quickSummarize(double span);
    /// Writes each space's value and gives all valid spaces by descending value, equal ones in slot order.
    std::vector<VS_VALUE_ORDER> fillValues();
    /// Offers a space to a tier's list, which keeps the largest rectangles only.
    void summarizeGraph(std::vector<std::uint32_t>& list, unsigned space);
    /// Picks the rectangle of a tier's list that sits best on all objects, and appends it to the map.
    void summarizeTier(std::vector<std::uint32_t>& list, VS_VALUE_MAP& map);
    /// Removes repeats of a rectangle that are not worth more than the earlier pair. Needs no graph.
    static void cleanValueMap(VS_VALUE_MAP& map);

    // ---- Diagnostics ----

    /// Prints one space to the standard output; the index is not checked.
    void printSpace(unsigned space);
    /// Prints a line to the standard output for every link or object that breaks the graph's rules.
    void testStructure();
};

} // namespace OrvantaNS
