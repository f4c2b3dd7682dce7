// Writing of indexes, per format.
#include "color/dither_blocks.h"

#include <cstring>

#include "color/index_rows.h"

namespace vn {
namespace {

template <int Bits>
void StoreIndexes(const uint8_t* indexes, size_t count, uint8_t* target) {
  if constexpr (Bits == 8) {
    std::memcpy(target, indexes, count);
  } else {
    constexpr uint32_t kMask = (1u << Bits) - 1;
    WriteIndexes<Bits>(target, count, [=](size_t x) { return indexes[x] & kMask; });
  }
}

}  // namespace

WriteIndexesProc SelectWriteIndexes(int32_t bits) {
  switch (bits) {
    case 1:
      return StoreIndexes<1>;
    case 4:
      return StoreIndexes<4>;
    default:
      return StoreIndexes<8>;
  }
}

}  // namespace vn
