#include "tools/window/surface_texture.h"

#include <algorithm>
#include <cstring>

#include <vncore/vncore.h>
#include "kernel/pixel_format.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

// A row in 32 bits with blue first, which are SDL's words of red, green and blue.
void TakeRow(const Headless_Surface& surface, int32_t y, uint32_t* row) {
  const auto width = static_cast<uint32_t>(surface.width);
  const auto bits = static_cast<uint32_t>(surface.bitsPerPixel);
  std::memcpy(row, surface.bits + ptrdiff_t{y} * surface.stride, (size_t{width} * bits + 7) / 8);
  if (bits < 32) {
    Vn_ConvertBuffer(row, width, bits, 32, ORDER_BGR, ORDER_BGR, surface.colors, nullptr);
  }
}

}  // namespace

void SurfaceTexture::Take(SDL_Renderer* renderer, const Headless_Surface& surface,
                          const RECT& area) {
  const SDL_Rect place{static_cast<int>(area.left), static_cast<int>(area.top),
                       static_cast<int>(area.right - area.left),
                       static_cast<int>(area.bottom - area.top)};
  if (!texture_ || place.w != place_.w || place.h != place_.h) {
    texture_.reset(SDL_CreateTexture(renderer, SDL_PIXELFORMAT_RGB888, SDL_TEXTUREACCESS_STREAMING,
                                     place.w, place.h));
    if (!texture_) throw Failure(std::string("cannot draw in a window: ") + SDL_GetError());
  }
  place_ = place;
  const auto width = static_cast<size_t>(place.w);
  row_.resize(static_cast<size_t>(surface.width));
  pixels_.resize(width * static_cast<size_t>(place.h));
  for (int32_t y = 0; y < place.h; ++y) {
    TakeRow(surface, place.y + y, row_.data());
    std::copy_n(row_.data() + place.x, width, pixels_.data() + width * static_cast<size_t>(y));
  }
  SDL_UpdateTexture(texture_.get(), nullptr, pixels_.data(), place.w * 4);
}

void SurfaceTexture::Draw(SDL_Renderer* renderer) const {
  if (texture_) SDL_RenderCopy(renderer, texture_.get(), nullptr, &place_);
}

}  // namespace vn::tool
