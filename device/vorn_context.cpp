// Device contexts over the pixels of bitmaps.
#include <algorithm>

#include <vncore/vncore.h>
#include "color/palettes.h"
#include "device/bridge.h"
#include "device/device_bitmap.h"
#include "device/dib_layout.h"
#include "kernel/guards.h"
#include "kernel/platform_objects.h"
#include "kernel/process.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

using CreateDibSectionProc = decltype(&CreateDIBSection);

// Not every system has it.
CreateDibSectionProc FindCreateDibSection() {
  const FARPROC found = GetProcAddress(GetModuleHandleA("GDI32"), "CreateDIBSection");
  return reinterpret_cast<CreateDibSectionProc>(reinterpret_cast<void (*)()>(found));
}

// A lasting change of the bitmap: contexts draw on rows that lie bottom first.
VnStatus TurnBottomFirst(BitmapHandle* bitmap) {
  if (bitmap->ViewOrigin == VIEW_BOTTOM_FIRST) return OK;
  const MutedStatus muted;  // half a flip would be no picture
  const VnStatus status = Vn_FlipBitmap(bitmap);
  if (status == OK) bitmap->ViewOrigin = VIEW_BOTTOM_FIRST;
  return status;
}

BitmapInfo256 InfoOf(BitmapHandle* bitmap) {
  BitmapInfo256 info{};
  info.header.biSize = kInfoHeaderBytes;
  info.header.biWidth = bitmap->Width;
  info.header.biHeight = bitmap->Height;
  info.header.biPlanes = 1;
  info.header.biBitCount = static_cast<WORD>(bitmap->BitsPerPixel);
  info.header.biSizeImage = bitmap->BytesPerLine * static_cast<uint32_t>(bitmap->Height);
  // Above 8 bits there are none to read.
  Vn_GetBitmapColors(bitmap, 0, std::min(static_cast<uint32_t>(bitmap->ColorCount), kMaxColors),
                     info.colors);
  return info;
}

// Confines a context to the bitmap's region. False when that fails.
bool SelectRegion(HDC context, BitmapHandle* bitmap) {
  if (!Vn_BitmapHasRgn(bitmap)) return true;
  const RegionTransform lines = {VIEW_TOP_FIRST, 1, 1, 1, 1, 0, 0};
  HRGN region;
  if (Vn_GetBitmapRgnHandle(bitmap, &lines, &region) != OK) return false;
  const OwnedObject<HRGN> owned(region);
  const HGDIOBJ kind = SelectObject(context, region);
  return kind && kind != HGDI_ERROR;
}

// A section over the bitmap's mapping, which only the platform knows for one.
HBITMAP LayOver(HDC context, BitmapHandle* bitmap, CreateDibSectionProc create) {
  const BitmapInfo256 info = InfoOf(bitmap);
  if (TurnBottomFirst(bitmap) != OK) return nullptr;
  void* unused;
  return create(context, info.Info(), DIB_RGB_COLORS, &unused, bitmap->Storage, 0);
}

// Deletes a context together with the bitmap that is selected in it. Where there is no memory to get
// the bitmap out of it, nothing is deleted, and the call can be made again.
int32_t DeleteWithBitmap(HDC context) {
  const OwnedObject<HBITMAP> pixel(CreateBitmap(1, 1, 1, 1, nullptr));
  if (!pixel) return 0;
  DeleteObject(SelectObject(context, pixel.get()));
  return DeleteDC(context);
}

HDC CreateContext(BitmapHandle* bitmap) {
  const CreateDibSectionProc create = FindCreateDibSection();
  if (!create) return nullptr;
  OwnedObject<HBITMAP> section;  // goes after the context that holds it
  const ScreenDC screen;
  MemoryDC context(screen.get());
  if (!context) return nullptr;
  section = OwnedObject<HBITMAP>(LayOver(context.get(), bitmap, create));
  if (!section) return nullptr;
  const HGDIOBJ pixel = SelectObject(context.get(), section.get());
  if (!pixel) return nullptr;
  DeleteObject(pixel);
  // Unconfined drawing would leave the region.
  if (!SelectRegion(context.get(), bitmap)) return nullptr;
  section.Release();
  return context.Release();
}

}  // namespace
}  // namespace vn

HDC VN_CALL Vn_CreateVornDC(BitmapHandle* bitmap) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return nullptr;
  return vn::BridgeActive() ? vn::CreateBridgeContext(bitmap) : vn::CreateContext(bitmap);
}

int32_t VN_CALL Vn_DeleteVornDC(HDC hDC) {
  return vn::BridgeActive() ? vn::DeleteBridgeContext(hDC) : vn::DeleteWithBitmap(hDC);
}
