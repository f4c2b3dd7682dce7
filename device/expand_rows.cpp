// Widening loops. Both write whole words and let the next pixel overwrite the excess, so that a
// pixel costs one store; the last pixel of a row is written by bytes.
#include "device/expand_rows.h"

#include <cstring>

#include "kernel/pixel_format.h"

namespace vn {
namespace {

void StoreLong(uint8_t* at, uint32_t value) { std::memcpy(at, &value, sizeof value); }

uint32_t LoadLong(const uint8_t* at) {
  uint32_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

// The three fields of a word as bytes, each widened, the low field lowest.
uint32_t WidenWord(uint32_t word) {
  const uint32_t fields = (word & 0x1F) | (word & 0x3E0) << 3 | (word & 0x7C00) << 6;
  return fields << 3 | (fields >> 2 & 0x070707);
}

// `pixel(x)` is source pixel x with its three bytes lowest.
template <class Pixel>
void Expand(uint8_t* destination, int32_t first, int32_t last, Pixel pixel) {
  if (last <= first) return;
  const auto end = static_cast<size_t>(last) - 1;
  auto x = static_cast<size_t>(first);
  for (; x < end; ++x, destination += 3)
    StoreLong(destination, pixel(x));
  const uint32_t tail = pixel(x);
  std::memcpy(destination, &tail, 3);
}

}  // namespace

void ExpandRow16(uint8_t* destination, const uint8_t* source, const BitmapHandle*, int32_t first,
                 int32_t last) {
  Expand(destination, first, last, [=](size_t x) { return WidenWord(LoadWord(source + 2 * x)); });
}

void ExpandRow32(uint8_t* destination, const uint8_t* source, const BitmapHandle*, int32_t first,
                 int32_t last) {
  Expand(destination, first, last, [=](size_t x) { return LoadLong(source + 4 * x); });
}

ExpandRow SelectExpandRow(int32_t sourceBits) {
  if (sourceBits == 16) return ExpandRow16;
  return sourceBits == 32 ? ExpandRow32 : nullptr;
}

}  // namespace vn
