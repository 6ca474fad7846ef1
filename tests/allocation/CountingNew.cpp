#include "CountingNew.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

// Each block carries, ahead of what the caller gets, the number of the watch under which it was allocated.
constexpr std::size_t kHeader = alignof(std::max_align_t);
static_assert(kHeader >= sizeof(std::uint64_t));

struct Counters {
    std::uint64_t watch = 0; // 0: nobody watches
    std::uint64_t failAt = 0;
    std::uint64_t asked = 0;
    std::int64_t outstanding = 0;
    bool failed = false;
};

thread_local Counters t_counters;
thread_local std::uint64_t t_watches = 0;

// Null when the allocation is to fail, or does.
void* allocate(std::size_t size) noexcept {
    Counters& counters = t_counters;
    if (counters.watch != 0) {
        ++counters.asked;
        if (counters.asked == counters.failAt) {
            counters.failed = true;
            return nullptr;
        }
    }
    auto* block = static_cast<std::byte*>(std::malloc(size + kHeader));
    if (block == nullptr) {
        return nullptr;
    }
    *reinterpret_cast<std::uint64_t*>(block) = counters.watch;
    if (counters.watch != 0) {
        ++counters.outstanding;
    }
    return block + kHeader;
}

void release(void* pointer) noexcept {
    if (pointer == nullptr) {
        return;
    }
    std::byte* block = static_cast<std::byte*>(pointer) - kHeader;
    if (t_counters.watch != 0 && *reinterpret_cast<std::uint64_t*>(block) == t_counters.watch) {
        --t_counters.outstanding;
    }
    std::free(block);
}

void* allocateOrThrow(std::size_t size) {
    void* pointer = allocate(size);
    if (pointer == nullptr) {
        throw std::bad_alloc();
    }
    return pointer;
}

} // namespace

// The library has no over-aligned types, so the aligned forms stay the standard ones.
void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* pointer) noexcept { release(pointer); }
void operator delete[](void* pointer) noexcept { release(pointer); }
void operator delete(void* pointer, std::size_t) noexcept { release(pointer); }
void operator delete[](void* pointer, std::size_t) noexcept { release(pointer); }
void operator delete(void* pointer, const std::nothrow_t&) noexcept { release(pointer); }
void operator delete[](void* pointer, const std::nothrow_t&) noexcept { release(pointer); }

namespace OrvantaNS::testing {

AllocationWatch::AllocationWatch(std::uint64_t failAt) { t_counters = {++t_watches, failAt, 0, 0, false}; }

AllocationWatch::~AllocationWatch() { t_counters.watch = 0; }

std::uint64_t AllocationWatch::asked() const { return t_counters.asked; }

std::int64_t AllocationWatch::outstanding() const { return t_counters.outstanding; }

bool AllocationWatch::hasFailed() const { return t_counters.failed; }

} // namespace OrvantaNS::testing
