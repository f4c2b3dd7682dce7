// Bitmaps to DIBs: a copy, and the move that takes the bitmap's own block where it can.
#include <algorithm>
#include <cstring>

#include "color/palettes.h"
#include "device/dib_layout.h"
#include "device/global_memory.h"
#include "kernel/guards.h"
#include "kernel/picture_size.h"
#include "kernel/pixel_format.h"
#include "kernel/row_position.h"
#include "kernel/scratch_buffer.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

// The parts of the DIB that a bitmap becomes.
struct DibPlan {
  explicit DibPlan(const BitmapHandle& bitmap)
      : widens(bitmap.BitsPerPixel == 16 || bitmap.BitsPerPixel == 32),
        bits(widens ? 24 : static_cast<uint32_t>(bitmap.BitsPerPixel)),
        width(static_cast<uint32_t>(bitmap.Width)),
        height(static_cast<uint32_t>(bitmap.Height)),
        stride(widens ? StrideOf(width, bits) : bitmap.BytesPerLine),
        colors(bits <= 8 ? std::min(static_cast<uint32_t>(bitmap.ColorCount), kMaxColors) : 0) {}

  // Whether the words of a DIB can tell its sizes. Rows that widen can be too long where the
  // bitmap's are not.
  bool Fits() const {
    return SizeFits(static_cast<int32_t>(width), static_cast<int32_t>(height),
                    static_cast<int32_t>(bits)) &&
           BlockSize() <= UINT32_MAX;
  }

  uint32_t PixelOffset() const { return kInfoHeaderBytes + colors * sizeof(RGBQUAD); }
  uint32_t ImageSize() const { return stride * height; }
  uint64_t BlockSize() const { return uint64_t{PixelOffset()} + uint64_t{stride} * height; }

  BITMAPINFOHEADER HeaderOf(const BitmapHandle& bitmap) const {
    BITMAPINFOHEADER header{};
    header.biSize = kInfoHeaderBytes;
    header.biWidth = bitmap.Width;
    header.biHeight = bitmap.Height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bits);
    header.biSizeImage = ImageSize();
    StoreResolution(bitmap, &header);
    return header;
  }

  bool widens;
  uint32_t bits, width, height, stride, colors;
};

// Where storage row `row` goes among the rows of a DIB, which begin with the picture's lowest line.
// Rows are taken as they lie in storage: pages that are touched for the first time take the turned
// order of writing well, and a file its order of reading.
uint8_t* PlaceOf(const DibPlan& plan, bool bottomFirst, uint32_t row, uint8_t* pixels) {
  return pixels + size_t{plan.stride} * (bottomFirst ? row : plan.height - 1 - row);
}

// Copies all rows as they stand.
void CopyRows(BitmapHandle* bitmap, const DibPlan& plan, bool bottomFirst, uint8_t* pixels) {
  if (const uint8_t* const bits = bottomFirst ? PixelAddress(*bitmap) : nullptr) {
    std::memcpy(pixels, bits, size_t{plan.stride} * plan.height);
    return;
  }
  for (uint32_t row = 0; row < plan.height; ++row)
    Vn_GetBitmapRow(bitmap, PlaceOf(plan, bottomFirst, row, pixels), row, plan.stride);
}

// The same for rows of 16 and 32 bits, widened to 24 with the channels of `order` first. False when
// there is no memory for a row.
bool WidenRows(BitmapHandle* bitmap, const DibPlan& plan, bool bottomFirst, uint32_t order,
               uint8_t* pixels) {
  const auto bits = static_cast<uint32_t>(bitmap->BitsPerPixel);
  const ScratchBuffer<uint8_t> wide(Vn_CalcConvertSize(plan.width, bits, plan.width, plan.bits),
                                    Fill::kZero);
  if (!wide) return false;
  for (uint32_t row = 0; row < plan.height; ++row) {
    Vn_GetBitmapRow(bitmap, wide.data(), row, bitmap->BytesPerLine);
    Vn_ConvertBuffer(wide.data(), plan.width, bits, plan.bits, bitmap->ColorOrder, order, nullptr,
                     nullptr);
    std::memcpy(PlaceOf(plan, bottomFirst, row, pixels), wide.data(), plan.stride);
  }
  return true;
}

// Copies the bitmap behind `record` into a new DIB; 0 when memory fails. `record` is a copy of the
// caller's, so that neither the row cache nor the form of DibColors changes there.
HGLOBAL CopyToDib(BitmapHandle* record) {
  const DibPlan plan(*record);
  if (!plan.Fits()) return nullptr;
  OwnedGlobal dib = OwnedGlobal::OfSize(plan.BlockSize());
  GlobalAddress block(dib.get());
  if (!block) return nullptr;
  const BitmapLock lock(record);
  BITMAPINFOHEADER header = plan.HeaderOf(*record);
  // Of the depth that DibHeader tells, which in a derived bitmap can be its source's.
  if (!plan.widens) {
    header.biSizeImage = DibRowSize(plan.width, plan.height, record->DibHeader.biBitCount);
  }
  std::memcpy(block.get(), &header, sizeof header);
  if (plan.colors) {
    const ColorForm form(record);
    CopyDibColors(reinterpret_cast<const uint8_t*>(record->DibColors), sizeof(RGBQUAD), plan.colors,
                  reinterpret_cast<RGBQUAD*>(block.get() + kInfoHeaderBytes));
  }
  uint8_t* const pixels = block.get() + plan.PixelOffset();
  const bool bottomFirst = record->ViewOrigin == VIEW_BOTTOM_FIRST || record->ViewOrigin == 3;
  if (!plan.widens) {
    CopyRows(record, plan, bottomFirst, pixels);
  } else if (!WidenRows(record, plan, bottomFirst, record->ColorOrder, pixels)) {
    // The order stays as it is: red and blue of ORDER_RGB change places. So it is wanted here.
    return nullptr;
  }
  block.Unlock();
  return dib.Release();
}

// Header and colours in front of the rows.
void WriteHead(const BitmapHandle& bitmap, const DibPlan& plan, uint8_t* block) {
  BITMAPINFOHEADER header = plan.HeaderOf(bitmap);
  header.biClrUsed = static_cast<DWORD>(bitmap.ColorCount);
  std::memcpy(block, &header, sizeof header);
  if (!plan.colors) return;
  RGBQUAD colors[kMaxColors] = {};
  Vn_GetPaletteEntries(ActivePalette(bitmap), 0, plan.colors, colors);
  CopyDibColors(reinterpret_cast<const uint8_t*>(colors), sizeof(RGBQUAD), plan.colors,
                reinterpret_cast<RGBQUAD*>(block + kInfoHeaderBytes));
}

// A new block; null when memory fails.
HGLOBAL CopyForChange(BitmapHandle* bitmap, const DibPlan& plan) {
  const bool bottomFirst = bitmap->ViewOrigin == VIEW_BOTTOM_FIRST;
  OwnedGlobal dib = OwnedGlobal::OfSize(plan.BlockSize());
  GlobalAddress block(dib.get());
  if (!block) return nullptr;
  const BitmapLock lock(bitmap);
  uint8_t* const pixels = block.get() + plan.PixelOffset();
  if (!plan.widens) {
    CopyRows(bitmap, plan, bottomFirst, pixels);
  } else if (!WidenRows(bitmap, plan, bottomFirst, ORDER_BGR, pixels)) {
    return nullptr;
  }
  WriteHead(*bitmap, plan, block.get());
  block.Unlock();
  return dib.Release();
}

// The bitmap's own block, grown, its rows moved up behind room for header and colours. The record
// no longer owns it then. Null, with the bitmap as it was, when memory fails.
HGLOBAL TakeBlock(BitmapHandle* bitmap, const DibPlan& plan) {
  const HGLOBAL grown =
      GlobalReAlloc(bitmap->Storage, static_cast<SIZE_T>(plan.BlockSize()), GMEM_MOVEABLE);
  if (!grown) return nullptr;
  bitmap->Storage = grown;
  const GlobalAddress block(grown);
  if (!block) return nullptr;
  std::memmove(block.get() + plan.PixelOffset(), block.get(), plan.ImageSize());
  WriteHead(*bitmap, plan, block.get());
  bitmap->Flags &= ~uint32_t{FLAG_ALLOCATED | FLAG_IN_MEMORY};
  return grown;
}

bool OwnsMovableBlock(const BitmapHandle& bitmap) {
  return OnWin32s() && (bitmap.Flags & FLAG_IN_MEMORY) && bitmap.ViewOrigin == VIEW_BOTTOM_FIRST;
}

}  // namespace
}  // namespace vn

HGLOBAL VN_CALL Vn_ConvertToDIB(BitmapHandle* bitmap) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return nullptr;
  const vn::ScratchBuffer<BitmapHandle> record(1);
  if (!record) return nullptr;
  *record.data() = *bitmap;
  return vn::CopyToDib(record.data());
}

HGLOBAL VN_CALL Vn_ChangeToDIB(BitmapHandle* bitmap) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED) || (bitmap->Flags & FLAG_LOCKED)) return nullptr;
  const vn::DibPlan plan(*bitmap);
  if (!plan.Fits()) return nullptr;
  const HGLOBAL dib = !plan.widens && vn::OwnsMovableBlock(*bitmap)
                          ? vn::TakeBlock(bitmap, plan)
                          : vn::CopyForChange(bitmap, plan);
  if (dib) Vn_FreeBitmap(bitmap);
  return dib;
}
