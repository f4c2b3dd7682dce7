// Memory that the machine has left.
#ifndef VNCORE_PLATFORM_HEADLESS_FREE_MEMORY_H
#define VNCORE_PLATFORM_HEADLESS_FREE_MEMORY_H

#include <cstdint>

namespace headless {

// Bytes of memory that can be used without swapping; a huge number when nobody can tell.
uint64_t FreeMemory();

}  // namespace headless

#endif
