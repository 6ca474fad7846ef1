// Summaries: the few rectangles that the action of an interval was in, from the hottest down to the merely warm.
//
// A tier N is reached where the objects add up to N value per second over the interval, so every threshold is a multiple
// of the interval's length.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "frame/Geometry.h"
#include "frame/Steps.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {

namespace {

// The tiers from the hottest down, by position in the arrays of `summarize`.
enum Tier : std::size_t { kTier12, kTier10, kTier8, kTier6, kTier4, kTier3, kTier2, kTier1, kTierCount };

// The value per second at which each tier starts. Tier 4 is that of one trigger object in force for the whole interval:
// what is worth a shot.
constexpr std::array<double, kTierCount> kTierRates{12.0, 10.0, 8.0, 6.0, 4.0, 3.0, 2.0, 1.0};
constexpr double kTier4Rate = kTierRates[kTier4];

// Above every value that a parent can have in a list without an upper limit; a sum of infinity is no reason to leave
// anything out.
constexpr double kNoLimit = std::numeric_limits<double>::infinity();

// The order in which spaces are offered to the tiers: by descending value, equal ones in slot order. No value is NaN.
struct IsOfferedBefore {
    bool operator()(const VS_VALUE_ORDER& a, const VS_VALUE_ORDER& b) const {
        return a.value != b.value ? a.value > b.value : a.space < b.space;
    }
};

// Names of a list that are added up in the time of one step.
constexpr std::size_t kNamesPerStep = 4;
// The lists are sifted when so many objects have left, and as many again as there are in the graph: sifting then takes a
// small part of what the sums in between take.
constexpr std::size_t kFewDepartures = 32;
// So many objects are laid out for scores in any case.
constexpr std::size_t kFewObjects = 4096;
// So few names of a list are read as soon as sifted.
constexpr std::size_t kFewNames = 8;
// What it takes to look at one space that is offered, in steps.
constexpr std::uint64_t kStepsPerOffer = 4;
// Parents that are asked in that time as well.
constexpr std::size_t kFewParents = 16;

void sortForOffer(OV_DATA_STORE& store, std::vector<VS_VALUE_ORDER>::iterator begin,
                  std::vector<VS_VALUE_ORDER>::iterator end) {
    stoppableSort(store, static_cast<std::size_t>(end - begin), IsOfferedBefore(),
                  [&](auto less) { std::sort(begin, end, less); });
}

} // namespace

template <typename Visit> void ValueSpace::sumSpaces(VS_LEFT_OBJECTS left, Visit visit) {
    const std::vector<OV_VALUE_OBJECT>& objects = store->valueObjects;
    std::size_t names = 0; // read and not counted yet
    const auto count = [&] {
        countSteps(*store, 1 + names / kNamesPerStep);
        names = 0;
    };
    const auto write = [&](std::uint32_t index, double sum) {
        graph[index].value = sum;
        visit(VS_VALUE_ORDER{index, sum});
    };
    const auto sumUp = [&](std::uint32_t index) {
        const std::vector<std::uint32_t>& list = graph[index].objects;
        names += list.size();
        double sum = 0.0;
        for (const std::uint32_t object : list) {
            sum += objects[object].value;
        }
        write(index, sum);
    };
    if (isHandMade_) {
        for (std::uint32_t index = 0; index < graph.size(); ++index) {
            graph[index].value = 0.0;
            if (graph[index].valid) {
                sumUp(index);
            }
            count();
        }
    } else {
        // Most slots of an ordinary graph are free: they are left over from its busiest moment.
        names += freed_.size();
        for (const std::uint32_t index : freed_) {
            graph[index].value = 0.0;
        }
        if (left == VS_LEFT_OBJECTS::WORTH_NOTHING && hasLostLinks_) {
            siftNames();
        }
        if (left == VS_LEFT_OBJECTS::WORTH_NOTHING && !standing_.isEmpty()) {
            const auto sumUpStanding = [&](std::uint32_t index) {
                const std::vector<std::uint32_t>& list = graph[index].objects;
                names += standing_.namesIn(index, list);
                double sum = 0.0;
                standing_.forEach(index, list, [&](std::uint32_t object) { sum += objects[object].value; });
                write(index, sum);
            };
            inUse_.forEach(sumUpStanding, count);
        } else {
            inUse_.forEach(sumUp, count);
        }
    }
    freed_.clear();
}

void ValueSpace::siftNames() {
    if (departures_ < kFewDepartures + objectMap.size()) {
        return;
    }
    departures_ = 0;
    inUse_.forEach([&](std::uint32_t index) { siftNamesOf(index); });
}

void ValueSpace::siftNamesOf(std::uint32_t space) {
    const std::vector<std::uint32_t>& list = graph[space].objects;
    const std::size_t names = standing_.namesIn(space, list);
    countSteps(*store, 1 + names / kNamesPerStep);
    if (names > kFewNames) {
        standing_.sift(space, graph.size(), list, [&](std::uint32_t object) { return present_.holds(object); });
    }
}

VS_VALUE_MAP ValueSpace::summarize(double span, VS_LEFT_OBJECTS left) {
    VS_VALUE_MAP map;
    map.span = span;
    std::array<double, kTierCount> thresholds{};
    for (std::size_t t = 0; t < kTierCount; ++t) {
        thresholds[t] = kTierRates[t] * span;
    }
    // The spaces to be offered. Where the thresholds descend, what is below the last one reaches no tier, and a space that
    // its parent will swallow in the same list need not be offered.
    std::vector<VS_VALUE_ORDER>& order = order_;
    order.clear();
    if (span >= 0.0) {
        sumSpaces(left, [&](const VS_VALUE_ORDER& entry) {
            if (entry.value >= span) {
                order.push_back(entry);
            }
        });
        const auto tierOf = [&](double value) {
            std::size_t tier = kTier12;
            while (!(value >= thresholds[tier])) {
                ++tier;
            }
            return tier;
        };
        countSteps(*store, kStepsPerOffer * order.size());
        std::erase_if(order, [&](const VS_VALUE_ORDER& entry) {
            const std::size_t tier = tierOf(entry.value);
            double below = kNoLimit;
            if (tier > kTier4) {
                below = thresholds[kTier4]; // the lists of the lower tiers start afresh
            }
            return isSwallowed(entry.space, thresholds[tier], below);
        });
        sortForOffer(*store, order.begin(), order.end());
    } else {
        order = fillValues();
    }
    countSteps(*store, order.size());

    // One list serves all tiers: what a tier has collected is the beginning of the next one's list. It breaks off below
    // tier 4, where the list starts afresh, so that no rectangle below swallows one of tier 4 or above.
    std::vector<std::uint32_t>& list = tierList_;
    list.clear();
    found_.spaces.clear();
    startScores();
    bool hasGrown = false; // a tier that adds nothing gives the pair of the one before it once more, and is left out
    const auto finishTier = [&] {
        if (!hasGrown) {
            return;
        }
        addBestOf(list, found_);
        hasGrown = false;
    };
    std::size_t tier = kTier12;
    for (const VS_VALUE_ORDER& entry : order) {
        // Written with `>=` so that a sum that is not a number reaches no tier.
        while (tier < kTierCount && !(entry.value >= thresholds[tier])) {
            finishTier();
            if (tier == kTier4) {
                list.clear();
            }
            ++tier;
        }
        if (tier == kTierCount) {
            break;
        }
        hasGrown = offerToTier(list, entry.space) || hasGrown;
    }
    finishTier();
    cleanValueMap(found_);
    map.spaces = found_.spaces; // a copy of the right size: slices keep their maps for the whole computation
    return map;
}

VS_VALUE_MAP ValueSpace::quickSummarize(double span, VS_LEFT_OBJECTS left) {
    VS_VALUE_MAP map;
    map.span = span;
    if (const auto focus = quickFocus(span, left)) {
        map.spaces.push_back(*focus);
    }
    return map;
}

std::optional<std::pair<Rectangle, double>> ValueSpace::quickFocus(double span, VS_LEFT_OBJECTS left) {
    const double threshold = kTier4Rate * span;
    std::vector<VS_VALUE_ORDER>& order = order_;
    if (std::isnan(threshold)) {
        order = fillValues(); // no sum lies below what is not a number
    } else {
        // What is too cool, and what its parent will swallow, is left out before the sort instead of after it: this runs
        // several times for every slice.
        order.clear();
        sumSpaces(left, [&](const VS_VALUE_ORDER& entry) {
            if (entry.value >= threshold) {
                order.push_back(entry);
            }
        });
        countSteps(*store, kStepsPerOffer * order.size());
        std::erase_if(order,
                      [&](const VS_VALUE_ORDER& entry) { return isSwallowed(entry.space, threshold, kNoLimit); });
        sortForOffer(*store, order.begin(), order.end());
    }
    std::vector<std::uint32_t>& list = tierList_;
    list.clear();
    for (const VS_VALUE_ORDER& entry : order) {
        summarizeGraph(list, entry.space);
    }
    found_.spaces.clear();
    summarizeTier(list, found_);
    if (found_.spaces.empty()) {
        return std::nullopt;
    }
    return found_.spaces.front();
}

// True when a parent is offered to the same list, whose values are `least` or more and, when `below` is a limit, below
// it. Whatever the space could do in that list, the parent does.
bool ValueSpace::isSwallowed(std::uint32_t space, double least, double below) const {
    const OV_INTERSECTION& offered = graph[space];
    if (offered.parents.size() > kFewParents) {
        countSteps(*store, offered.parents.size());
    }
    return std::any_of(offered.parents.begin(), offered.parents.end(), [&](std::uint32_t index) {
        const OV_INTERSECTION& parent = graph[index];
        return parent.value >= least && parent.value < below && parent.rect != offered.rect &&
               contains(parent.rect, offered.rect);
    });
}

std::vector<VS_VALUE_ORDER> ValueSpace::fillValues() {
    std::vector<VS_VALUE_ORDER> order;
    order.reserve(graph.size());
    sumSpaces(VS_LEFT_OBJECTS::MAY_BE_WORTH, [&](const VS_VALUE_ORDER& entry) { order.push_back(entry); });
    // A sort over values that are not numbers has no defined result, so those go to the end, in slot order.
    auto numbersEnd = order.end();
    const auto isNumber = [](const VS_VALUE_ORDER& entry) { return !std::isnan(entry.value); };
    if (!std::all_of(order.begin(), order.end(), isNumber)) {
        numbersEnd = std::stable_partition(order.begin(), order.end(), isNumber);
    }
    sortForOffer(*store, order.begin(), numbersEnd);
    return order;
}

void ValueSpace::summarizeGraph(std::vector<std::uint32_t>& list, unsigned space) { offerToTier(list, space); }

bool ValueSpace::offerToTier(std::vector<std::uint32_t>& list, std::uint32_t space) {
    const Rectangle& offered = graph[space].rect;
    countSteps(*store, list.size());
    for (std::size_t k = list.size(); k-- > 0;) {
        const Rectangle& held = graph[list[k]].rect;
        if (contains(offered, held)) {
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(k));
        } else if (contains(held, offered)) {
            return false;
        }
    }
    list.push_back(space);
    return true;
}

void ValueSpace::summarizeTier(std::vector<std::uint32_t>& list, VS_VALUE_MAP& map) {
    if (!list.empty()) {
        startScores();
        addBestOf(list, map);
    }
}

void ValueSpace::startScores() {
    scored_.start();
    isLocated_ = false;
    hasScored_ = false;
}

void ValueSpace::locateObjects() {
    StepCounter steps(*store);
    located_.clear();
    for (const auto& [object, location] : placedObjects()) {
        steps.add(1);
        const double value = store->valueObjects[object].value;
        // What is worth nothing adds nothing to any sum. A value that is not a number is no nothing.
        if (value != 0.0) {
            located_.emplace_back(graph[location].rect, value);
        }
    }
    steps.settle();
    isLocated_ = true;
}

void ValueSpace::addBestOf(const std::vector<std::uint32_t>& list, VS_VALUE_MAP& map) {
    scores_.resize(graph.size());
    double bestScore = 0.0;
    Rectangle best;
    for (const std::uint32_t space : list) {
        const Rectangle& rect = graph[space].rect;
        if (scored_.add(space)) {
            // In a flood the first space is scored by walking the map: to lay out where so many are takes much memory, and
            // they mostly stand at one place.
            if (!isLocated_ && (hasScored_ || objectMap.size() <= kFewObjects)) {
                locateObjects();
            }
            hasScored_ = true;
            countSteps(*store, 1 + (isLocated_ ? located_.size() / 2 : objectMap.size()));
            scores_[space] = isLocated_ ? scoreOf(rect) : scoreByWalking(rect);
        }
        const double score = scores_[space];
        if (score > bestScore) {
            bestScore = score;
            best = rect;
        }
    }
    if (!isEmpty(best)) {
        map.spaces.emplace_back(best, bestScore / static_cast<double>(area(best)));
    }
}

double ValueSpace::scoreOf(const Rectangle& rect) const {
    double score = 0.0;
    for (const auto& [location, value] : located_) {
        score += value * static_cast<double>(area(intersection(rect, location)));
    }
    return score;
}

double ValueSpace::scoreByWalking(const Rectangle& rect) const {
    double score = 0.0;
    for (const auto& [object, location] : objectMap) {
        const double value = store->valueObjects[object].value;
        if (value != 0.0) {
            score += value * static_cast<double>(area(intersection(rect, graph[location].rect)));
        }
    }
    return score;
}

void ValueSpace::cleanValueMap(VS_VALUE_MAP& map) {
    // What stays moves up: a pair goes when one that stays ahead of it has its rectangle and is worth as much.
    auto& spaces = map.spaces;
    std::size_t kept = 0;
    for (std::size_t j = 0; j < spaces.size(); ++j) {
        const std::pair<Rectangle, double> space = spaces[j];
        std::size_t i = 0;
        while (i < kept && !(spaces[i].first == space.first && spaces[i].second >= space.second)) {
            ++i;
        }
        if (i == kept) {
            spaces[kept] = space;
            ++kept;
        }
    }
    spaces.resize(kept);
}

} // namespace OrvantaNS
