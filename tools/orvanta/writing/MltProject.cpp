#include "writing/MltProject.h"

#include <cmath>
#include <filesystem>
#include <numeric>
#include <system_error>
#include <vector>

#include <fmt/format.h>

#include "asking/OptionError.h"
#include "frame/Geometry.h"
#include "terminal/FileName.h"
#include "terminal/TextFormat.h"
#include "writing/Output.h"

namespace OrvantaNS::command {

namespace {

namespace fs = std::filesystem;

constexpr double kMostPictures = 2147483647.0; // MLT counts them in 32 bits.

/// Text as XML holds it. What XML 1.0 has no form for becomes a question mark.
std::string xmlText(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += static_cast<unsigned char>(c) < ' ' ? '?' : c;
        }
    }
    return escaped;
}

/// The rectangle of the output picture that the whole recording fills, as MLT writes it: left, top, width, height and
/// opacity.
std::string rectangleText(const CameraPlan& plan, const CameraFrame& frame) {
    const CameraSetup& setup = plan.setup;
    const double across = setup.targetWidth / frame.width;
    const double down = setup.targetHeight / frame.height;
    const double regionWidth = width(setup.region);
    const double regionHeight = height(setup.region);
    // 0 is added so that no -0.000 is written.
    return fmt::format("{:.3f} {:.3f} {:.3f} {:.3f} 1", 0.0 - frame.left * across, 0.0 - frame.top * down,
                       regionWidth * across, regionHeight * down);
}

std::string keysText(const CameraPlan& plan, const std::vector<PathSample>& samples, long long first) {
    std::string keys;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const bool isEnd = i == 0 || i + 1 == samples.size();
        if (isEnd || samples[i - 1].frame != samples[i].frame || samples[i + 1].frame != samples[i].frame) {
            keys += fmt::format("{}{}={}", keys.empty() ? "" : ";", first + static_cast<long long>(i),
                                rectangleText(plan, samples[i].frame));
        }
    }
    return keys;
}

} // namespace

std::string mltProject(const CameraPlan& plan, const PictureRate& rate, const std::string& video) {
    const std::vector<PathSample> samples = samplesOf(plan, rate);
    if (samples.empty()) {
        throw OptionError("--format mlt: no picture of the video lies in the clip");
    }
    const CameraSetup& setup = plan.setup;
    const double position = std::round(samples.front().videoSeconds * rate.perSecond());
    if (position < 0.0) {
        throw OptionError("--format mlt: the clip begins before the video does");
    }
    if (position + static_cast<double>(samples.size()) > kMostPictures) {
        throw OptionError("--format mlt: the clip lies too late; MLT counts at most 2147483647 pictures");
    }
    const auto first = static_cast<long long>(position);
    const long long last = first + static_cast<long long>(samples.size()) - 1;
    const int divisor = std::gcd(setup.targetWidth, setup.targetHeight);
    return fmt::format(
        R"(<?xml version="1.0" encoding="utf-8"?>
<mlt LC_NUMERIC="C" title="{}">
  <profile description="orvanta" width="{}" height="{}" progressive="1" sample_aspect_num="1" sample_aspect_den="1" display_aspect_num="{}" display_aspect_den="{}" frame_rate_num="{}" frame_rate_den="{}" colorspace="709"/>
  <producer id="video">
    <property name="mlt_service">avformat</property>
    <property name="resource">{}</property>
    <filter id="camera">
      <property name="mlt_service">affine</property>
      <property name="background">colour:black</property>
      <property name="transition.distort">1</property>
      <property name="transition.fill">1</property>
      <property name="transition.rect">{}</property>
    </filter>
  </producer>
  <playlist id="clip">
    <entry producer="video" in="{}" out="{}"/>
  </playlist>
</mlt>
)",
        xmlText(plan.recording), setup.targetWidth, setup.targetHeight, setup.targetWidth / divisor,
        setup.targetHeight / divisor, rate.pictures, rate.seconds, xmlText(video), keysText(plan, samples, first),
        first, last);
}

std::string mltVideoName(const std::string& video, const std::string& projectFile) {
    std::error_code error;
    const fs::path whole = fs::absolute(pathOf(video), error);
    if (error || isStandardOutput(projectFile)) {
        return error ? video : nameOf(whole.lexically_normal().generic_u8string());
    }
    const fs::path folder = fs::absolute(pathOf(projectFile), error).parent_path();
    const fs::path name = error ? fs::path() : whole.lexically_normal().lexically_relative(folder.lexically_normal());
    return nameOf((name.empty() ? whole : name).generic_u8string());
}

std::string mltCommandLine(const std::string& file) {
    return fmt::format("melt {} -consumer avformat:OUT.mp4 rescale=bicubic", file.empty() ? "FILE" : file);
}

} // namespace OrvantaNS::command
