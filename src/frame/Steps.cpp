#include "frame/Steps.h"

#include "OrvantaException.h"

namespace OrvantaNS {

void askWhetherToStop(OV_DATA_STORE& store) {
    store.stepsSinceQuestion = 0;
    if (store.progress->isCancelled()) {
        throw OrvantaException("Need String! User Cancelled", OVERR_USER_CANCELLED);
    }
}

} // namespace OrvantaNS
