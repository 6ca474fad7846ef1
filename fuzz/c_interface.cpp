// Fuzz target: the C interface answers as the C++ classes do, refuses what it promises to refuse, and lets nothing out.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "CRequest.h"
#include "Check.h"
#include "EngineChecks.h"
#include "OrvantaVotingAlgorithm.h"
#include "OrvantaWorker.h"
#include "RequestDecoder.h"

namespace {

using namespace OrvantaNS;
using namespace OrvantaNS::fuzz;
using namespace OrvantaNS::testing;

// A run is cancelled after this many questions: longer ones may take for ever by their nature.
constexpr std::uint32_t kLongRunSteps = 2000;

// Cancels at a question, on either side of the border.
class Patience : public ProgressReporter {
public:
    explicit Patience(std::uint32_t questions) : left_(questions) {}
    void reportProgress(double) override {}
    bool isCancelled() override { return left_ == 0 || --left_ == 0; }

private:
    std::uint32_t left_;
};

void checkError(const orvanta_error& error, std::int32_t code) {
    FUZZ_CHECK(error.code == code);
    FUZZ_CHECK(std::memchr(error.message, 0, sizeof error.message) != nullptr);
    FUZZ_CHECK((error.message[0] == '\0') == (code == ORVANTA_OK));
}

void checkMoves(const PathHandle& path, std::size_t keyframes) {
    const std::vector<orvanta_move> moves = movesOf(path);
    FUZZ_CHECK(moves.size() <= keyframes && moves.empty() == (keyframes == 0));
    for (std::size_t i = 0; i < moves.size(); ++i) {
        FUZZ_CHECK(moves[i].start <= moves[i].stop);
        FUZZ_CHECK(i + 1 == moves.size() || moves[i].stop <= moves[i + 1].start);
        FUZZ_CHECK(moves[i].keyframe >= 0 && static_cast<std::size_t>(moves[i].keyframe) < keyframes);
        orvanta_frame frame{};
        FUZZ_CHECK(orvanta_path_frames_at_ticks(path.get(), &moves[i].start, 1, &frame, nullptr) == ORVANTA_OK);
        const orvanta_frame& expected = moves[i].stop > moves[i].start ? moves[i].from : moves[i].to;
        FUZZ_CHECK(frame.width == expected.width && frame.left == expected.left);
    }
}

void checkFrames(const RequestHandle& request, const ResultHandle& result, long long time) {
    orvanta_table table{};
    FUZZ_CHECK(orvanta_result_table(result.get(), ORVANTA_TABLE_KEYFRAMES, &table, nullptr) == ORVANTA_OK);
    orvanta_error error = emptyError();
    orvanta_path* made = nullptr;
    const std::int32_t code =
        orvanta_path_create(request.get(), table.rows, table.count, table.stride, nullptr, &made, &error);
    checkError(error, code);
    const PathHandle path(made);
    FUZZ_CHECK((code == ORVANTA_OK) == (path != nullptr));
    FUZZ_CHECK(code == ORVANTA_OK || code == ORVANTA_BAD_ARGUMENT);
    if (path != nullptr) {
        const std::int64_t tick = time;
        orvanta_frame frame{};
        FUZZ_CHECK(orvanta_path_frames_at_ticks(path.get(), &tick, 1, &frame, nullptr) == ORVANTA_OK);
        FUZZ_CHECK(frame.width > 0.0 && frame.height > 0.0);
        checkMoves(path, table.count);
    }
}

void checkStages(const ResultHandle& result) {
    const auto check = [&](std::int32_t table, std::int32_t spaceTable) {
        const std::size_t spaces = rowsOf<orvanta_space>(result, spaceTable).size();
        std::size_t next = 0;
        for (const orvanta_slice& slice : rowsOf<orvanta_slice>(result, table)) {
            FUZZ_CHECK(slice.first_space == next);
            next += slice.space_count;
            FUZZ_CHECK(next <= spaces);
        }
        FUZZ_CHECK(next == spaces);
        return rowsOf<orvanta_slice>(result, table).size();
    };
    check(ORVANTA_TABLE_SLICES, ORVANTA_TABLE_SLICE_SPACES);
    const std::size_t shots = check(ORVANTA_TABLE_SHOTS, ORVANTA_TABLE_SHOT_SPACES);
    for (const orvanta_keyframe& keyframe : rowsOf<orvanta_keyframe>(result, ORVANTA_TABLE_KEYFRAMES)) {
        FUZZ_CHECK(keyframe.shot == -1 || static_cast<std::size_t>(keyframe.shot) < shots);
        FUZZ_CHECK(keyframe.shot == -1 || orvanta_mode_name(keyframe.shot_mode)[0] != '\0');
    }
}

void checkPlan(const Params& params, const RequestHandle& request, std::int32_t engine, const DecodedRequest& decoded) {
    const std::uint32_t questions =
        decoded.cancelAfter == 0 ? kLongRunSteps : std::min(decoded.cancelAfter, kLongRunSteps);
    const Answer expected = ask([&] {
        if (engine == ORVANTA_ENGINE_VOTING) {
            return OrvantaVotingAlgorithm().calcOrvantaKeyframes(params, nullptr);
        }
        Patience patience(questions);
        return OrvantaWorker().calcOrvantaKeyframes(params, &patience);
    });

    Patience patience(questions);
    orvanta_run run{};
    run.struct_size = sizeof run;
    run.keep_stages = 1;
    run.user_data = &patience;
    if (engine == ORVANTA_ENGINE_VALUE) {
        run.cancelled = [](void* data) -> std::int32_t { return static_cast<Patience*>(data)->isCancelled() ? 1 : 0; };
    }
    orvanta_result* made = nullptr;
    orvanta_error error = emptyError();
    const std::int32_t code = orvanta_plan(request.get(), &run, &made, &error);
    const ResultHandle result(made);
    if (code == ORVANTA_NO_MEMORY || expected.outOfMemory) {
        return;
    }
    checkError(error, code);
    FUZZ_CHECK(code == (expected.code ? static_cast<std::int32_t>(*expected.code) : ORVANTA_OK));
    FUZZ_CHECK((result != nullptr) == (code == ORVANTA_OK || code == ORVANTA_NO_KEYFRAMES));
    if (result == nullptr) {
        return;
    }
    const auto keyframes = rowsOf<orvanta_keyframe>(result, ORVANTA_TABLE_KEYFRAMES);
    FUZZ_CHECK(keyframes.size() == (expected.keyframes == nullptr ? 0 : expected.keyframes->size()));
    for (std::size_t i = 0; i < keyframes.size(); ++i) {
        const OV_TIME_RECT& other = (*expected.keyframes)[i];
        const orvanta_rect& rect = keyframes[i].rect;
        FUZZ_CHECK(keyframes[i].time == other.time);
        FUZZ_CHECK((Rectangle{rect.left, rect.right, rect.top, rect.bottom} == other.rect));
    }
    checkStages(result);
    checkFrames(request, result, decoded.queryTime);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteReader bytes(data, size);
    const DecodedRequest decoded = decodeRequest(bytes);
    const Params& params = decoded.params;
    for (const std::int32_t engine : {ORVANTA_ENGINE_VALUE, ORVANTA_ENGINE_VOTING}) {
        std::int32_t code = ORVANTA_OK;
        const RequestHandle request = requestOf(params, engine, &code);
        FUZZ_CHECK(code == (isSorted(params) ? ORVANTA_OK : ORVANTA_NOT_SORTED));
        if (code == ORVANTA_OK) {
            checkPlan(params, request, engine, decoded);
        }
    }
    return 0;
}
