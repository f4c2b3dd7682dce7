#include "tools/window/dashes.h"

#include "kernel/platform_objects.h"
#include "kernel/rects.h"
#include "tools/terminal/failure.h"

namespace vn::tool {

void Dashes::Draw(SDL_Renderer* renderer, BitmapHandle* bitmap, const RegionTransform& transform,
                  uint32_t frame) {
  if (!drawn_[frame]) {
    const ScreenDC screen;
    RECT bounds{};
    VnStatus status = Vn_GetBitmapRgnBounds(bitmap, &transform, &bounds);
    if (status == OK) status = Vn_FrameBitmapRgn(screen.get(), bitmap, &transform, frame);
    if (status != OK) throw Failure(StatusText(status));
    Headless_Surface surface;
    Headless_GetScreen(&surface);
    const RECT area{0, 0, surface.width, surface.height};
    if (IntersectRects(&bounds, bounds, area)) {
      frames_[frame].Take(renderer, surface, bounds);
    } else {
      frames_[frame].Forget();
    }
    drawn_[frame] = true;
  }
  frames_[frame].Draw(renderer);
}

}  // namespace vn::tool
