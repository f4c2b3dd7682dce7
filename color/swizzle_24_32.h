// Rows of 24 and 32 bits turned into each other in place: bytes change places and nothing else, so
// these loops run near the speed of memory, with the machine's byte shuffles where it has them.
// `swap` exchanges red and blue on the way.
#ifndef VNCORE_COLOR_SWIZZLE_24_32_H
#define VNCORE_COLOR_SWIZZLE_24_32_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Widens from the last pixel to the first; the fourth byte becomes 0.
void Widen24To32(uint8_t* row, size_t width, bool swap);
// Narrows from the first pixel to the last; bytes beyond 3 * width keep what they held.
void Narrow32To24(uint8_t* row, size_t width, bool swap);
// Exchanges red and blue.
void SwapRedBlue24(uint8_t* row, size_t width);
// Exchanges red and blue; the fourth byte stays.
void SwapRedBlue32(uint8_t* row, size_t width);

}  // namespace vn

#endif
