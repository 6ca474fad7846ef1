// Camera paths as a table for people, as CSV and as JSON (docs/formats.md).
#pragma once

#include <string>
#include <vector>

#include "reading/CameraPlan.h"
#include "writing/Json.h"

namespace OrvantaNS::command {

/// Pictures a second, as a fraction: 30000/1001 is no decimal.
struct PictureRate {
    long long pictures = 30;
    long long seconds = 1;

    double perSecond() const { return static_cast<double>(pictures) / static_cast<double>(seconds); }
    friend bool operator==(const PictureRate&, const PictureRate&) = default;
};

std::string pathTable(const CameraPlan& plan);
/// A line for each keyframe; with `even`, the frames at rest in whole even pixels (`evenFrame`).
std::string pathCsv(const CameraPlan& plan, bool even = false);
/// The versioned path that `readPathFile` reads back: the same path, whether or not it is edited.
std::string pathJson(const CameraPlan& plan);
/// The same document before it is text.
Json pathDocument(const CameraPlan& plan);

/// The frame at every picture of a rate, whose pictures lie on the video's clock: one at 0, one at 1 / rate, and so on,
/// from the clip's start (or the video's, if that is later) to the clip's stop, both included.
struct PathSample {
    double seconds = 0.0;      ///< On the recording's clock.
    double videoSeconds = 0.0; ///< On the video's clock.
    CameraFrame frame;
};

/// Throws `OptionError` when there would be more than ten million of them.
std::vector<PathSample> samplesOf(const CameraPlan& plan, const PictureRate& rate);

std::string samplesCsv(const CameraPlan& plan, const PictureRate& rate, bool even = false);
std::string samplesJson(const CameraPlan& plan, const PictureRate& rate);

/// The frame in whole even pixels, of exactly the target's shape: the nearest size of that kind, and not larger than the
/// recording where the frame is not; around the same middle as far as even numbers allow; inside the recording where it
/// fits. What is not even for want of room (a recording narrower than two pixels) is left at 0.
Rectangle evenFrame(const CameraFrame& frame, const CameraSetup& setup);

} // namespace OrvantaNS::command
