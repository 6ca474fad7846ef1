// The beat of the meta pass.
#pragma once

namespace OrvantaNS {

/// Recording time between two meta passes, seconds: enough future around each object to tell what it meant.
inline constexpr double kMetaStepSeconds = 10.0;

/// `metaTime` when no more passes are due in a zone.
inline constexpr long long kNoMetaPass = -1;

} // namespace OrvantaNS
