// A tree over many rectangles that answers which of them lie near a place without asking each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Rectangle.h"

namespace OrvantaNS {

/// A balanced binary tree whose shape is fixed by all the rectangles that it may ever hold; they are included one by
/// one. Rectangles of about one size that lie near each other stand under one branch, so that the box of a node is
/// small. Nodes are numbered from `kRoot` on, so that users keep what they know of a node in arrays of `nodeCount()`.
class RectangleTree {
public:
    using Node = std::size_t;
    static constexpr Node kRoot = 1;

    /// Only rectangles this near to the origin, pixels, can be told apart by boxes: further out an edge or a side may
    /// wrap around in the tests that the boxes stand for.
    static constexpr std::int32_t kFarPixels = std::int32_t{1} << 29;

    /// True when the rectangle covers something and lies near enough to be included. One that covers nothing shares no
    /// pixel with any other, so nothing is missed by leaving it out.
    static bool isFindable(const Rectangle& rect);
    /// True when tests with the rectangle may wrap around, so that boxes tell nothing about it.
    static bool isFar(const Rectangle& rect);

    /// A tree that may hold `rects` and holds none of them yet. Those that are not findable get no place.
    explicit RectangleTree(const std::vector<Rectangle>& rects);

    std::size_t nodeCount() const { return boxes_.size(); }
    bool isLeaf(Node node) const { return node >= leafCount_; }
    static Node parent(Node node) { return node / 2; }
    static Node firstChild(Node node) { return 2 * node; }
    static Node secondChild(Node node) { return 2 * node + 1; }

    /// The leaf of rectangle `index`, which must be findable.
    Node leafOf(std::size_t index) const { return leaves_[index]; }
    /// Includes rectangle `index`, which must be findable.
    void include(std::size_t index, const Rectangle& rect);
    /// False when no rectangle included under `node` shares a pixel with `rect`, which must not be far.
    bool canMeet(Node node, const Rectangle& rect) const {
        const Rectangle& box = boxes_[node];
        return box.left < rect.right && rect.left < box.right && box.top < rect.bottom && rect.top < box.bottom;
    }

private:
    std::size_t leafCount_ = 1;
    std::vector<Node> leaves_;     // By rectangle; 0 for one without a place.
    std::vector<Rectangle> boxes_; // By node: around all rectangles included below it; inside out when there are none.
};

} // namespace OrvantaNS
