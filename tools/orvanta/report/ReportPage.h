// The page that shows a recording, its stages and its path: one file that needs nothing else.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "reading/Recording.h"
#include "writing/Json.h"

namespace OrvantaNS::command {

/// The video of a report.
struct ReportVideo {
    std::string link;    ///< Where the page finds it: a name relative to the page's folder, with slashes.
    std::string type;    ///< Its media type.
    bool embed = false;  ///< `content` goes into the page.
    std::string content; ///< The file's bytes, where it is embedded.
};

/// What a report shows.
struct Report {
    const Recording& recording;
    Json inspection; ///< As `inspect --format json` prints it.
    std::optional<ReportVideo> video;
};

/// True when the page was built into this command.
bool hasReportPage();

/// The page with a report in it. Requires `hasReportPage()`.
std::string reportPage(const Report& report);

/// The streams of a recording as JSON Lines: what a page needs of it, in whatever form it was read.
std::string recordingLines(const Recording& recording);

/// gzip, then base64: letters that may stand in a page.
std::string packedForPage(std::string_view content);

/// base64, with the usual 64 letters and padding.
std::string base64(std::string_view content);

/// The media type of a video by its name's ending.
std::string videoType(std::string_view name);

} // namespace OrvantaNS::command
