// What stands on a device context as a bitmap.
#include <cstdlib>

#include <vncore/vncore.h>
#include "device/device_bitmap.h"
#include "kernel/platform_objects.h"

VnStatus VN_CALL Vn_ScreenCaptureBitmap(HDC hDC, BitmapHandle* bitmap, const RECT* rect) {
  if (!bitmap || !rect) return ERR_INVALID_PARAMETER;
  const int64_t width = int64_t{rect->right} - rect->left;
  const int64_t height = std::abs(int64_t{rect->bottom} - rect->top);
  if (width < 1 || height < 1 || width > INT32_MAX || height > INT32_MAX) {
    return ERR_INVALID_PARAMETER;
  }
  vn::OwnedObject<HBITMAP> object;
  {
    const vn::MemoryDC memory(hDC);
    if (!memory) return ERR_INVALID_PARAMETER;
    object = vn::OwnedObject<HBITMAP>(
        CreateCompatibleBitmap(hDC, static_cast<int>(width), static_cast<int>(height)));
    if (!object) return ERR_NO_MEMORY;
    const vn::SelectedObject selected(memory.get(), object.get());
    BitBlt(memory.get(), 0, 0, static_cast<int>(width), static_cast<int>(height), hDC, rect->left,
           rect->top, SRCCOPY);
  }
  vn::OwnedObject<HPALETTE> palette(Vn_CreateSystemPalette());
  const VnStatus status = Vn_ChangeFromDDB(hDC, bitmap, object.get(), palette.get());
  if (status != OK) return status;
  object.Release();  // deleted by the change
  palette.Release();
  return OK;
}
