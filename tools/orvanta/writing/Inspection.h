// What the value engine makes of a recording, stage by stage.
#pragma once

#include <string>
#include <vector>

#include "asking/Engine.h"
#include "writing/Json.h"

namespace OrvantaNS::command {

/// What stood in the store after each stage. Later stages write over earlier results, so each is kept as it was.
struct Inspection {
    /// Number of stages that were completed; the fields of later ones are empty.
    int stages = 0;
    std::vector<OV_LIVE_ZONE> zones;
    std::vector<OV_VALUE_OBJECT> objects;
    std::vector<OV_FOCUS_SLICE> slices; ///< As slicing leaves them.
    std::vector<OV_FOCUS_SLICE>
        shots; ///< As merging leaves them, dead ones included: indices stay those of the slices.
    std::vector<ReasonedKeyframe> keyframes;
    std::string failure; ///< What ended the run early; empty when nothing did.
};

/// Keeps what `stage` has made. To be called from the observer of a run.
void keepStage(Inspection& inspection, OV_PIPELINE_STAGE stage, const OV_DATA_STORE& store);

/// The stages for people.
std::string inspectionText(const Inspection& inspection, const Recording& recording);
/// The stages as a JSON document. Times are in seconds, but for the keyframes' ticks; rectangles have local pixels.
Json inspectionDocument(const Inspection& inspection, const Recording& recording);
std::string inspectionJson(const Inspection& inspection, const Recording& recording);

} // namespace OrvantaNS::command
