// A plain pair of ends, in ticks or in seconds.
#pragma once

namespace OrvantaNS {

/// An interval of time: signed 64-bit ticks or double seconds. Nothing tests that `start` lies before `stop`.
template <typename T> struct Interval_Type {
    T start{}; ///< First moment.
    T stop{};  ///< Last moment; each user of an interval says whether it is included.
};

} // namespace OrvantaNS
