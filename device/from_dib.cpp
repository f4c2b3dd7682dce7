// DIBs to bitmaps. What comes from a stranger is read within its block only.
#include "device/from_dib.h"

#include <algorithm>
#include <cstring>

#include "color/palettes.h"
#include "device/dib_layout.h"
#include "device/global_memory.h"
#include "kernel/guards.h"
#include "kernel/picture_size.h"
#include "kernel/pixel_format.h"
#include "kernel/row_position.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

// What a header of any of the three kinds says.
struct ForeignDib {
  // False when the block is too short for its header.
  bool Read(const uint8_t* block, uint64_t blockBytes);
  // Whether rows and colours lie within `blockBytes` and can be told in the words of a record.
  bool FitsIn(uint64_t blockBytes) const;

  uint64_t PixelOffset() const { return headerBytes + entryBytes * uint64_t{colorCount}; }
  uint32_t ImageSize() const { return StrideOf(width, bits) * height; }

  uint32_t headerBytes = 0, entryBytes = 4;
  uint32_t width = 0, height = 0, planes = 0, bits = 0, compression = 0, colorCount = 0;
  DibResolution resolution;
};

bool ForeignDib::Read(const uint8_t* block, uint64_t blockBytes) {
  if (blockBytes < kCoreHeaderBytes) return false;
  std::memcpy(&headerBytes, block, sizeof headerBytes);
  if (headerBytes == kCoreHeaderBytes) {
    entryBytes = 3;
    width = LoadWord(block + 4);
    height = LoadWord(block + 6);
    planes = LoadWord(block + 8);
    bits = LoadWord(block + 10);
    return true;
  }
  if (blockBytes < kInfoHeaderBytes) return false;
  BITMAPINFOHEADER header;
  std::memcpy(&header, block, sizeof header);
  width = static_cast<uint32_t>(header.biWidth);
  height = static_cast<uint32_t>(header.biHeight);
  planes = header.biPlanes;
  bits = header.biBitCount;
  compression = header.biCompression;
  colorCount = header.biClrUsed;
  // Longer headers have resolutions too, but they are not read: they count as 0.
  if (headerBytes == kInfoHeaderBytes)
    resolution = {header.biXPelsPerMeter, header.biYPelsPerMeter};
  return true;
}

bool ForeignDib::FitsIn(uint64_t blockBytes) const {
  // A height below 0 is a picture from the top down, and as a count of rows beyond all sizes.
  if (!SizeFits(static_cast<int32_t>(width), static_cast<int32_t>(height),
                static_cast<int32_t>(bits))) {
    return false;
  }
  return PixelOffset() <= blockBytes && ImageSize() <= blockBytes - PixelOffset();
}

// Rows in the order of the storage.
void StoreAllRows(BitmapHandle* bitmap, const uint8_t* rows) {
  if (uint8_t* const bits = PixelAddress(*bitmap)) {
    std::memcpy(bits, rows, bitmap->DataSize);
    return;
  }
  const uint32_t stride = bitmap->BytesPerLine;
  for (uint32_t row = 0; row < static_cast<uint32_t>(bitmap->Height); ++row, rows += stride)
    Vn_PutBitmapRow(bitmap, rows, row, stride);
}

// Moves the rows of the DIB to the start of its block, which becomes the storage of `bitmap`.
void KeepBlock(BitmapHandle* bitmap, HGLOBAL dib, GlobalAddress* block, uint64_t pixelOffset) {
  std::memmove(block->get(), block->get() + pixelOffset, bitmap->DataSize);
  block->Unlock();
  // Where it cannot shrink it stays as it is.
  const HGLOBAL shrunk = GlobalReAlloc(dib, bitmap->DataSize, GMEM_MOVEABLE);
  bitmap->Storage = shrunk ? shrunk : dib;
  bitmap->Bits = nullptr;
  bitmap->Flags = (bitmap->Flags & ~uint32_t{FLAG_LOCKED}) | FLAG_IN_MEMORY | FLAG_ALLOCATED;
}

// Copies the rows into storage of the bitmap's own, and frees the DIB.
VnStatus CopyBlock(BitmapHandle* bitmap, HGLOBAL dib, GlobalAddress* block, uint64_t pixelOffset) {
  const VnStatus status = Vn_AllocateBitmap(bitmap, STORAGE_AUTO);
  if (status != OK) return status;
  {
    const BitmapLock lock(bitmap);
    StoreAllRows(bitmap, block->get() + pixelOffset);
  }
  block->Unlock();
  GlobalFree(dib);
  return OK;
}

// A DIB whose header has been found good.
VnStatus TakeDib(BitmapHandle* bitmap, HGLOBAL dib, GlobalAddress* block, ForeignDib& found) {
  VnStatus status =
      Vn_InitBitmap(bitmap, found.width, found.height, static_cast<int32_t>(found.bits));
  if (status != OK) return status;
  RGBQUAD colors[kMaxColors] = {};
  if (found.bits <= 8) {
    CopyDibColors(block->get() + found.headerBytes, found.entryBytes,
                  std::min(found.colorCount, kMaxColors), colors);
  }
  if (OnWin32s()) {
    KeepBlock(bitmap, dib, block, found.PixelOffset());
  } else {
    status = CopyBlock(bitmap, dib, block, found.PixelOffset());
    if (status != OK) return status;
  }
  TakeDibHead(bitmap, colors, found.resolution);
  return OK;
}

}  // namespace

void TakeDibHead(BitmapHandle* bitmap, const RGBQUAD* colors, DibResolution resolution) {
  std::memcpy(bitmap->DibColors, colors, sizeof bitmap->DibColors);
  resolution.ReplaceZeros();
  resolution.Apply(bitmap);
  if (bitmap->ColorCount > 0) Vn_CreateBitmapTruePalette(bitmap);
}

VnStatus GlobalDibToBitmap(BitmapHandle* bitmap, HGLOBAL dib) {
  if (!dib) return ERR_NO_BITMAP;
  const GlobalAddress block(dib);
  if (!block) return ERR_NO_BITMAP;
  const uint64_t bytes = GlobalSize(dib);
  if (bytes < kInfoHeaderBytes) return ERR_UNSUPPORTED;
  // The conversion reads a whole table, and this one may be followed by fewer bytes.
  BitmapInfo256 info{};
  std::memcpy(&info, block.get(), std::min<uint64_t>(bytes, sizeof info));
  const BITMAPINFOHEADER& header = info.header;
  const uint64_t offset = DibPixelOffset(header);
  const uint64_t image =
      uint64_t{StrideOf(static_cast<uint32_t>(header.biWidth), header.biBitCount)} *
      static_cast<uint32_t>(header.biHeight);
  if (offset > bytes || image > bytes - offset) return ERR_UNSUPPORTED;
  return Vn_ConvertFromDIB(bitmap, info.Info(), block.get() + offset);
}

}  // namespace vn

VnStatus VN_CALL Vn_ConvertFromDIB(BitmapHandle* bitmap, const BITMAPINFO* info,
                                   const void* pixels) {
  const BITMAPINFOHEADER& header = info->bmiHeader;
  const int32_t depth = header.biBitCount;
  vn::DibResolution resolution{header.biXPelsPerMeter, header.biYPelsPerMeter};
  resolution.ReplaceZeros();
  const auto width = static_cast<uint32_t>(header.biWidth);
  const auto height = static_cast<uint32_t>(header.biHeight);
  VnStatus status = Vn_InitBitmap(bitmap, width, height, depth);
  if (status != OK) return status;
  // Rows from the top down are a height that no storage holds.
  if (!vn::SizeFits(header.biWidth, header.biHeight, depth)) return ERR_NO_MEMORY;
  status = Vn_AllocateBitmap(bitmap, STORAGE_AUTO);
  if (status != OK) return status;

  const vn::BitmapLock lock(bitmap);
  if (depth <= 8) {
    vn::CopyDibColors(reinterpret_cast<const uint8_t*>(info->bmiColors), sizeof(RGBQUAD),
                      vn::FullColorCount(static_cast<uint32_t>(depth)), bitmap->DibColors);
    Vn_CreateBitmapTruePalette(bitmap);
  }
  vn::StoreAllRows(bitmap, static_cast<const uint8_t*>(pixels));
  bitmap->DibHeader.biXPelsPerMeter = resolution.x;
  bitmap->DibHeader.biYPelsPerMeter = resolution.y;
  bitmap->DibHeader.biClrUsed = 0;
  bitmap->ColorOrder = ORDER_BGR;  // also of a paletted bitmap, where it means nothing
  resolution.Apply(bitmap);
  return OK;
}

VnStatus VN_CALL Vn_ChangeFromDIB(BitmapHandle* bitmap, HGLOBAL dib) {
  if (!bitmap) return ERR_INVALID_PARAMETER;
  vn::GlobalAddress block(dib);
  if (!block) return ERR_INVALID_PARAMETER;
  const uint64_t bytes = GlobalSize(dib);
  vn::ForeignDib found;
  if (!found.Read(block.get(), bytes)) return ERR_UNSUPPORTED;
  if (found.width == 0 || found.height == 0) return ERR_INVALID_PARAMETER;
  if (found.planes != 1 || found.compression != BI_RGB) return ERR_UNSUPPORTED;
  if (!vn::WithDepth(static_cast<int32_t>(found.bits), [](auto) {})) return ERR_UNSUPPORTED;
  if (found.bits <= 8 && found.colorCount == 0) found.colorCount = vn::FullColorCount(found.bits);
  if (!found.FitsIn(bytes)) return ERR_UNSUPPORTED;
  return vn::TakeDib(bitmap, dib, &block, found);
}
