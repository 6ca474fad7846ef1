// Several recordings in one call, each in a process of its own: what goes wrong with one touches no other.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "terminal/ExitStatus.h"

namespace OrvantaNS::command {

/// One recording and the file that its result goes to.
struct BatchItem {
    std::string recording;
    std::string output;
};

/// --out-dir and --jobs.
struct BatchArguments {
    std::string folder; ///< Empty: no batch.
    int jobs = 0;       ///< Processes side by side; 0 for as many as there are processors.

    void addTo(CLI::App& app);
    /// One item for each recording: its name without the ending (or both, for x.jsonl.gz), with `ending`, in the folder, which
    /// is made when it is missing. Throws `OptionError` when two results would have one name, and `OutputError` when the
    /// folder cannot be made.
    std::vector<BatchItem> items(const std::vector<std::string>& recordings, const std::string& ending) const;
};

/// Does `work` for every item in a process of its own, `jobs` of them side by side. `work` returns what to say of the result,
/// such as "12 keyframes", or throws. Says a line for each on the standard output as it ends, and lists the failures at the
/// end on the standard error. Ctrl-C ends them all. Returns the status of the first item that failed, in the items' order.
/// Throws `Interrupted`. On systems without processes to fork (Windows) the items are done one after the other.
ExitStatus runBatch(const std::vector<BatchItem>& items, int jobs,
                    const std::function<std::string(const BatchItem&)>& work);

} // namespace OrvantaNS::command
