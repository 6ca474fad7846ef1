// The graph of rectangles that objects and their overlaps make.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "OrvantaExport.h"
#include "frame/DataStore.h"
#include "valuespace/CreationList.h"
#include "valuespace/CreationSpace.h"
#include "valuespace/ObjectClasses.h"
#include "valuespace/ObjectMarks.h"
#include "valuespace/ObjectSets.h"
#include "valuespace/SlotSet.h"
#include "valuespace/StandingNames.h"
#include "valuespace/WalkQueue.h"

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

/// One space with its summed value.
struct VS_VALUE_ORDER {
    std::uint32_t space = 0; ///< Index into `graph`.
    double value = 0.0;      ///< Sum of the space's objects' values.
};

/// What the caller of a summary knows of objects that have left the graph. A space may go on naming them once links have
/// been lost, and its sum counts them.
enum class VS_LEFT_OBJECTS {
    MAY_BE_WORTH,  ///< Nothing: all names of a list are added up.
    WORTH_NOTHING, ///< The `value` of each is 0. To add that changes no sum, so their names need not be read.
};

/// Descending by value. False when either value is not a number; ties keep their order under a stable sort.
inline bool CompareValuePairs(const VS_VALUE_ORDER& a, const VS_VALUE_ORDER& b) { return a.value > b.value; }

/// The set of spaces is the set of object rectangles closed under intersection, ordered by containment. An object is
/// listed at the space of its own rectangle and at every descendant, never at an ancestor.
///
/// Used by one thread in one call. Insertions, deletions and summaries count their work in the store (`countSteps`) and
/// may throw `OVERR_USER_CANCELLED` half way: after that, or any other exception, the graph can only be dropped. Object and
/// space indices are trusted, except by `clearSpace`. What is written to the graph or to its map past the operations must
/// begin with one of those that make or unmake a slot or a link: from then on nothing is taken for granted.
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
    /// What `objectMap` holds, in its order and in one piece of memory: gone through several times for every slice. Good until
    /// an object enters or leaves, or it is asked for again.
    const std::vector<std::pair<std::uint32_t, std::uint32_t>>& placedObjects();
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
    /// Leaves what `deleteObject` would leave if it were called for each of the objects in turn; they are ascending.
    void deleteObjects(const std::vector<std::uint32_t>& leaving);
    /// True when every object of the second space stands in the first.
    bool containsAllObjects(unsigned container, unsigned contained);

    // ---- Summaries: `span` is the length in seconds of the interval that the objects' values integrate ----

    /// The full summary: at most one rectangle for each of the eight tiers.
    VS_VALUE_MAP summarize(double span, VS_LEFT_OBJECTS left = VS_LEFT_OBJECTS::MAY_BE_WORTH);
    /// The summary of tier 4 alone. It takes the spaces by descending sum up to the first that lies below the tier: all
    /// of them when `span` is not a number, where `summarize` reaches no tier.
    VS_VALUE_MAP quickSummarize(double span, VS_LEFT_OBJECTS left = VS_LEFT_OBJECTS::MAY_BE_WORTH);
    /// The rectangle of `quickSummarize` with its density, without a map around it; nothing where its map is empty.
    std::optional<std::pair<Rectangle, double>> quickFocus(double span,
                                                           VS_LEFT_OBJECTS left = VS_LEFT_OBJECTS::MAY_BE_WORTH);
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

private:
    /// Entries of a list that are read or compared in the time of one step of those that `countSteps` counts.
    static constexpr std::size_t kReadPerStep = 4;
    /// Steps that it takes to go to one space of a large graph, whose memory is scattered, and to change a list there.
    static constexpr std::uint64_t kStepsPerVisit = 4;

    // ---- Slots and links, as insertion and deletion make them ----

    std::uint32_t makeSpace(const Rectangle& rect);
    void freeSpace(std::uint32_t space);
    void link(std::uint32_t parent, std::uint32_t child);
    void unlink(std::uint32_t parent, std::uint32_t child);
    void addAtAndBelow(std::uint32_t space, std::uint32_t object);

    // ---- Insertion ----

    /// Finds the first space in walking order that can stand for the rectangle; false when none can.
    bool findServingSpace(const Rectangle& rect, std::uint32_t& serving);
    /// Fills `creation_`. True when a space on the way can stand for the rectangle.
    bool collectCreation(const Rectangle& rect, std::uint32_t& serving);
    void makeCreation();

    // ---- Deletion ----

    /// Counts how many objects stay that could stand in for those that leave; none where that does not pay.
    void countStandIns(const std::vector<std::uint32_t>& leaving);
    /// True when the object's leaving changes nothing but the lists. Takes it off the count.
    bool leavesUnnoticed(std::uint32_t object, std::uint32_t location);
    /// True when a walk of deletion from the space on would find nothing to dissolve or unlink, as the lists stand.
    bool isSettledBelow(std::uint32_t space);
    bool isSettled(std::uint32_t space);
    /// Takes an object that has left the map out of `present_` and `placed_`.
    void forgetPresence(std::uint32_t object);
    /// Takes objects, named as location and object, out of the lists at and below their locations, and forgets them.
    void eraseFromLists(std::vector<std::pair<std::uint32_t, std::uint32_t>>& objects);
    void dissolveFrom(std::uint32_t location, std::uint32_t object);
    /// What `containsAllObjects` gives.
    bool holdsAll(std::uint32_t container, std::uint32_t contained);
    /// The same for long lists, from `objectSets_` when there are many such questions.
    bool holdsAllOfMany(std::uint32_t container, std::uint32_t contained);
    /// What it takes to judge whether a space is still needed, in steps.
    std::uint64_t judgingSteps(std::uint32_t space) const;

    /// The space and all spaces below it; good until a link changes.
    const SlotSet& atAndBelow(std::uint32_t space);

    // ---- Summaries ----

    /// Writes the value of every slot, and tells each valid space with its sum, in slot order.
    template <typename Visit> void sumSpaces(VS_LEFT_OBJECTS left, Visit visit);
    /// Sifts all lists once enough objects have left since that was last done.
    void siftNames();
    void siftNamesOf(std::uint32_t space);
    bool isSwallowed(std::uint32_t space, double least, double below) const;
    /// `summarizeGraph`; false when a space of the list swallows the one that is offered.
    bool offerToTier(std::vector<std::uint32_t>& list, std::uint32_t space);
    /// Fills `located_` with all objects, ascending, each with the rectangle of the space at which it was inserted, not
    /// its own. Laid out once for a summary: walking the map anew for each list takes longer than the arithmetic.
    void locateObjects();
    /// Forgets all scores and where objects are.
    void startScores();
    /// `summarizeTier` once scores have been started.
    void addBestOf(const std::vector<std::uint32_t>& list, VS_VALUE_MAP& map);
    /// How well a rectangle sits on all located objects.
    double scoreOf(const Rectangle& rect) const;
    /// The same without `located_`.
    double scoreByWalking(const Rectangle& rect) const;

    // What follows speeds the operations up and is no part of the graph.

    struct Below {
        std::uint64_t linkChanges = 0; ///< The number of changes at which the set was made; 0 before the first.
        SlotSet spaces;
    };
    std::vector<Below> below_; ///< Of the slots at which objects were inserted: all that can be reached downward.
    std::vector<std::uint32_t> belowOf_; ///< By slot: one more than its place in `below_`, 0 for none.
    std::uint64_t linkChanges_ = 1;      ///< Counts changes of links and slots.
    SlotSet settled_;                    ///< Known to pass `isSettled`.
    SlotSet inUse_;                      ///< The slots that hold a space.
    std::vector<std::uint32_t> freed_;   ///< Slots that were freed since values were last written.
    bool isHandMade_ = false;   ///< Something but insertions and deletions has made spaces or links, or an object has
                                ///< come back that an old list may still name.
    std::uint32_t highest_ = 0; ///< The highest object ever inserted.
    bool hasLostLinks_ = false; ///< An insertion has cut a space off from a parent that it did not reach.

    SlotSet present_;                                             ///< The objects of `objectMap`.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> placed_; ///< What `placedObjects` gives, while `isPlaced_`.
    bool isPlaced_ = false;
    StandingNames standing_;     ///< What is left of the lists without the names of objects that have left.
    std::size_t departures_ = 0; ///< Objects that have left since the lists were sifted.

    InsertionQueue insertionQueue_;
    DeletionQueue deletionQueue_;
    CreationList creation_;
    ObjectSets objectSets_;
    int comparisons_ = 0; ///< Long lists that the walk in work has compared without `objectSets_`.
    ObjectClasses classes_;
    std::vector<std::uint32_t> residents_; ///< By space: the objects located there.
    std::vector<std::uint32_t> staying_;   ///< By class: its objects in the graph; empty where nobody stands in.
    SlotSet reached_;                      ///< The spaces that an insertion has met: those that overlap its rectangle.
    std::vector<std::uint32_t> work_;   ///< The queue or stack of a plain walk, or the children of the space in work.
    std::vector<VS_VALUE_ORDER> order_; ///< The spaces that a summary offers.
    std::vector<std::pair<Rectangle, double>> located_; ///< Where the objects of a summary are, and their values.
    bool isLocated_ = false;                            ///< `located_` stands for the summary in work.
    bool hasScored_ = false;                            ///< That summary has scored a space without it.
    std::vector<std::uint32_t> tierList_;               ///< The list of the tier that a summary is at.
    VS_VALUE_MAP found_;                                ///< A summary in work.
    ObjectMarks marks_;          ///< The objects that a new space lists already, or that leave together.
    ObjectMarks scored_;         ///< The spaces that the summary in work has a score for: one stands in several tiers.
    std::vector<double> scores_; ///< By space.
    std::vector<std::map<std::uint32_t, std::uint32_t>::node_type> spareNodes_; ///< Of `objectMap`, for its memory.
};

} // namespace OrvantaNS
