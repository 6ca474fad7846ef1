// Sessions with named moments, and what the director makes of them with given weights: the ground of its experiments.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "camera/director/Scene.h"
#include "camera/director/Weights.h"
#include "camera/score/Moments.h"
#include "camera/score/Session.h"
#include "reading/Recording.h"

namespace OrvantaNS::trials {

/// A recording with its moments.
struct Session {
    std::string name;
    Params params;
    camera::JudgedSession judged;
    camera::Scene scene; ///< What the director reads of `params`, whatever its weights.
    std::vector<camera::Moment> moments;
};

/// Another screen for the same session.
struct Screen {
    double fineness = 1.0; ///< Multiplies all coordinates: as much on the screen, in finer pixels.
    double room = 1.0;     ///< Multiplies the region's sides alone: the same windows on a larger screen.
};

/// Every NAME.jsonl of a folder that has a NAME.moments.csv beside it, by name. Throws what reading throws, and InputError
/// when there is none.
std::vector<Session> readSessions(const std::string& folder, const Screen& screen = {});

/// Under which conditions a session is planned and judged.
struct Conditions {
    std::int32_t width = 640;  ///< Of the output, pixels.
    std::int32_t height = 400; ///< Of the output, pixels.
    double calm = 1.0;
    bool mayOverhang = false;
    /// True to leave out moments that no frame inside the recording holds.
    bool isHoldableOnly = false;
    /// True to go by the moments themselves instead of by what the recording shows: what the search can reach at best.
    bool knowsMoments = false;
};

/// What judging sessions adds up to.
class Tally {
public:
    void add(const Tally& other);
    /// Shares of the moments of a view, as a mean over the moments; 0 without any.
    double seen(camera::MomentView view) const { return share(seen_, view); }
    double read(camera::MomentView view) const { return share(read_, view); }
    std::size_t count(camera::MomentView view) const { return counts_[static_cast<std::size_t>(view)]; }
    double movesAMinute() const { return minutes_ > 0.0 ? moves_ / minutes_ : 0.0; }
    double pressesInside() const { return presses_ > 0.0 ? inside_ / presses_ : 1.0; }
    double pressesAtRest() const { return presses_ > 0.0 ? atRest_ / presses_ : 1.0; }
    /// Mean over the sessions.
    double readableShare() const { return sessions_ > 0.0 ? readable_ / sessions_ : 0.0; }

private:
    friend Tally judge(const Session& session, const std::vector<camera::JudgedKeyframe>& keyframes,
                       const Conditions& conditions);
    double share(const std::array<double, 3>& sums, camera::MomentView view) const {
        const auto i = static_cast<std::size_t>(view);
        return counts_[i] > 0 ? sums[i] / static_cast<double>(counts_[i]) : 0.0;
    }

    std::array<std::size_t, 3> counts_{};
    std::array<double, 3> seen_{};
    std::array<double, 3> read_{};
    double presses_ = 0.0;
    double inside_ = 0.0;
    double atRest_ = 0.0;
    double moves_ = 0.0;
    double minutes_ = 0.0;
    double readable_ = 0.0;
    double sessions_ = 0.0;
};

/// The director's path with other weights than its own.
std::vector<camera::JudgedKeyframe> plan(const Session& session, const camera::DirectorWeights& weights,
                                         const Conditions& conditions);
/// What the judge says of a path.
Tally judge(const Session& session, const std::vector<camera::JudgedKeyframe>& keyframes, const Conditions& conditions);
/// Both, for one session or several.
Tally judge(const Session& session, const camera::DirectorWeights& weights, const Conditions& conditions);
Tally judge(const std::vector<Session>& sessions, const camera::DirectorWeights& weights, const Conditions& conditions);

/// A weight by its name.
struct NamedWeight {
    const char* name;
    double camera::DirectorWeights::*weight;
};
/// All of the director's weights.
const std::vector<NamedWeight>& namedWeights();

/// Round numbers from which tuning begins, so that it owes nothing to the session that is left out.
camera::DirectorWeights plainWeights();

/// How far figures at 640x400 and 360x640 and at a calm of 1, on the screen as it is and on finer ones, reach the aims for
/// them, and at 640x400 those at a calm of 2; larger is better. `screens` are the same sessions on several screens.
double worth(const std::vector<std::vector<Session>>& screens, const camera::DirectorWeights& weights);

/// The weights that a search by one coordinate after another finds from `weights` on, in `rounds` rounds at most.
camera::DirectorWeights tuned(const std::vector<std::vector<Session>>& screens, camera::DirectorWeights weights,
                              int rounds);

} // namespace OrvantaNS::trials
