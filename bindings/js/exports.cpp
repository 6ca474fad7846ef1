// What the JavaScript module calls beside the C interface: a plan whose callbacks are JavaScript's.
#include <cstdint>

#include "bindings/c/Handles.h"
#include "bindings/c/Records.h"
#include "orvanta_c.h"

namespace {

/// A kind of evidence of one of the director's shots, beside what the shot cost. 80 bytes.
struct EvidenceRow {
    double weight;
    double seen;
    double cost;
    double runnerUpCost;
    orvanta_rect rect;
    orvanta_rect runnerUp;
    std::uint32_t count;
    std::int32_t hasRunnerUp;
    std::uint32_t padding[2];
};
static_assert(sizeof(EvidenceRow) == 80);

const OrvantaNS::DirectorReason* findReason(const orvanta_result* result, std::uint32_t shot, std::uint32_t reason) {
    if (result == nullptr || shot >= result->directorShots.size() ||
        reason >= result->directorShots[shot].reasons.size()) {
        return nullptr;
    }
    return &result->directorShots[shot].reasons[reason];
}

} // namespace

extern "C" {

/// The module's own, handed over when it instantiates.
__attribute__((import_module("orvanta"), import_name("progress"))) void orvanta_js_progress(double percent);
__attribute__((import_module("orvanta"), import_name("cancelled"))) std::int32_t orvanta_js_cancelled();

/// `orvanta_plan`; `listens` asks for the callbacks.
__attribute__((visibility("default"))) std::int32_t orvanta_js_plan(const orvanta_request* request,
                                                                    std::int32_t keepStages, std::int32_t listens,
                                                                    orvanta_result** result, orvanta_error* error) {
    orvanta_run run{};
    run.struct_size = sizeof run;
    run.keep_stages = keepStages;
    if (listens != 0) {
        run.progress = [](double percent, void*) { orvanta_js_progress(percent); };
        run.cancelled = [](void*) { return orvanta_js_cancelled(); };
    }
    return orvanta_plan(request, &run, result, error);
}

/// The `reason`-th kind of evidence of the director's `shot`; 0 when there is none.
__attribute__((visibility("default"))) std::int32_t
orvanta_js_evidence(const orvanta_result* result, std::uint32_t shot, std::uint32_t reason, EvidenceRow* row) {
    const OrvantaNS::DirectorReason* const found = findReason(result, shot, reason);
    if (found == nullptr) {
        return 0;
    }
    const OrvantaNS::DirectorShot& of = result->directorShots[shot];
    using OrvantaNS::c::toRect;
    *row = {found->weight,
            found->seen,
            of.cost,
            of.runnerUpCost,
            toRect(found->rect),
            toRect(of.runnerUp),
            found->count,
            of.hasRunnerUp ? 1 : 0,
            {}};
    return 1;
}

/// Its name, such as "press".
__attribute__((visibility("default"))) const char* orvanta_js_evidence_kind(const orvanta_result* result,
                                                                            std::uint32_t shot, std::uint32_t reason) {
    const OrvantaNS::DirectorReason* const found = findReason(result, shot, reason);
    return found == nullptr ? "" : found->kind.c_str();
}

} // extern "C"
