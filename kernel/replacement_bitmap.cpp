// Building and committing the new form of a bitmap.
#include "kernel/replacement_bitmap.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "kernel/pixel_format.h"

namespace vn {

bool HoldsItsPixels(const BitmapHandle* bitmap) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return false;
  int32_t bits = 32;
  WithDepth(bitmap->BitsPerPixel, [&](auto depth) { bits = depth; });
  return SizeFits(bitmap->Width, bitmap->Height, bits) &&
         bitmap->BytesPerLine >=
             StrideOf(static_cast<uint32_t>(bitmap->Width), static_cast<uint32_t>(bits));
}

void CarryOver(BitmapHandle* derived, const BitmapHandle& source) {
  derived->ViewOrigin = source.ViewOrigin;
  derived->CarriedTag = source.CarriedTag;
  std::copy(std::begin(source.CarriedPair), std::end(source.CarriedPair), derived->CarriedPair);
  std::copy(std::begin(source.CarriedQuad), std::end(source.CarriedQuad), derived->CarriedQuad);
  derived->Flags |= source.Flags & FLAG_CARRIED_1000;
  derived->XResolution = source.XResolution;
  derived->YResolution = source.YResolution;
}

VnStatus ReplacementBitmap::Create(int32_t width, int32_t height, int32_t bitsPerPixel) {
  return Vn_DupBitmapNewDim(&record_, original_, static_cast<uint32_t>(width),
                            static_cast<uint32_t>(height), bitsPerPixel, DUP_ALLOCATE);
}

VnStatus ReplacementBitmap::CreateDerived(int32_t bitsPerPixel) {
  shares_ = false;
  const VnStatus status = Vn_InitBitmap(&record_, static_cast<uint32_t>(original_->Width),
                                        static_cast<uint32_t>(original_->Height), bitsPerPixel);
  if (status != OK) return status;
  CarryOver(&record_, *original_);
  return Vn_AllocateBitmap(&record_, STORAGE_AUTO);
}

void ReplacementBitmap::Commit() {
  if (shares_) {
    Vn_FreeImage(original_, 0);
  } else {
    record_.Region = std::exchange(original_->Region, nullptr);
    Vn_FreeBitmap(original_);
  }
  Vn_CopyBitmapHandle(original_, &record_);
  record_ = {};
}

}  // namespace vn
