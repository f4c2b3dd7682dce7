// Global memory, seen from outside.
#ifndef VNCORE_PLATFORM_HEADLESS_GLOBAL_MEMORY_H
#define VNCORE_PLATFORM_HEADLESS_GLOBAL_MEMORY_H

#include <cstdint>

namespace headless {

// Blocks of GlobalAlloc that are alive.
uint32_t CountGlobalBlocks();

}  // namespace headless

#endif
