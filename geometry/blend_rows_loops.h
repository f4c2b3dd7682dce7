// The vector loops under blend_rows.h. Each does whole vectors from the start of a row and returns
// the number of bytes done; the rest is for the plain loop.
#ifndef VNCORE_GEOMETRY_BLEND_ROWS_LOOPS_H
#define VNCORE_GEOMETRY_BLEND_ROWS_LOOPS_H

#include <cstddef>
#include <cstdint>

namespace vn {

// `multiplier` and `shift` divide by the span, or by the number of rows.
using BlendLoop = size_t (*)(const uint8_t* a, const uint8_t* b, uint32_t step, uint32_t span,
                             uint16_t multiplier, uint16_t shift, uint8_t* target, size_t bytes);
using SumLoop = size_t (*)(const uint8_t* row, bool first, uint16_t* sums, size_t bytes);
using AverageLoop = size_t (*)(const uint16_t* sums, uint16_t multiplier, uint16_t shift,
                               uint8_t* target, size_t bytes);

constexpr uint32_t kMostVectorSpan = 127;  // weights are signed bytes

size_t BlendRowsAvx2(const uint8_t* a, const uint8_t* b, uint32_t step, uint32_t span,
                     uint16_t multiplier, uint16_t shift, uint8_t* target, size_t bytes);
size_t SumRowAvx2(const uint8_t* row, bool first, uint16_t* sums, size_t bytes);
size_t AverageSumsAvx2(const uint16_t* sums, uint16_t multiplier, uint16_t shift, uint8_t* target,
                       size_t bytes);

}  // namespace vn

#endif
