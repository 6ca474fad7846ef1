// What a recording holds, and what is odd about it.
#pragma once

#include <string>
#include <vector>

#include "reading/Recording.h"

namespace OrvantaNS::command {

/// What a reader accepts but a recorder hardly meant, a sentence each; empty for a clean recording.
std::vector<std::string> findOddities(const Recording& recording);

/// Streams without any line that the engines live on, and what that costs, a sentence each.
std::vector<std::string> findMissingStreams(const Recording& recording);

/// Length, regions, events per stream and oddities, for people.
std::string infoText(const Recording& recording);
/// The same for programs.
std::string infoJson(const Recording& recording);

} // namespace OrvantaNS::command
