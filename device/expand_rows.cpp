// Widening loops: the row converters' own.
#include "device/expand_rows.h"

#include "color/color_rows.h"

namespace vn {
namespace {

template <int Bits>
void Expand(uint8_t* destination, const uint8_t* source, int32_t first, int32_t last) {
  if (last <= first) return;
  static_assert(Bits == 16 || Bits == 32);
  SelectColorRow(Bits, 24, false)(source + static_cast<ptrdiff_t>(first) * (Bits / 8), destination,
                                  static_cast<size_t>(last - first), nullptr);
}

}  // namespace

void ExpandRow16(uint8_t* destination, const uint8_t* source, const BitmapHandle*, int32_t first,
                 int32_t last) {
  Expand<16>(destination, source, first, last);
}

void ExpandRow32(uint8_t* destination, const uint8_t* source, const BitmapHandle*, int32_t first,
                 int32_t last) {
  Expand<32>(destination, source, first, last);
}

ExpandRow SelectExpandRow(int32_t sourceBits) {
  if (sourceBits == 16) return ExpandRow16;
  return sourceBits == 32 ? ExpandRow32 : nullptr;
}

}  // namespace vn
