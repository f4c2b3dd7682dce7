// Writing of indexes, per format.
#include "color/dither_blocks.h"

#include <cstring>

#include "color/index_rows.h"
#include "color/index_rows_avx2.h"
#include "kernel/vector.h"

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

#ifdef VNCORE_HAVE_AVX2
template <int Bits, IndexVectors* Vectors>
void StoreByVectors(const uint8_t* indexes, size_t count, uint8_t* target) {
  const size_t done = Vectors(indexes, count, target);
  StoreIndexes<Bits>(indexes + done, count - done, target + done * Bits / 8);
}
#endif

}  // namespace

WriteIndexesProc SelectWriteIndexes(int32_t bits) {
  switch (bits) {
    case 1:
      return VNCORE_VECTOR_FORM(StoreIndexes<1>, (StoreByVectors<1, WriteIndexes1Avx2>));
    case 4:
      return VNCORE_VECTOR_FORM(StoreIndexes<4>, (StoreByVectors<4, WriteIndexes4Avx2>));
    default:
      return StoreIndexes<8>;
  }
}

}  // namespace vn
