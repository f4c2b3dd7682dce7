// A palette in force in a device context.
#ifndef VNCORE_DEVICE_REALIZED_PALETTE_H
#define VNCORE_DEVICE_REALIZED_PALETTE_H

#include "kernel/platform_objects.h"

namespace vn {

// Owns a paint palette (null: none is needed), selected and realised while it lives.
class RealizedPalette {
 public:
  RealizedPalette(HDC context, HPALETTE palette) : context_(context), palette_(palette) {
    if (!palette_) return;
    before_ = SelectPalette(context_, palette_.get(), FALSE);
    RealizePalette(context_);
  }
  RealizedPalette(const RealizedPalette&) = delete;
  RealizedPalette& operator=(const RealizedPalette&) = delete;
  ~RealizedPalette() {
    if (!palette_) return;
    SelectPalette(context_, before_, FALSE);
    RealizePalette(context_);
  }

 private:
  HDC context_;
  OwnedObject<HPALETTE> palette_;
  HPALETTE before_{};
};

}  // namespace vn

#endif
