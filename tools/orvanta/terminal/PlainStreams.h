// Standard streams through which bytes and UTF-8 pass as they are.
#pragma once

namespace OrvantaNS::command {

/// Makes the standard streams, for as long as it lives, take what is written and give what is there on every system alike:
/// Windows ends lines in two characters otherwise, and its console shows neither UTF-8 nor a line that is drawn again.
class PlainStreams {
public:
    PlainStreams();
#if defined(_WIN32)
    ~PlainStreams();
    PlainStreams(const PlainStreams&) = delete;
    PlainStreams& operator=(const PlainStreams&) = delete;

private:
    // The console outlives the program, and is left as it was found.
    unsigned codePage_ = 0;  ///< 0: not changed.
    unsigned long mode_ = 0; ///< 0: not changed.
#endif
};

} // namespace OrvantaNS::command
