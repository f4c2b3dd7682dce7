// Vn_UnderlayBitmap: a texture as brightness under a picture.
#include <algorithm>
#include <cstring>

#include <vncore/vncore.h>
#include "color/palettes.h"
#include "compose/row_segments.h"
#include "compose/underlay_rows.h"
#include "kernel/guards.h"
#include "kernel/owned_bitmap.h"
#include "kernel/pixel_format.h"
#include "kernel/replacement_bitmap.h"
#include "kernel/row_position.h"
#include "kernel/scratch_buffer.h"
#include "kernel/vector.h"

namespace {

using namespace vn;

bool HasStorage(const BitmapHandle* bitmap) { return bitmap && (bitmap->Flags & FLAG_ALLOCATED); }

uint32_t RowOfLine(const BitmapHandle& bitmap, uint32_t line) {
  return bitmap.ViewOrigin == VIEW_BOTTOM_FIRST ? static_cast<uint32_t>(bitmap.Height) - 1 - line
                                                : line;
}

// The texture in gray, in the size of `like` when it is to be stretched. What is sized here is only
// pixels: the texture's own palettes and region stay aside, whatever fails.
VnStatus MakeTexture(BitmapHandle* texture, BitmapHandle* underlay, const BitmapHandle& like,
                     uint32_t mode) {
  VnStatus status = Vn_CopyBitmap(texture, underlay);
  if (status == OK) status = Vn_GrayScaleBitmap(texture);
  const bool fits = texture->Width == like.Width && texture->Height == like.Height;
  if (status != OK || mode == UNDERLAY_TILE || fits) return status;
  ReplacementBitmap sized(texture);
  status = sized.Create(like.Width, like.Height, 8);
  if (status == OK) status = Vn_ResizeBitmap(texture, sized.get());
  if (status == OK) sized.Commit();
  return status;
}

// A run of dithering rows of 24 bits back to the palette of a bitmap of up to 8 bits. The run hangs
// on a record of its own; it is the bitmap's own run, though, that is closed in the end: callers
// have it so.
class WayBack {
 public:
  explicit WayBack(BitmapHandle* bitmap) : bitmap_(bitmap) {}
  WayBack(const WayBack&) = delete;
  WayBack& operator=(const WayBack&) = delete;
  ~WayBack() {
    if (record_.DitherState) Vn_StopDithering(bitmap_);
    Vn_StopDithering(&record_);
  }

  VnStatus Start() {
    Vn_InitBitmap(&record_, static_cast<uint32_t>(bitmap_->Width),
                  static_cast<uint32_t>(bitmap_->Height), 24);
    const auto count = static_cast<uint32_t>(bitmap_->ColorCount);
    if (count > kMaxColors) return ERR_NO_MEMORY;
    Vn_GetPaletteEntries(ActivePalette(*bitmap_), 0, count, record_.DibColors);
    record_.DitherMethod = DITHER_FLOYD_STEINBERG;
    return Vn_StartDithering(&record_, record_.DibColors, count) == OK
               ? static_cast<VnStatus>(OK)
               : static_cast<VnStatus>(ERR_NO_MEMORY);
  }
  void Line(uint8_t* row) { Vn_DitherLine(&record_, row, row); }

 private:
  BitmapHandle* bitmap_;
  BitmapHandle record_{};
};

class Underlay {
 public:
  Underlay(BitmapHandle* destination, BitmapHandle* texture)
      : destination_(destination),
        texture_(texture),
        width_(static_cast<uint32_t>(std::max(destination->Width, 0))),
        bits_(destination->BitsPerPixel),
        shade_(VNCORE_VECTOR_FORM(ShadePlain, ShadeAvx2)),
        segments_(destination),
        // Cleared: the bits of a last byte beyond the row's pixels are dithered around.
        row_(std::max(destination->BytesPerLine, StrideOf(width_, 24)), Fill::kZero),
        grays_(std::max(texture->BytesPerLine, width_), Fill::kZero),
        wayBack_(destination) {}

  VnStatus Run() {
    if (!segments_ || !row_ || !grays_) return ERR_NO_MEMORY;
    const ColorForm colors(destination_);
    VnStatus status = bits_ <= 8 ? wayBack_.Start() : static_cast<VnStatus>(OK);
    if (status != OK) return status;
    const BitmapLock destinationLock(destination_), textureLock(texture_);
    const bool inPlace = bits_ == 24 && PixelAddress(*destination_);
    uint32_t textureLine = 0;
    for (uint32_t line = 0; line < static_cast<uint32_t>(destination_->Height); ++line) {
      const uint32_t row = RowOfLine(*destination_, line);
      status = inPlace ? ShadeInPlace(row, textureLine) : ShadeThroughBuffer(row, textureLine);
      if (status != OK) return status;
      if (++textureLine == static_cast<uint32_t>(texture_->Height)) textureLine = 0;
    }
    return OK;
  }

 private:
  // Makes `grays_` the texture's line, repeated to the destination's width.
  VnStatus LoadGrays(uint32_t line) {
    if (line == loadedLine_) return OK;
    const uint32_t bytes = texture_->BytesPerLine;
    const int32_t moved =
        Vn_GetBitmapRow(texture_, grays_.data(), RowOfLine(*texture_, line), bytes);
    if (moved != static_cast<int32_t>(bytes)) return moved;
    loadedLine_ = line;
    // Each copy doubles what is there.
    for (uint32_t have = static_cast<uint32_t>(texture_->Width); have < width_; have *= 2)
      std::memcpy(grays_.data() + have, grays_.data(), std::min(have, width_ - have));
    return OK;
  }

  // The order of the channels does not matter at 24 bits: all three take the same shift.
  VnStatus ShadeInPlace(uint32_t row, uint32_t textureLine) {
    const VnStatus status = LoadGrays(textureLine);
    if (status != OK) return status;
    uint8_t* pixels = destination_->Bits + size_t{destination_->BytesPerLine} * row;
    segments_.Load(static_cast<int32_t>(row));
    const int32_t* end = segments_.data() + segments_.count();
    for (const int32_t* run = segments_.data(); run != end; run += 2) {
      const auto left = static_cast<size_t>(std::max(run[0], 0));
      const auto right = static_cast<size_t>(std::clamp<int32_t>(run[1], 0, destination_->Width));
      if (left < right) shade_(pixels + 3 * left, grays_.data() + left, right - left);
    }
    return OK;
  }

  VnStatus ShadeThroughBuffer(uint32_t row, uint32_t textureLine) {
    const uint32_t bytes = destination_->BytesPerLine, order = destination_->ColorOrder;
    const int32_t moved = Vn_GetBitmapRow(destination_, row_.data(), row, bytes);
    if (moved != static_cast<int32_t>(bytes)) return moved;
    Vn_ConvertBuffer(row_.data(), destination_->Width, bits_, 24, order, ORDER_BGR,
                     destination_->DibColors, nullptr);
    const VnStatus status = LoadGrays(textureLine);
    if (status != OK) return status;
    shade_(row_.data(), grays_.data(), width_);
    if (bits_ <= 8) {
      wayBack_.Line(row_.data());
    } else {
      Vn_ConvertBuffer(row_.data(), destination_->Width, 24, bits_, ORDER_BGR, order, nullptr,
                       nullptr);
    }
    segments_.Load(static_cast<int32_t>(row));
    return Vn_PutBitmapRowSegments(destination_, row_.data(), row, 0, segments_.data(),
                                   segments_.count());
  }

  BitmapHandle* destination_;
  BitmapHandle* texture_;
  uint32_t width_;
  int32_t bits_;
  ShadeRow shade_;
  RowSegments segments_;
  ScratchBuffer<uint8_t> row_, grays_;
  WayBack wayBack_;
  uint32_t loadedLine_ = UINT32_MAX;
};

// Whether the record's rows hold its pixels, here and at 24 bits: its fields are the caller's, and
// products of 32 bits wrap.
bool IsWorkable(const BitmapHandle& bitmap) {
  return WithDepth(bitmap.BitsPerPixel, [](auto) {}) &&
         SizeFits(bitmap.Width, bitmap.Height, bitmap.BitsPerPixel) &&
         SizeFits(bitmap.Width, 1, 24) &&
         StrideOf(static_cast<uint32_t>(bitmap.Width),
                  static_cast<uint32_t>(bitmap.BitsPerPixel)) <= bitmap.BytesPerLine &&
         uint64_t{bitmap.BytesPerLine} * static_cast<uint32_t>(bitmap.Height) <= bitmap.DataSize;
}

}  // namespace

VnStatus VN_CALL Vn_UnderlayBitmap(BitmapHandle* destination, BitmapHandle* underlay,
                                   uint32_t mode) {
  if (!HasStorage(destination) || !HasStorage(underlay)) return ERR_NO_BITMAP;
  if (mode > UNDERLAY_STRETCH) return ERR_INVALID_PARAMETER;
  if (!IsWorkable(*destination)) return ERR_NO_MEMORY;
  OwnedBitmap texture;
  const VnStatus status = MakeTexture(texture, underlay, *destination, mode);
  if (status != OK) return status;
  return Underlay(destination, texture).Run();
}
