// Finds where the cursor set off on its way to a moment.

#include <cstddef>

#include "frame/WrappingArithmetic.h"
#include "parser/DataParser.h"
#include "parser/cursor/StrokePauses.h"

namespace OrvantaNS {

// From the stroke at the moment, the way leads back over all strokes that follow each other without a pause. A pause
// stands between two neighbours, whichever stroke the way began at, so one walk forward that remembers the latest pause
// gives what a walk back from each stroke would find.
double DataParser::findLastMousePause(double time) {
    long long moment = revertTime(time);
    const long long pause = revertTime(kPauseSeconds);
    const MOUSE_STROKE* afterPause = nullptr;
    for (std::size_t i = 0; i < keptStrokes.size(); ++i) {
        const MOUSE_STROKE& stroke = keptStrokes[i];
        if (isAfterPause(keptStrokes, i, pause)) {
            afterPause = &stroke;
        }
        if (i < pauseStroke || lastTime(stroke) < moment || firstTime(stroke) > wrapAdd(moment, pause)) {
            continue;
        }
        if (afterPause != nullptr) {
            return convertTime(firstTime(*afterPause));
        }
        // Motion all the way back to the first stroke is no answer, and the strokes behind are tried from there.
        moment = firstTime(keptStrokes.front());
    }
    return time;
}

} // namespace OrvantaNS
