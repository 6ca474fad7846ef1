// Which objects stand in the same lists?
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace OrvantaNS {

/// Two objects are of one class when each list names both or neither. All start in one class, and each list splits those
/// that it names from those that it does not, so the cost is that of reading the lists once.
class ObjectClasses {
public:
    static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

    /// Sorts the objects of all lists into classes. One that stands twice in a list is of no class. Tells `visit` the
    /// length of each list before it is read; what is sorted out is of no use once that has thrown.
    template <typename Graph, typename Visit> void sortOut(const Graph& graph, Visit visit) {
        for (const std::uint32_t object : named_) {
            classes_[object] = kNone;
        }
        named_.clear();
        sizes_.clear();
        spare_.clear();
        emptied_.clear();
        splits_.clear();
        std::uint32_t list = 0;
        for (const auto& slot : graph) {
            ++list;
            visit(slot.objects.size());
            // Until here a class that the last list emptied could still be asked where its members go.
            spare_.insert(spare_.end(), emptied_.begin(), emptied_.end());
            emptied_.clear();
            for (const std::uint32_t object : slot.objects) {
                moveApart(object, list);
            }
        }
        for (const std::uint32_t object : repeated_) {
            classes_[object] = kNone;
        }
        repeated_.clear();
    }
    std::uint32_t classOf(std::uint32_t object) const { return object < classes_.size() ? classes_[object] : kNone; }
    /// One more than the highest number of a class.
    std::size_t count() const { return sizes_.size(); }

private:
    // Where the members of a class that a list names go.
    struct Split {
        std::uint32_t list = 0; // the last list that named a member
        std::uint32_t into = 0; // the class of those that it names
    };

    void moveApart(std::uint32_t object, std::uint32_t list) {
        if (object >= classes_.size()) {
            classes_.resize(std::size_t{object} + 1, kNone);
        }
        const std::uint32_t from = classes_[object];
        if (from == kNone) {
            // Met for the first time: it leaves the class of what no list has named so far.
            named_.push_back(object);
            if (unnamed_.list != list || sizes_.empty()) {
                unnamed_ = {list, newClass(list)};
            }
            enter(object, unnamed_.into);
            return;
        }
        if (splits_[from].list == list && splits_[from].into == from) {
            repeated_.push_back(object); // made for this very list: the object has been named by it before
            return;
        }
        if (splits_[from].list != list) {
            splits_[from] = {list, kNone};
        }
        if (splits_[from].into == kNone) {
            const std::uint32_t into = newClass(list);
            splits_[from].into = into;
        }
        const std::uint32_t into = splits_[from].into;
        if (--sizes_[from] == 0) {
            emptied_.push_back(from);
        }
        enter(object, into);
    }
    std::uint32_t newClass(std::uint32_t list) {
        std::uint32_t added = 0;
        if (!spare_.empty()) {
            added = spare_.back();
            spare_.pop_back();
        } else {
            added = static_cast<std::uint32_t>(sizes_.size());
            sizes_.push_back(0);
            splits_.emplace_back();
        }
        splits_[added] = {list, added};
        return added;
    }
    void enter(std::uint32_t object, std::uint32_t into) {
        classes_[object] = into;
        ++sizes_[into];
    }

    std::vector<std::uint32_t> classes_;  // by object
    std::vector<std::uint32_t> named_;    // the objects that have a class
    std::vector<std::uint32_t> repeated_; // those that stand twice in a list
    std::vector<std::uint32_t> sizes_;    // by class
    std::vector<Split> splits_;           // by class
    std::vector<std::uint32_t> spare_;    // empty classes
    std::vector<std::uint32_t> emptied_;  // classes that the list in work has emptied
    Split unnamed_;
};

} // namespace OrvantaNS
