// What the JavaScript module calls beside the C interface: a plan whose callbacks are JavaScript's.
#include <cstdint>

#include "orvanta_c.h"

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

} // extern "C"
