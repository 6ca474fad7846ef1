// The request: everything that an engine needs to know about one recording.
#pragma once

#include <cstdint>
#include <vector>

#include "OrvantaExport.h"
#include "OrvantaRecords.h"

namespace OrvantaNS {

/// One request, filled by the host and only read by the engines.
///
/// A host sets at least the target size, `recordingRegions()`, the clip interval and the time scale. With the default
/// clip of (0, 0) there is nothing to process. Every array must be sorted by time, ascending; nothing sorts it.
/// Rectangles and positions are in screen pixels, times in ticks, `timeScale()` of them a second.
class ORVANTA_EXPORT Params {
public:
    /// Width of the output frame, pixels.
    std::int32_t targetWidth() const { return targetWidth_; }
    /// Height of the output frame, pixels.
    std::int32_t targetHeight() const { return targetHeight_; }
    /// Ticks per second of every time in this request; must not be 0.
    double timeScale() const { return timeScale_; }
    /// Length of the animated move from one keyframe to the next, ticks.
    long long fadeDuration() const { return fadeDuration_; }
    /// First tick of the stretch to process.
    long long clipStart() const { return clipStart_; }
    /// Last tick of the stretch to process.
    long long clipStop() const { return clipStop_; }
    /// True when the platform does not report menus as windows: foreground windows are then never taken for menus.
    bool isWindows() const { return windowsFlag_; }

    /// Samples of the rectangle of the window in front; an empty rectangle says that there is none.
    std::vector<OV_TIME_RECT>& foreWindows() { return foreWindows_; }
    const std::vector<OV_TIME_RECT>& foreWindows() const { return foreWindows_; }
    /// Button and wheel events.
    std::vector<OV_MOUSE_ACTION>& cursorActions() { return cursorActions_; }
    const std::vector<OV_MOUSE_ACTION>& cursorActions() const { return cursorActions_; }
    /// Samples of the cursor's position.
    std::vector<OV_MOUSE_LOCATION>& cursorLocations() { return cursorLocations_; }
    const std::vector<OV_MOUSE_LOCATION>& cursorLocations() const { return cursorLocations_; }
    /// Rectangles of the screen that changed.
    std::vector<OV_TIME_RECT>& dirtyRects() { return dirtyRects_; }
    const std::vector<OV_TIME_RECT>& dirtyRects() const { return dirtyRects_; }
    /// Rectangles of the text caret.
    std::vector<OV_TIME_RECT>& caretRects() { return caretRects_; }
    const std::vector<OV_TIME_RECT>& caretRects() const { return caretRects_; }
    /// The part of the screen that was recorded, from each entry's time on; the first gives the recording's frame.
    std::vector<OV_TIME_RECT>& recordingRegions() { return recordingRegions_; }
    const std::vector<OV_TIME_RECT>& recordingRegions() const { return recordingRegions_; }

    /// Each setter returns this request, so that calls chain.
    Params& setTargetWidth(int width);
    Params& setTargetHeight(int height);
    Params& setTimeScale(double ticksPerSecond);
    Params& setFadeDuration(long long ticks);
    /// Sets the stretch to process, in ticks: start, then stop.
    Params& setClipInterval(long long start, long long stop);
    Params& setWindowsFlag(bool isWindows);

private:
    std::int32_t targetWidth_ = 0;
    std::int32_t targetHeight_ = 0;
    std::vector<OV_TIME_RECT> foreWindows_;
    std::vector<OV_MOUSE_ACTION> cursorActions_;
    std::vector<OV_MOUSE_LOCATION> cursorLocations_;
    std::vector<OV_TIME_RECT> dirtyRects_;
    std::vector<OV_TIME_RECT> caretRects_;
    std::vector<OV_TIME_RECT> recordingRegions_;
    double timeScale_ = 100.0;
    long long fadeDuration_ = 100;
    long long clipStart_ = 0;
    long long clipStop_ = 0;
    bool windowsFlag_ = false;
};

} // namespace OrvantaNS
