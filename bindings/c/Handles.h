// What the opaque handles of the C interface hold.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "CameraPath.h"
#include "OrvantaDirector.h"
#include "Params.h"
#include "orvanta_c.h"

struct orvanta_request {
    std::int32_t engine = ORVANTA_ENGINE_VALUE;
    OrvantaNS::Params params;
    OrvantaNS::DirectorControls director;
};

struct orvanta_result {
    std::vector<orvanta_keyframe> keyframes;
    std::vector<orvanta_zone> zones;
    std::vector<orvanta_object> objects;
    std::vector<orvanta_slice> slices;
    std::vector<orvanta_space> sliceSpaces;
    std::vector<orvanta_slice> shots;
    std::vector<orvanta_space> shotSpaces;
    std::vector<std::string> reasons;                   // of the keyframes, where there are more than their modes
    std::vector<OrvantaNS::DirectorShot> directorShots; // one for each keyframe of the director, where stages are kept
};

struct orvanta_path {
    OrvantaNS::CameraPath path;
    std::vector<orvanta_move> moves; // those of `path`, as rows of a table
};
