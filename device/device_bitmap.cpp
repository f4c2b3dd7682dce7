// Bitmaps to bitmap objects of a device, and back by way of a DIB.
#include "device/device_bitmap.h"

#include <cstring>

#include <vncore/vncore.h>
#include "device/dib_layout.h"
#include "device/from_dib.h"
#include "device/global_memory.h"
#include "device/paint_plan.h"
#include "device/paint_tools.h"
#include "kernel/guards.h"
#include "kernel/owned_bitmap.h"
#include "kernel/picture_size.h"
#include "kernel/pixel_format.h"
#include "kernel/platform_objects.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

// Paints the whole bitmap on `context`, in real colours: what a pixel value of the new object shows
// must not depend on a palette that is realised elsewhere. Whether it succeeds is not told.
void PaintWhole(HDC context, HDC like, BitmapHandle* bitmap) {
  const DisplayModeScope mode(MODE_DEVICE_INDEXES | MODE_DITHER, MODE_DITHER);
  const OwnedObject<HPALETTE> palette(Vn_CreatePaintPalette(like, bitmap));
  const SelectedPalette realized(context, palette.get());
  const RECT whole = {0, 0, bitmap->Width, bitmap->Height};
  PaintJob job{context, bitmap, {}, {}, {}, {}, {}, SRCCOPY, true};
  PaintTools tools;
  if (PlanRects(&job, nullptr, nullptr, whole, nullptr)) {
    Render(job, PlanPaint(context, bitmap), &tools);
  }
}

HBITMAP CopyToDevice(HDC like, BitmapHandle* bitmap) {
  const MemoryDC memory(like);
  if (!memory) return nullptr;
  OwnedObject<HBITMAP> object(CreateCompatibleBitmap(like, bitmap->Width, bitmap->Height));
  if (!object) return nullptr;
  const SelectedObject selected(memory.get(), object.get());
  PaintWhole(memory.get(), like, bitmap);
  return object.Release();
}

// An object that is to be read through a context.
struct DeviceImage {
  HDC context;
  HBITMAP object;
  HPALETTE palette;  // or null
  BITMAPINFOHEADER header;

  // All rows to `pixels`, and the colours behind the header of `info`. False when it cannot be read.
  bool Read(BITMAPINFO* info, uint8_t* pixels) const {
    const SelectedPalette realized(context, palette);
    return GetDIBits(context, object, 0, static_cast<UINT>(header.biHeight), pixels, info,
                     DIB_RGB_COLORS) != 0;
  }
};

// By way of a DIB, whose block becomes the storage.
VnStatus ReadIntoBlock(BitmapHandle* bitmap, const DeviceImage& image) {
  const uint64_t offset = DibPixelOffset(image.header);
  const uint64_t rows =
      uint64_t{StrideOf(static_cast<uint32_t>(image.header.biWidth), image.header.biBitCount)} *
      static_cast<uint32_t>(image.header.biHeight);
  OwnedGlobal dib = OwnedGlobal::OfSize(offset + rows);
  GlobalAddress block(dib.get());
  if (!block) return ERR_NO_MEMORY;
  std::memcpy(block.get(), &image.header, sizeof image.header);
  if (!image.Read(reinterpret_cast<BITMAPINFO*>(block.get()), block.get() + offset)) {
    return ERR_INVALID_PARAMETER;
  }
  block.Unlock();
  const VnStatus status = Vn_ChangeFromDIB(bitmap, dib.get());
  if (status == OK) dib.Release();
  return status;
}

// Straight into the storage: what the way through a DIB comes to, without a second copy.
VnStatus ReadIntoStorage(BitmapHandle* bitmap, const DeviceImage& image) {
  OwnedBitmap made;
  const BITMAPINFOHEADER& header = image.header;
  VnStatus status = Vn_InitBitmap(made, static_cast<uint32_t>(header.biWidth),
                                  static_cast<uint32_t>(header.biHeight), header.biBitCount);
  if (status == OK) status = Vn_AllocateBitmap(made, STORAGE_AUTO);
  if (status != OK) return status;
  BitmapInfo256 info{};
  info.header = header;
  {
    const BitmapLock lock(made);
    if (!image.Read(reinterpret_cast<BITMAPINFO*>(&info), made->Bits)) return ERR_INVALID_PARAMETER;
  }
  TakeDibHead(made, info.colors, {});
  *bitmap = *made.get();
  *made.get() = {};
  return OK;
}

}  // namespace
}  // namespace vn

HBITMAP VN_CALL Vn_ConvertToDDB(HDC hDC, BitmapHandle* bitmap) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return nullptr;
  if (hDC) return vn::CopyToDevice(hDC, bitmap);
  const vn::ScreenDC screen;
  return vn::CopyToDevice(screen.get(), bitmap);
}

HBITMAP VN_CALL Vn_ChangeToDDB(HDC hDC, BitmapHandle* bitmap) {
  const HBITMAP object = Vn_ConvertToDDB(hDC, bitmap);
  if (object) Vn_FreeBitmap(bitmap);
  return object;
}

VnStatus VN_CALL Vn_ConvertFromDDB(HDC hDC, BitmapHandle* bitmap, HBITMAP object,
                                   HPALETTE palette) {
  BITMAP shape = {};
  // Objects of other kinds give fewer bytes.
  constexpr int kWhole = sizeof shape;
  if (!bitmap || !object || GetObjectA(object, kWhole, &shape) != kWhole) {
    return ERR_INVALID_PARAMETER;
  }
  vn::DeviceImage image{hDC, object, palette, {}};
  vn::FillDibHeader(&image.header, shape.bmWidth, shape.bmHeight,
                    shape.bmPlanes * shape.bmBitsPixel);
  // Rows that widen can be too long where the object's are not.
  if (!vn::SizeFits(shape.bmWidth, shape.bmHeight, image.header.biBitCount)) return ERR_NO_MEMORY;
  return vn::OnWin32s() ? vn::ReadIntoBlock(bitmap, image) : vn::ReadIntoStorage(bitmap, image);
}

VnStatus VN_CALL Vn_ChangeFromDDB(HDC hDC, BitmapHandle* bitmap, HBITMAP object, HPALETTE palette) {
  const VnStatus status = Vn_ConvertFromDDB(hDC, bitmap, object, palette);
  if (status != OK) return status;
  DeleteObject(object);
  if (palette) DeleteObject(palette);
  return OK;
}
