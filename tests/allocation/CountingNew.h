// A global operator new that counts, and that fails when it is told to. Only for an executable of its own: it replaces
// the allocation of everything in the process.
#pragma once

#include <cstdint>

namespace OrvantaNS::testing {

/// Watches the allocations of the current thread while it lives. One at a time.
class AllocationWatch {
public:
    /// Fails allocation number `failAt`, counted from 1; 0 fails none.
    explicit AllocationWatch(std::uint64_t failAt);
    ~AllocationWatch();
    AllocationWatch(const AllocationWatch&) = delete;
    AllocationWatch& operator=(const AllocationWatch&) = delete;

    /// Allocations asked for so far, the failed one included.
    std::uint64_t asked() const;
    /// Blocks that were allocated under this watch and are not yet freed.
    std::int64_t outstanding() const;
    /// True once an allocation has been refused.
    bool hasFailed() const;
};

} // namespace OrvantaNS::testing
