// Bitmaps to the clipboard and from it.
#include <vncore/vncore.h>
#include "device/device_bitmap.h"
#include "device/from_dib.h"
#include "device/global_memory.h"
#include "kernel/platform_objects.h"

namespace vn {
namespace {

// Held while it lives. Test it: false while somebody else holds the clipboard.
class OpenedClipboard {
 public:
  explicit OpenedClipboard(HWND window) : open_(OpenClipboard(window) != FALSE) {}
  OpenedClipboard(const OpenedClipboard&) = delete;
  OpenedClipboard& operator=(const OpenedClipboard&) = delete;
  ~OpenedClipboard() {
    if (open_) CloseClipboard();
  }
  explicit operator bool() const { return open_; }

 private:
  bool open_;
};

// What goes on the clipboard; what did not get there is freed.
struct ClipboardObjects {
  OwnedObject<HPALETTE> palette;
  OwnedGlobal dib;
  OwnedObject<HBITMAP> object;

  VnStatus Make(HWND window, BitmapHandle* bitmap, uint32_t flags);
  // Hands all over to the open clipboard.
  void Put();
};

VnStatus ClipboardObjects::Make(HWND window, BitmapHandle* bitmap, uint32_t flags) {
  if (flags & COPY_PALETTE) {
    const WindowDC context(window);
    if (!context.get()) return ERR_INVALID_PARAMETER;
    palette = OwnedObject<HPALETTE>(Vn_CreatePaintPalette(context.get(), bitmap));
  }
  if (flags & COPY_DIB) {
    dib = OwnedGlobal(Vn_ConvertToDIB(bitmap));
    if (!dib) return ERR_NO_MEMORY;
  }
  if (flags & COPY_DDB) {
    const WindowDC context(window);
    if (!context.get()) return ERR_INVALID_PARAMETER;
    object = OwnedObject<HBITMAP>(Vn_ConvertToDDB(context.get(), bitmap));
    if (!object) return ERR_NO_MEMORY;
  }
  return OK;
}

// The clipboard owns what it is given, and whether it took it is not asked.
void ClipboardObjects::Put() {
  if (palette) SetClipboardData(CF_PALETTE, palette.Release());
  if (dib) SetClipboardData(CF_DIB, dib.Release());
  if (object) SetClipboardData(CF_BITMAP, object.Release());
}

VnStatus TakePicture(HWND window, BitmapHandle* bitmap) {
  if (const HANDLE dib = GetClipboardData(CF_DIB)) return GlobalDibToBitmap(bitmap, dib);
  const auto object = static_cast<HBITMAP>(GetClipboardData(CF_BITMAP));
  if (!object) return ERR_NO_BITMAP;
  auto palette = static_cast<HPALETTE>(GetClipboardData(CF_PALETTE));
  OwnedObject<HPALETTE> system;
  if (!palette) {
    system = OwnedObject<HPALETTE>(Vn_CreateSystemPalette());
    palette = system.get();
  }
  const WindowDC context(window);
  return Vn_ConvertFromDDB(context.get(), bitmap, object, palette);
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_CopyToClipboardExt(HWND window, BitmapHandle* bitmap, uint32_t flags) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_NO_BITMAP;
  vn::ClipboardObjects objects;
  const VnStatus status = objects.Make(window, bitmap, flags);
  if (status != OK) return status;
  const vn::OpenedClipboard clipboard(window);
  if (!clipboard) return ERR_INVALID_PARAMETER;
  if (flags & COPY_EMPTY) EmptyClipboard();
  objects.Put();
  return OK;
}

int32_t VN_CALL Vn_CopyToClipboard(HWND window, BitmapHandle* bitmap) {
  constexpr uint32_t kAll = COPY_EMPTY | COPY_DIB | COPY_DDB | COPY_PALETTE;
  return Vn_CopyToClipboardExt(window, bitmap, kAll) == OK;
}

int32_t VN_CALL Vn_CopyFromClipboard(HWND window, BitmapHandle* bitmap) {
  const vn::OpenedClipboard clipboard(window);
  return clipboard && vn::TakePicture(window, bitmap) == OK;
}

int32_t VN_CALL Vn_ClipboardReady(void) {
  return IsClipboardFormatAvailable(CF_DIB) || IsClipboardFormatAvailable(CF_BITMAP);
}
