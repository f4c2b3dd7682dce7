// Building and committing the new form of a bitmap.
#include "kernel/replacement_bitmap.h"

namespace vn {

namespace {

// The size computations of a record wrap in 32 bits. A row loop over such a record would leave its
// storage, so it is not made.
bool SizeFits(int32_t width, int32_t height, int32_t bitsPerPixel) {
  if (width < 0 || height < 0 || bitsPerPixel < 0) return false;
  const uint64_t rowBits = static_cast<uint64_t>(width) * static_cast<uint32_t>(bitsPerPixel);
  if (rowBits > UINT32_MAX - 31) return false;
  return (rowBits + 31) / 32 * 4 * static_cast<uint32_t>(height) <= UINT32_MAX;
}

}  // namespace

VnStatus ReplacementBitmap::Create(int32_t width, int32_t height, int32_t bitsPerPixel) {
  if (!SizeFits(width, height, bitsPerPixel)) return ERR_NO_MEMORY;
  return Vn_DupBitmapNewDim(&record_, original_, static_cast<uint32_t>(width),
                            static_cast<uint32_t>(height), bitsPerPixel, DUP_ALLOCATE);
}

void ReplacementBitmap::Commit() {
  Vn_FreeImage(original_, 0);
  Vn_CopyBitmapHandle(original_, &record_);
  record_ = {};
}

}  // namespace vn
