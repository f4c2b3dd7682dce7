// Duplication: the record alone, a record of other dimensions, the pixels, the whole bitmap.
#include <algorithm>
#include <iterator>

#include <vncore/vncore.h>
#include "kernel/guards.h"
#include "kernel/row_view.h"
#include "kernel/scratch_buffer.h"
#include "region/region_motion.h"

namespace {

constexpr uint32_t kCarriedFlags = FLAG_CARRIED_0080 | FLAG_GRAY_PALETTE | FLAG_OPTIMIZED_PALETTE |
                                   FLAG_FIXED_PALETTE | FLAG_CUSTOM_PALETTE | FLAG_CARRIED_1000 |
                                   FLAG_PALETTE_INDEXES;

bool HasStorage(const BitmapHandle* bitmap) { return bitmap && (bitmap->Flags & FLAG_ALLOCATED); }

void CopyCarriedFields(BitmapHandle* destination, const BitmapHandle& source) {
  destination->ViewOrigin = source.ViewOrigin;
  destination->DibHeader = source.DibHeader;
  std::copy_n(source.DibColors, std::size(source.DibColors), destination->DibColors);
  destination->CarriedTag = source.CarriedTag;
  std::copy_n(source.CarriedPair, std::size(source.CarriedPair), destination->CarriedPair);
  std::copy_n(source.CarriedQuad, std::size(source.CarriedQuad), destination->CarriedQuad);
  destination->Flags = (destination->Flags & ~kCarriedFlags) | (source.Flags & kCarriedFlags);
  destination->XResolution = source.XResolution;
  destination->YResolution = source.YResolution;
}

}  // namespace

void VN_CALL Vn_CopyBitmapHandle(BitmapHandle* destination, const BitmapHandle* source) {
  *destination = *source;
}

VnStatus VN_CALL Vn_DupBitmapNewDim(BitmapHandle* destination, BitmapHandle* source, uint32_t width,
                                    uint32_t height, int32_t bitsPerPixel, uint32_t mode) {
  if (!destination || !HasStorage(source)) return ERR_NO_BITMAP;
  Vn_InitBitmap(destination, width, height, bitsPerPixel);
  CopyCarriedFields(destination, *source);
  if (mode & DUP_ALLOCATE) {
    const VnStatus status = Vn_AllocateBitmap(destination, STORAGE_AUTO);
    if (status != OK) return status;
  }
  const bool ownPalettes = mode & DUP_PALETTE;
  destination->Palette = ownPalettes ? Vn_DupPalette(source->Palette) : source->Palette;
  destination->PaintPalette =
      ownPalettes ? Vn_DupPalette(source->PaintPalette) : source->PaintPalette;
  if (!(mode & DUP_REGION)) {
    destination->Region = source->Region;
    return OK;
  }
  const VnStatus status = vn::CopyRegion(destination, source, 0, 0);
  if (status != OK) {
    // The caller has no way to tell shared palettes from its own, so nothing is left in the record.
    if (!ownPalettes) destination->Palette = destination->PaintPalette = nullptr;
    Vn_FreeBitmap(destination);
  }
  return status;
}

VnStatus VN_CALL Vn_CopyBitmapData(BitmapHandle* destination, BitmapHandle* source) {
  if (!HasStorage(destination) || !HasStorage(source)) return ERR_NO_BITMAP;
  // Bitmaps of unlike size are the caller's mistake; what they have in common is copied then.
  const int32_t rows = std::min(source->Height, destination->Height);
  const uint32_t count = std::min(source->BytesPerLine, destination->BytesPerLine);
  vn::ScratchBuffer<uint8_t> buffer(source->BytesPerLine, vn::Fill::kZero);
  if (!buffer) return ERR_NO_MEMORY;
  const vn::BitmapLock lockSource(source);
  const vn::BitmapLock lockDestination(destination);
  vn::RowView view(source, buffer.data());
  for (int32_t i = 0; i < rows; ++i) {
    const auto row = static_cast<uint32_t>(i);
    Vn_PutBitmapRow(destination, view.Read(row), row, count);
  }
  return OK;
}

VnStatus VN_CALL Vn_CopyBitmap(BitmapHandle* destination, BitmapHandle* source) {
  if (!source) return ERR_NO_BITMAP;
  VnStatus status = Vn_DupBitmapNewDim(destination, source, static_cast<uint32_t>(source->Width),
                                       static_cast<uint32_t>(source->Height), source->BitsPerPixel,
                                       DUP_ALLOCATE | DUP_PALETTE | DUP_REGION);
  if (status != OK) return status;
  status = Vn_CopyBitmapData(destination, source);
  if (status != OK) Vn_FreeBitmap(destination);
  return status;
}
