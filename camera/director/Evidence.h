// What a viewer should see, when, and how much it is worth.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/director/FrameShape.h"
#include "camera/director/Scene.h"
#include "camera/director/Weights.h"

namespace OrvantaNS::camera {

/// Why something is worth seeing.
enum class EvidenceKind : std::uint8_t {
    Press,       ///< A button is pressed there.
    Drag,        ///< The cursor is dragged across it.
    Typing,      ///< The caret moves there.
    Change,      ///< It was drawn.
    SmallWindow, ///< A menu, dialog or tool is in front.
    WindowOpens, ///< A window comes up.
    Page,        ///< The window in front scrolls or shows something new as a whole.
    Linger,      ///< It was of interest last.
    Context,     ///< The window in front.
    Cursor,      ///< The cursor is there.
    Whole,       ///< The whole screen.
};
constexpr std::size_t kEvidenceKinds = 11;

/// "press", "drag", "typing" and so on.
ORVANTA_CAMERA_EXPORT std::string_view nameOf(EvidenceKind kind);

/// A rectangle worth seeing for a stretch of time.
struct Evidence {
    EvidenceKind kind = EvidenceKind::Whole;
    std::int32_t from = 0; ///< First step.
    std::int32_t to = 0;   ///< One past the last step.
    RealRect rect;         ///< Region pixels, not empty.
    double weight = 0.0;
    double reading = 1.0; ///< The part of its reading that counts: less where nothing is done for long.
};

/// All evidence of a scene, by kind and then by time.
ORVANTA_CAMERA_EXPORT std::vector<Evidence> gatherEvidence(const Scene& scene, const FrameShape& shape,
                                                           const DirectorWeights& weights);

} // namespace OrvantaNS::camera
