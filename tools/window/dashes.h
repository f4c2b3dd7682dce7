// The outline of a bitmap's region in marching dashes.
#ifndef VNCORE_TOOLS_DASHES_H
#define VNCORE_TOOLS_DASHES_H

#include <array>

#include <vncore/vncore.h>
#include "tools/window/surface_texture.h"

namespace vn::tool {

// The library draws each of the eight frames once on the screen, on which it stays; what marches is
// their textures. For each frame that is drawn one platform region lives on, so drawing them over
// and over would exhaust memory and handles.
class Dashes {
 public:
  static constexpr uint32_t kFrames = 8;

  // The region, the view or the screen has changed.
  void Forget() { drawn_.fill(false); }
  // Draws frame `frame` in the window. `transform` leads from the bitmap to the screen. Throws
  // Failure.
  void Draw(SDL_Renderer* renderer, BitmapHandle* bitmap, const RegionTransform& transform,
            uint32_t frame);

 private:
  std::array<bool, kFrames> drawn_{};
  std::array<SurfaceTexture, kFrames> frames_;
};

}  // namespace vn::tool

#endif
