// A picture over a whole headless screen.
#ifndef VNCORE_BENCH_PAINTING_H
#define VNCORE_BENCH_PAINTING_H

#include <optional>

#include "bench/pictures.h"
#include "kernel/platform_objects.h"

namespace vn::bench {

// Sets the screen up, its palette realised for the picture, and the display modes of dithering and
// of 1-bit pictures, for as long as it lives. Without `reserved` colours the device has no indexes
// to translate.
class Painting {
 public:
  Painting(BitmapHandle* picture, int32_t width, int32_t height, int32_t deviceBits, uint32_t mode,
           int32_t reserved)
      : picture_(picture),
        all_{0, 0, width, height},
        scope_(MODE_ORDERED_DITHER | MODE_BITONAL_GRAY | MODE_BITONAL_VOTE, mode) {
    SetScreen(width, height, deviceBits, reserved);
    screen_.emplace();
    palette_ = OwnedObject<HPALETTE>(Vn_CreatePaintPalette(screen_->get(), picture));
    if (!palette_) return;
    before_ = SelectPalette(screen_->get(), palette_.get(), FALSE);
    RealizePalette(screen_->get());
  }
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;
  ~Painting() {
    if (before_) SelectPalette(screen_->get(), before_, FALSE);
  }

  void Paint() {
    if (Vn_PaintDC(screen_->get(), picture_, nullptr, nullptr, &all_, nullptr, SRCCOPY) != OK) {
      std::abort();
    }
  }

 private:
  BitmapHandle* picture_;
  RECT all_;
  DisplayModeScope scope_;
  std::optional<ScreenDC> screen_;
  OwnedObject<HPALETTE> palette_;
  HPALETTE before_ = {};
};

}  // namespace vn::bench

#endif
