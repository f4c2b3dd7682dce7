// Memory that the machine has left.
#ifndef VNCORE_PLATFORM_HEADLESS_FREE_MEMORY_H
#define VNCORE_PLATFORM_HEADLESS_FREE_MEMORY_H

#include <cstdint>

namespace headless {

// Whether so much memory can be used without swapping. The system promises more than it has and
// ends a process that uses it, so large requests ask first; small ones fit unasked.
bool FitsInMemory(uint64_t bytes);

}  // namespace headless

#endif
