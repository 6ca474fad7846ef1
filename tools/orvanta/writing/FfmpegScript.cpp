#include "writing/FfmpegScript.h"

#include <vector>

#include <fmt/format.h>

#include "frame/Geometry.h"

namespace OrvantaNS::command {

namespace {

// What the expressions keep in ffmpeg's numbered variables.
//   0  share of the move's time that has passed
//   1  share of the way that is done
//   2, 3, 4, 5  the search for the easing's parameter: its ends, the count of halvings, the middle
//   6  the frame's width
constexpr int kHalvings = 40; // 2^-40 of a move is below everything that a picture shows.

/// A stretch of the video's time in which one expression holds; it goes on to the next one's start.
struct Piece {
    double start = 0.0;               ///< Seconds of the video. That of the first piece does not count.
    const CameraMove* move = nullptr; ///< Null at rest.
    CameraFrame rest;                 ///< On show at rest.
};

std::vector<Piece> piecesOf(const CameraPlan& plan, const CameraPath& path) {
    std::vector<Piece> pieces{{0.0, nullptr, path.wholeFrame()}};
    for (const CameraMove& move : path.moves()) {
        if (move.stop > move.start) {
            pieces.push_back({plan.toVideoSeconds(move.start), &move, {}});
        }
        if (!move.cutShort) {
            pieces.push_back({plan.toVideoSeconds(move.stop), nullptr, move.to});
        }
    }
    return pieces;
}

/// A balanced tree of conditions over the pieces from `first` up to but not including `last`.
template <typename Leaf>
std::string treeOf(const std::vector<Piece>& pieces, std::size_t first, std::size_t last, const Leaf& leaf) {
    if (last - first == 1) {
        return leaf(pieces[first]);
    }
    const std::size_t middle = first + (last - first) / 2;
    return fmt::format("if(lt(t,{}),{},{})", pieces[middle].start, treeOf(pieces, first, middle, leaf),
                       treeOf(pieces, middle, last, leaf));
}

template <typename Leaf> std::string treeOf(const std::vector<Piece>& pieces, const Leaf& leaf) {
    return treeOf(pieces, 0, pieces.size(), leaf);
}

/// One coordinate of the easing's curve at the parameter in variable 5.
std::string bezier(double first, double second) {
    return fmt::format("3*(1-ld(5))*(1-ld(5))*ld(5)*{}+3*(1-ld(5))*ld(5)*ld(5)*{}+ld(5)*ld(5)*ld(5)", first, second);
}

/// Puts the share of the way into variable 1, from the share of the time in variable 0.
std::string easingSteps(const CameraEasing& easing) {
    if (easing.x1() == easing.y1() && easing.x2() == easing.y2()) {
        return "st(1,ld(0));";
    }
    return fmt::format("st(2,0);st(3,1);st(4,0);while(lt(ld(4),{}),st(5,(ld(2)+ld(3))/2);"
                       "if(lt({},ld(0)),st(2,ld(5)),st(3,ld(5)));st(4,ld(4)+1));st(1,{});",
                       kHalvings, bezier(easing.x1(), easing.x2()), bezier(easing.y1(), easing.y2()));
}

class Script {
public:
    explicit Script(const CameraPlan& plan)
        : plan_(plan), path_(plan.path()), pieces_(piecesOf(plan, path_)), regionWidth_(width(plan.setup.region)),
          regionHeight_(height(plan.setup.region)), targetWidth_(plan.setup.targetWidth),
          targetHeight_(plan.setup.targetHeight) {}

    std::string text() const {
        // The pictures are cut at any pixel only where colours are not shared by several.
        std::string text = fmt::format("format=yuv444p,scale=w='{}{}':h='{}{}':eval=frame:flags=bicubic", widthSteps(),
                                       scaled(regionWidth_), widthSteps(), scaled(regionHeight_));
        if (overhangs()) {
            text += fmt::format(",pad=w='max(iw,{0})':h='max(ih,{1})':x='(ow-iw)/2':y='(oh-ih)/2':eval=frame",
                                2 * targetWidth_, 2 * targetHeight_);
        }
        text += fmt::format(",crop=w={}:h={}:x='{}{}':y='{}{}':exact=1", 2 * targetWidth_, 2 * targetHeight_,
                            widthSteps(), lowEdge(Axis::X), widthSteps(), lowEdge(Axis::Y));
        text += fmt::format(",scale={}:{}:flags=bicubic,setsar=1,format=yuv420p\n", targetWidth_, targetHeight_);
        return text;
    }

private:
    enum class Axis : std::uint8_t { X, Y };

    /// Puts the frame's width into variable 6.
    std::string widthSteps() const {
        const double fade = plan_.toSeconds(plan_.setup.fadeDuration);
        std::string text = fmt::format("st(0,{});", treeOf(pieces_, [&](const Piece& piece) {
                                           return piece.move == nullptr ? std::string("0")
                                                                        : fmt::format("(t-{})/{}", piece.start, fade);
                                       }));
        text += easingSteps(plan_.setup.easing);
        text += fmt::format("st(6,{});", treeOf(pieces_, [](const Piece& piece) {
                                return piece.move == nullptr
                                           ? fmt::format("{}", piece.rest.width)
                                           : fmt::format("{}*pow({},ld(1))", piece.move->from.width,
                                                         piece.move->to.width / piece.move->from.width);
                            }));
        return text;
    }

    /// The size in the doubled picture of a side of the recording.
    std::string scaled(std::int64_t side) const { return fmt::format("2*round({}/ld(6))", side * targetWidth_); }

    /// The low edge of the frame in the doubled picture, in which the frame's size is that of the output twice.
    std::string lowEdge(Axis axis) const {
        const std::int64_t side = axis == Axis::X ? regionWidth_ : regionHeight_;
        const std::string low = treeOf(pieces_, [&](const Piece& piece) {
            return piece.move == nullptr ? fmt::format("{}", axis == Axis::X ? piece.rest.left : piece.rest.top)
                                         : movingEdge(*piece.move, axis);
        });
        return fmt::format("max(0,round(({})*{}/{}))", low, scaled(side), side);
    }

    std::string movingEdge(const CameraMove& move, Axis axis) const {
        const bool x = axis == Axis::X;
        const double limit = static_cast<double>(x ? regionWidth_ : regionHeight_);
        const double fromLow = x ? move.from.left : move.from.top;
        const double toLow = x ? move.to.left : move.to.top;
        const double fromSize = x ? move.from.width : move.from.height;
        const double toSize = x ? move.to.width : move.to.height;
        const std::string size = x ? "ld(6)" : fmt::format("ld(6)*{}/{}", targetHeight_, targetWidth_);
        if (fromSize <= limit && toSize <= limit) {
            const std::string share = move.from.width == move.to.width ? "ld(1)"
                                                                       : fmt::format("(ld(6)-{})/({})", move.from.width,
                                                                                     move.to.width - move.from.width);
            return fmt::format("{}+({})*{}", fromLow, toLow - fromLow, share);
        }
        const double fittingLow = fromSize < limit ? fromLow : toLow;
        const double fittingSize = fromSize < limit ? fromSize : toSize;
        if (fittingSize >= limit) {
            return "0"; // It stands out all the way, and the recording is padded.
        }
        return fmt::format("if(gte({0},{1}),0,({2})*({1}-{0})/{3})", size, limit, fittingLow, limit - fittingSize);
    }

    bool overhangs() const {
        bool any = path_.wholeFrame().overhangs;
        for (const CameraMove& move : path_.moves()) {
            any = any || move.from.overhangs || move.to.overhangs;
        }
        return any;
    }

    const CameraPlan& plan_;
    CameraPath path_;
    std::vector<Piece> pieces_;
    std::int64_t regionWidth_;
    std::int64_t regionHeight_;
    std::int64_t targetWidth_;
    std::int64_t targetHeight_;
};

} // namespace

std::string ffmpegScript(const CameraPlan& plan) { return Script(plan).text(); }

std::string ffmpegCommandLine(const CameraPlan& plan, const std::string& file) {
    const double start = plan.toVideoSeconds(plan.setup.clipStart);
    const double stop = plan.toVideoSeconds(plan.setup.clipStop);
    std::string line = fmt::format("ffmpeg -i VIDEO -filter_script:v {}", file.empty() ? "FILE" : file);
    if (start > 0.0) {
        line += fmt::format(" -ss {}", start);
    }
    if (stop > start) {
        line += fmt::format(" -to {}", stop);
    }
    return line + " -c:a copy OUT.mp4";
}

} // namespace OrvantaNS::command
