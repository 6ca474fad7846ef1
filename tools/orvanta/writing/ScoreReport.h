// The figures of a camera path, for people and as JSON.
#pragma once

#include <string>
#include <vector>

#include "camera/score/Figures.h"
#include "camera/score/Moments.h"
#include "reading/Recording.h"

namespace OrvantaNS::command {

/// What is to be told of one path.
struct ScoreReport {
    const Recording& recording;
    std::string path; ///< What was judged: a file, "the value engine", "click zoom".
    camera::PathFigures figures;
    std::vector<camera::Moment> moments;
    std::vector<camera::MomentScore> scores; ///< One for each moment.
};

std::string scoreText(const ScoreReport& report);
std::string scoreJson(const ScoreReport& report);

} // namespace OrvantaNS::command
