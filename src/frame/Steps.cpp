#include "frame/Steps.h"

#include "OrvantaException.h"

namespace OrvantaNS {

void askWhetherToStop(OV_DATA_STORE& store) {
    store.stepsToQuestion = kStepsBetweenQuestions - 1;
    if (store.progress->isCancelled()) {
        throw OrvantaException("Need String! User Cancelled", OVERR_USER_CANCELLED);
    }
}

void beginNextCount(OV_DATA_STORE& store) {
    if (store.progress != nullptr) {
        askWhetherToStop(store);
    } else {
        store.stepsToQuestion = kStepsBetweenQuestions - 1;
    }
}

} // namespace OrvantaNS
