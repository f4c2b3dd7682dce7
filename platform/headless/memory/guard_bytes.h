// Bytes behind a run of pages that a sanitizer build must not see touched.
#ifndef VNCORE_PLATFORM_HEADLESS_GUARD_BYTES_H
#define VNCORE_PLATFORM_HEADLESS_GUARD_BYTES_H

#include <cstddef>

#ifdef __SANITIZE_ADDRESS__
#define VNCORE_GUARDED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VNCORE_GUARDED
#endif
#endif
#ifdef VNCORE_GUARDED
#include <sanitizer/asan_interface.h>
#endif

namespace headless {

#ifdef VNCORE_GUARDED
// Every run is longer than asked for by at least as much.
inline constexpr size_t kGuardBytes = 4096;
inline void ForbidBytes(void* at, size_t count) { __asan_poison_memory_region(at, count); }
inline void AllowBytes(void* at, size_t count) { __asan_unpoison_memory_region(at, count); }
#else
inline constexpr size_t kGuardBytes = 0;
inline void ForbidBytes(void*, size_t) {}
inline void AllowBytes(void*, size_t) {}
#endif

}  // namespace headless

#endif
