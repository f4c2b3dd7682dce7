// Bitmaps to bitmap objects of a device, and back by way of a DIB.
#include "device/device_bitmap.h"

#include <cstring>

#include <vncore/vncore.h>
#include "device/dib_layout.h"
#include "device/global_memory.h"
#include "device/paint_plan.h"
#include "kernel/guards.h"
#include "kernel/pixel_format.h"
#include "kernel/platform_objects.h"

namespace vn {
namespace {

// Paints the whole bitmap on `context`, in real colours: what a pixel value of the new object shows
// must not depend on a palette that is realised elsewhere. Whether it succeeds is not told.
void PaintWhole(HDC context, HDC like, BitmapHandle* bitmap) {
  const DisplayModeScope mode(MODE_DEVICE_INDEXES | MODE_DITHER, MODE_DITHER);
  const OwnedObject<HPALETTE> palette(Vn_CreatePaintPalette(like, bitmap));
  const SelectedPalette realized(context, palette.get());
  const RECT whole = {0, 0, bitmap->Width, bitmap->Height};
  PaintBitmap(context, bitmap, nullptr, nullptr, &whole, nullptr, SRCCOPY);
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

// A DIB of what the object shows; 0 with `*status` when there is no memory, and when it cannot be
// read.
HGLOBAL ReadObject(HDC hDC, HBITMAP object, const BITMAP& shape, HPALETTE palette,
                   VnStatus* status) {
  BITMAPINFOHEADER header;
  FillDibHeader(&header, shape.bmWidth, shape.bmHeight, shape.bmPlanes * shape.bmBitsPixel);
  const uint64_t image =
      uint64_t{StrideOf(static_cast<uint32_t>(shape.bmWidth), header.biBitCount)} *
      static_cast<uint32_t>(shape.bmHeight);
  OwnedGlobal dib = OwnedGlobal::OfSize(DibPixelOffset(header) + image);
  GlobalAddress block(dib.get());
  if (!block) {
    *status = ERR_NO_MEMORY;
    return nullptr;
  }
  std::memcpy(block.get(), &header, sizeof header);
  const SelectedPalette realized(hDC, palette);
  const int lines = GetDIBits(hDC, object, 0, static_cast<UINT>(shape.bmHeight),
                              block.get() + DibPixelOffset(header),
                              reinterpret_cast<BITMAPINFO*>(block.get()), DIB_RGB_COLORS);
  block.Unlock();
  *status = ERR_INVALID_PARAMETER;
  return lines ? dib.Release() : nullptr;
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
  if (!object || !GetObjectA(object, sizeof shape, &shape)) return ERR_INVALID_PARAMETER;
  VnStatus status;
  const HGLOBAL dib = vn::ReadObject(hDC, object, shape, palette, &status);
  if (!dib) return status;
  status = Vn_ChangeFromDIB(bitmap, dib);
  if (status != OK) GlobalFree(dib);
  return status;
}

VnStatus VN_CALL Vn_ChangeFromDDB(HDC hDC, BitmapHandle* bitmap, HBITMAP object, HPALETTE palette) {
  const VnStatus status = Vn_ConvertFromDDB(hDC, bitmap, object, palette);
  if (status != OK) return status;
  DeleteObject(object);
  if (palette) DeleteObject(palette);
  return OK;
}
