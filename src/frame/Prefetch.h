// A hint to the processor, for walks that jump about in more memory than its caches hold.
#pragma once

namespace OrvantaNS {

/// Says that the memory at the address will be read soon. Changes nothing but time; the address may be any.
inline void prefetch([[maybe_unused]] const void* address) {
#if defined(__GNUC__)
    __builtin_prefetch(address);
    // Without it, gcc takes a function that does nothing but this for one without an effect, and drops the calls to it.
    __asm__ volatile("");
#endif
}

} // namespace OrvantaNS
