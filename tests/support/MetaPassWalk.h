// The meta passes of a walk over a recording, each carried out in both forms: with the index and plainly.
#pragma once

#include <gtest/gtest.h>

#include "ParserScene.h"
#include "PlainMetaPass.h"
#include "frame/DataStore.h"
#include "parser/DataParser.h"

namespace OrvantaNS::testing {

// One pass over the list in both forms.
inline void expectEqualPasses(const DataParser& before, const Params& params, const OV_DATA_STORE& storeBefore,
                              Interval_Type<long long> interval) {
    DataParser plain = before;
    OV_DATA_STORE plainStore = storeBefore;
    plain.metaStartTime = interval.start;
    plain.metaTime = interval.stop;
    plain.locationTime = interval.stop; // the pass ends there, whatever the zone's stop
    PlainMetaPass(plain, params, plainStore).run(0, interval);

    DataParser actual = before;
    OV_DATA_STORE store = storeBefore;
    actual.metaStartTime = interval.start;
    actual.metaTime = interval.stop;
    actual.locationTime = interval.stop;
    actual.fluxCapacitor(0, params, store);

    ASSERT_EQ(texts(store.valueObjects), texts(plainStore.valueObjects));
    ASSERT_EQ(texts(actual.objects), texts(plain.objects));
}

/// Walks over the whole clip as if it were one zone, with a pass every ten seconds; `store` is fresh, and then holds what
/// the passes handed over.
inline void expectPassesOfAWalkEqualPlainOnes(const Params& params, OV_DATA_STORE& store) {
    DataParser::StoreTimeScale = params.timeScale();
    store.clipStart = DataParser::convertTime(params.clipStart());
    store.clipStop = DataParser::convertTime(params.clipStop());
    store.liveZones.push_back({params.recordingRegions().at(0).rect, store.clipStart, store.clipStop});
    DataParser parser;
    parser.skipToLiveZone(0, params, store);
    parser.preProcessDR(0, params, store);
    parser.skipDRObject = 0;
    const long long step = DataParser::revertTime(10.0);
    for (long long start = params.clipStart(); start < params.clipStop(); start += step) {
        const auto isDue = [&](const auto& stream, std::uint32_t next) {
            return next < stream.size() && stream[next].time <= start + step;
        };
        while (isDue(params.foreWindows(), parser.nextForeWindow)) {
            parser.processForeWindow(0, params, store);
        }
        while (isDue(params.cursorActions(), parser.nextAction)) {
            parser.processCursorAction(0, params, store);
        }
        while (isDue(params.cursorLocations(), parser.nextLocation)) {
            parser.processCursorLocation(0, params, store);
        }
        ASSERT_NO_FATAL_FAILURE(expectEqualPasses(parser, params, store, {start, start + step}));
        parser.metaStartTime = start;
        parser.metaTime = start + step;
        parser.locationTime = start + step;
        parser.fluxCapacitor(0, params, store);
    }
}

} // namespace OrvantaNS::testing
