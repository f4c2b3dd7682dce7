// Pixels of the headless platform as a texture of the window.
#ifndef VNCORE_TOOLS_SURFACE_TEXTURE_H
#define VNCORE_TOOLS_SURFACE_TEXTURE_H

#include <vector>

#include <vncore/platform/headless/headless.h>
#include "tools/window/window.h"

namespace vn::tool {

class SurfaceTexture {
 public:
  explicit operator bool() const { return static_cast<bool>(texture_); }

  // Takes the colours that `area` of the surface shows; nothing of an empty area. Throws Failure.
  void Take(SDL_Renderer* renderer, const Headless_Surface& surface, const RECT& area);
  void Forget() { texture_.reset(); }
  // Draws it where it was taken, pixel for pixel.
  void Draw(SDL_Renderer* renderer) const;

 private:
  OwnedTexture texture_;
  SDL_Rect place_{};
  std::vector<uint32_t> row_, pixels_;
};

}  // namespace vn::tool

#endif
