// Blocks of the C library, large ones in huge pages where the system has them.
#ifndef VNCORE_PLATFORM_HEADLESS_PLAIN_MEMORY_H
#define VNCORE_PLATFORM_HEADLESS_PLAIN_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace headless {

// `bytes` bytes (at least one), for std::free and std::realloc. Null when memory fails.
void* PlainMemory(size_t bytes, bool zeroed);

struct FreePlainMemory {
  void operator()(void* address) const { std::free(address); }
};
using ZeroedBytes = std::unique_ptr<uint8_t[], FreePlainMemory>;

// Bytes that are all zero. Throws when memory fails.
ZeroedBytes MakeZeroedBytes(size_t bytes);

}  // namespace headless

#endif
