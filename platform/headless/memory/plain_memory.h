// Blocks of the C library, large ones in huge pages where the system has them.
#ifndef VNCORE_PLATFORM_HEADLESS_PLAIN_MEMORY_H
#define VNCORE_PLATFORM_HEADLESS_PLAIN_MEMORY_H

#include <cstddef>

namespace headless {

// `bytes` bytes (at least one), for std::free and std::realloc. Null when memory fails.
void* PlainMemory(size_t bytes, bool zeroed);

}  // namespace headless

#endif
