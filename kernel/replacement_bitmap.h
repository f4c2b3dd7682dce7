// The new form of a bitmap that an operation replaces. The rules of sharing between the two records
// live here and nowhere else.
#ifndef VNCORE_KERNEL_REPLACEMENT_BITMAP_H
#define VNCORE_KERNEL_REPLACEMENT_BITMAP_H

#include <vncore/vncore.h>
#include "kernel/picture_size.h"

namespace vn {

// Whether a bitmap has storage that holds its rows, and rows that hold its pixels. Depths other
// than the six count as 32 bits.
bool HoldsItsPixels(const BitmapHandle* bitmap);

// What every derived bitmap takes from its source: row order, resolution, the caller's fields.
void CarryOver(BitmapHandle* derived, const BitmapHandle& source);

// Usage: Create or CreateDerived, fill the record's pixels, Commit. Until then, and on every path
// that leaves early, the original stands as it was. After Create, palettes and region are shared
// between the records while both live; they belong to the original, and after Commit to its new
// form. After CreateDerived the replacement owns its palettes, Commit frees those of the original,
// and the region moves over.
class ReplacementBitmap {
 public:
  explicit ReplacementBitmap(BitmapHandle* original) : original_(original) {}
  ReplacementBitmap(const ReplacementBitmap&) = delete;
  ReplacementBitmap& operator=(const ReplacementBitmap&) = delete;
  // Drops an uncommitted replacement; what it shares stays with the original.
  ~ReplacementBitmap() {
    if (shares_) {
      Vn_FreeImage(&record_, 0);
    } else {
      Vn_FreeBitmap(&record_);
    }
  }

  // Gives the replacement storage, and all that Vn_DupBitmapNewDim carries over.
  VnStatus Create(int32_t width, int32_t height, int32_t bitsPerPixel);

  // Gives the replacement storage of the original's size at another depth. It takes what CarryOver
  // tells and no palette: the caller makes one.
  VnStatus CreateDerived(int32_t bitsPerPixel);

  BitmapHandle* get() { return &record_; }
  BitmapHandle* operator->() { return &record_; }

  // Releases the original's pixels, and moves the replacement over its record.
  void Commit();

  // Drops the replacement together with the palettes and the region that it shares: the original
  // still names them, but they are dead.
  void DropWithShared() { Vn_FreeBitmap(&record_); }

 private:
  BitmapHandle* original_;
  BitmapHandle record_{};
  bool shares_ = true;
};

}  // namespace vn

#endif
