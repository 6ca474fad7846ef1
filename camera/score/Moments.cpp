#include "camera/score/Moments.h"

#include <algorithm>
#include <cmath>

namespace OrvantaNS::camera {

namespace {

// The distance between two looks at a moment, seconds: a tenth of a move.
constexpr double kMomentLookSeconds = 0.1;
// The share of a rectangle that must be inside: rectangles are good to a few pixels only.
constexpr double kSeenShare = 0.95;
// Of the largest zoom that holds the rectangle, so that a hair's breadth of room does no harm.
constexpr double kOfLargestZoom = 0.95;

} // namespace

double readingZoom(const RealRect& rect, double outputWidth, double outputHeight) {
    return std::min(
        {kReadingZoom, kOfLargestZoom * outputWidth / width(rect), kOfLargestZoom * outputHeight / height(rect)});
}

std::vector<MomentScore> judgeMoments(const JudgedPath& path, const std::vector<Moment>& moments, const RealRect& whole,
                                      double outputWidth, double outputHeight) {
    const double shape = outputWidth / outputHeight;
    const double widest = std::min(width(whole), height(whole) * shape);
    std::vector<MomentScore> scores;
    scores.reserve(moments.size());
    for (const Moment& moment : moments) {
        const double length = moment.to - moment.from;
        const int looks = std::max(1, static_cast<int>(std::nearbyint(length / kMomentLookSeconds)));
        const double needed = readingZoom(moment.rect, outputWidth, outputHeight);
        int seen = 0;
        int read = 0;
        for (int look = 0; look < looks; ++look) {
            const RealRect frame = path.at(moment.from + (look + 0.5) * length / looks);
            if (area(intersection(frame, moment.rect)) >= kSeenShare * area(moment.rect)) {
                ++seen;
                read += path.zoom(frame) >= needed ? 1 : 0;
            }
        }
        MomentScore score;
        score.seen = static_cast<double>(seen) / looks;
        score.read = static_cast<double>(read) / looks;
        score.isHoldable = std::min(width(moment.rect), widest) * std::min(height(moment.rect), widest / shape) >=
                           kSeenShare * area(moment.rect);
        scores.push_back(score);
    }
    return scores;
}

} // namespace OrvantaNS::camera
