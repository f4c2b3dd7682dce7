// The headless screen, and the window that shows it.
#ifndef VNCORE_TOOLS_STAGE_H
#define VNCORE_TOOLS_STAGE_H

#include <optional>

#include "tools/operations/bitmap.h"
#include "tools/operations/headless_device.h"
#include "tools/window/dashes.h"
#include "tools/window/surface_texture.h"
#include "tools/window/view.h"
#include "tools/window/window.h"

namespace vn::tool {

struct ScreenSettings {
  int32_t bits = 24;
  uint32_t mode = MODE_DEVICE_INDEXES | MODE_DITHER;  // MODE_ bits
};

// All that paints or draws throws Failure.
class Stage {
 public:
  Stage(Size window, const ScreenSettings& settings);

  Window& window() { return window_; }
  // How the picture lies. What changes it shows with the next paint.
  View& view() { return view_; }
  const View& view() const { return view_; }

  // A new screen, black, as large as the window is now.
  void Rebuild(const ScreenSettings& settings);
  const ScreenSettings& settings() const { return settings_; }

  // Where a paint of the bitmap brings it.
  Painting PaintingOf(Bitmap& bitmap) const;
  void Paint(Bitmap& bitmap);
  // The same with an effect that takes `seconds`, over `before` or else from black; where the bitmap
  // has a region, there alone. False when the user wants something else: the event is in the queue.
  bool RunEffect(Bitmap& bitmap, uint32_t effect, double seconds, const Painting* before);
  // Brings to the window what was painted, with marching dashes around the bitmap's region.
  void Present(Bitmap& bitmap);
  // Milliseconds until the dashes march on; 0 when they ought to have.
  uint32_t MarchDue() const;

 private:
  void Take();

  Window window_;
  ScreenSettings settings_;
  std::optional<HeadlessDevice> device_;
  View view_;
  SurfaceTexture screen_;
  Dashes dashes_;
  uint32_t step_ = 0;  // of the march
};

}  // namespace vn::tool

#endif
