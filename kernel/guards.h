// Guards: states that are set for a stretch of work and set back on every path out of it.
#ifndef VNCORE_KERNEL_GUARDS_H
#define VNCORE_KERNEL_GUARDS_H

#include <vncore/vncore.h>

namespace vn {

// The lock pair around a run of row calls.
class BitmapLock {
 public:
  explicit BitmapLock(BitmapHandle* bitmap) : bitmap_(bitmap), state_(Vn_LockBitmap(bitmap)) {}
  BitmapLock(const BitmapLock&) = delete;
  BitmapLock& operator=(const BitmapLock&) = delete;
  ~BitmapLock() { Vn_UnlockBitmap(bitmap_, state_); }

  // Leaves the bitmap locked.
  void Keep() { state_ = 1; }

 private:
  BitmapHandle* bitmap_;
  int32_t state_;
};

// DibColors in colour form while it lives, for a bitmap of up to 8 bits.
class ColorForm {
 public:
  explicit ColorForm(BitmapHandle* bitmap)
      : bitmap_(bitmap->BitsPerPixel <= 8 && (bitmap->Flags & FLAG_PALETTE_INDEXES) ? bitmap
                                                                                    : nullptr) {
    if (bitmap_) Vn_CreatePaletteColors(bitmap_);
  }
  ColorForm(const ColorForm&) = delete;
  ColorForm& operator=(const ColorForm&) = delete;
  ~ColorForm() {
    if (bitmap_) Vn_CreatePaletteIndexes(bitmap_);
  }

 private:
  BitmapHandle* bitmap_;
};

// Display mode bits for the length of a work. Those of `restored` are set back.
class DisplayModeScope {
 public:
  DisplayModeScope(uint32_t mask, uint32_t value, uint32_t restored = ~0u)
      : before_(Vn_SetDisplayMode(mask, value)), restored_(restored) {}
  DisplayModeScope(const DisplayModeScope&) = delete;
  DisplayModeScope& operator=(const DisplayModeScope&) = delete;
  ~DisplayModeScope() { Vn_SetDisplayMode(restored_, before_); }

 private:
  uint32_t before_;
  uint32_t restored_;
};

// No status callback: inner operations stay silent, and the outer one reports alone.
class MutedStatus {
 public:
  MutedStatus() : callback_(Vn_SetStatusCallBack(nullptr)) {}
  MutedStatus(const MutedStatus&) = delete;
  MutedStatus& operator=(const MutedStatus&) = delete;
  ~MutedStatus() { Vn_SetStatusCallBack(callback_); }

 private:
  VnStatusCallBack callback_;
};

}  // namespace vn

#endif
