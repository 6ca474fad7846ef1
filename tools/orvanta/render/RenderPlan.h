// What the ways to render have in common: the form of their pictures, where they start, and what they tell at the end.
#pragma once

#include "render/VideoRendering.h"

namespace OrvantaNS::render {

/// The plan of a job, but for the form of its pictures.
PassPlan planOf(const RenderJob& job);

/// The form of the output's pictures in a given pixel format: colours keep the meaning that the video's tags give them.
/// Where RGB becomes YUV the result is tagged with what it was made with.
PictureForm convertedForm(const AVFrame& sample, const RenderJob& job, AVPixelFormat format);

/// Brings the reader to where a clip starts.
void goToStart(VideoReader& reader, const VideoClip& clip);

/// Length of the output as far as is known; 0 when it is not. Seconds.
double expectedSeconds(const VideoReader& reader, const VideoClip& clip);

/// Throws `VideoError` when a pass found no picture in the clip.
void checkNotEmpty(const PassResult& result, const VideoReader& reader, const VideoClip& clip);

void addNotes(RenderOutcome& outcome, const VideoReader& reader, const PassResult& result);

} // namespace OrvantaNS::render
