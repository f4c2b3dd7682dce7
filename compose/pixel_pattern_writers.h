// The loops of a pixel pattern.
#ifndef VNCORE_COMPOSE_PIXEL_PATTERN_WRITERS_H
#define VNCORE_COMPOSE_PIXEL_PATTERN_WRITERS_H

#include <cstddef>
#include <cstdint>

namespace vn {

inline constexpr size_t kPatternVector = 32;
inline constexpr size_t kPatternPeriod = 96;  // whole pixels of any size, and whole vectors
inline constexpr size_t kCacheLine = 64;

// Writes `count` bytes of the pattern to `at`, from its start on. `pattern` holds one period and
// what a start anywhere in its first line, and then in a vector, reads behind it.
inline constexpr size_t kPatternBytes = kPatternPeriod + kCacheLine + kPatternVector;
using PatternWriter = void (*)(const uint8_t* pattern, uint8_t* at, size_t count);
void WritePatternPeriods(const uint8_t* pattern, uint8_t* at, size_t count);
void WritePatternAvx2(const uint8_t* pattern, uint8_t* at, size_t count);
// Past the caches, except for short stretches.
void StreamPatternAvx2(const uint8_t* pattern, uint8_t* at, size_t count);

}  // namespace vn

#endif
