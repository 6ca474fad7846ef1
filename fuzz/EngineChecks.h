// What holds for every answer of an engine, whatever it was asked.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "OrvantaException.h"
#include "OrvantaRecords.h"
#include "Params.h"
#include "ProgressReporter.h"

namespace OrvantaNS::fuzz {

using Keyframes = std::shared_ptr<std::vector<OV_TIME_RECT>>;

/// Counts how often it is asked, and stops the run when told to or when the run takes more steps than it may.
class QuestionCounter : public ProgressReporter {
public:
    /// Asks to stop at question `cancelAfter` (0: never). A run that goes on beyond `budget` aborts the process.
    QuestionCounter(std::uint64_t cancelAfter, std::uint64_t budget) : cancelAfter_(cancelAfter), budget_(budget) {}

    bool isCancelled() override;
    void reportProgress(double percent) override;

    std::uint64_t steps() const { return steps_; }
    bool hasCancelled() const { return hasCancelled_; }

private:
    std::uint64_t cancelAfter_;
    std::uint64_t budget_;
    std::uint64_t steps_ = 0;
    std::uint64_t reports_ = 0;
    bool hasCancelled_ = false;
};

/// Either the keyframes of a question or the code with which it failed.
struct Answer {
    Keyframes keyframes;
    std::optional<OVERR_CODES> code;
    bool outOfMemory = false;

    bool operator==(const Answer& other) const;
};

/// Asks, and aborts the process on any exception but the library's own, with a code and text that belong together,
/// and a failed allocation.
Answer ask(const std::function<Keyframes()>& question);

/// True when the frame has the shape of the target: its size is what whole pixels allow.
bool hasTargetAspect(const Rectangle& frame, const Params& params);

/// True when the frame lies within the local region in every dimension in which it is not larger.
bool liesInRegion(const Rectangle& frame, const Params& params);

} // namespace OrvantaNS::fuzz
