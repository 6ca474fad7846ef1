// The director's plan with its reasons, for people and as JSON.
#pragma once

#include <string>

#include "OrvantaDirector.h"
#include "reading/Recording.h"
#include "writing/Json.h"

namespace OrvantaNS::command {

/// Shot by shot: where the camera stands, what for, and what the best other frame would have cost.
std::string planText(const DirectorPlan& plan, const Recording& recording);

/// The request, then `cost` and `shots`. Costs and weights are in seconds; rectangles have local pixels.
Json planDocument(const DirectorPlan& plan, const Recording& recording);

/// The same as text.
std::string planJson(const DirectorPlan& plan, const Recording& recording);

} // namespace OrvantaNS::command
