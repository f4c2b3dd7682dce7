// The lock of a bitmap: a flag, and on Win32s the lock of its global memory.
#include "kernel/thread_settings.h"

void VN_CALL Vn_AccessBitmap(BitmapHandle* bitmap) {
  if ((bitmap->Flags & (FLAG_IN_MEMORY | FLAG_LOCKED)) != FLAG_IN_MEMORY) return;
  if (vn::OnWin32s()) bitmap->Bits = static_cast<uint8_t*>(GlobalLock(bitmap->Storage));
  bitmap->Flags |= FLAG_LOCKED;
}

void VN_CALL Vn_ReleaseBitmap(BitmapHandle* bitmap) {
  constexpr uint32_t kBoth = FLAG_IN_MEMORY | FLAG_LOCKED;
  if ((bitmap->Flags & kBoth) != kBoth) return;
  if (vn::OnWin32s()) {
    GlobalUnlock(bitmap->Storage);
    bitmap->Bits = nullptr;
  }
  bitmap->Flags &= ~uint32_t{FLAG_LOCKED};
}

int32_t VN_CALL Vn_LockBitmap(BitmapHandle* bitmap) {
  if (bitmap->Flags & FLAG_LOCKED) return 1;
  Vn_AccessBitmap(bitmap);
  return 0;
}

void VN_CALL Vn_UnlockBitmap(BitmapHandle* bitmap, int32_t state) {
  if (state == 0) Vn_ReleaseBitmap(bitmap);
}
