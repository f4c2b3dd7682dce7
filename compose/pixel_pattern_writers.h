// The loops of a pixel pattern.
#ifndef VNCORE_COMPOSE_PIXEL_PATTERN_WRITERS_H
#define VNCORE_COMPOSE_PIXEL_PATTERN_WRITERS_H

#include <cstddef>
#include <cstdint>

namespace vn {

inline constexpr size_t kPatternVector = 32;
inline constexpr size_t kPatternPeriod = 96;  // whole pixels of any size, and whole vectors

// Writes `count` bytes of the pattern to `at`, from its start on. `pattern` holds one period and a
// vector more, on a vector's boundary.
using PatternWriter = void (*)(const uint8_t* pattern, uint8_t* at, size_t count);
void WritePatternPeriods(const uint8_t* pattern, uint8_t* at, size_t count);
void WritePatternAvx2(const uint8_t* pattern, uint8_t* at, size_t count);

}  // namespace vn

#endif
