#include "tools/formats/surface_picture.h"

#include <algorithm>

#include <vncore/vncore.h>
#include "tools/terminal/interrupt.h"

namespace vn::tool {

PictureInfo SurfaceInfo(const Headless_Surface& surface) {
  PictureInfo info;
  info.width = surface.width;
  info.height = surface.height;
  info.bits = surface.bitsPerPixel <= 8 ? surface.bitsPerPixel : 24;
  if (info.bits <= 8) info.colors.assign(surface.colors, surface.colors + (1 << info.bits));
  return info;
}

void WriteSurface(const Headless_Surface& surface, PictureSink& sink) {
  const auto width = static_cast<uint32_t>(surface.width);
  const int32_t bits = surface.bitsPerPixel;
  const bool converted = bits == 16 || bits == 32;
  std::vector<uint8_t> wide(converted ? StrideOf(width, 32) : 0);
  for (int32_t y = 0; y < surface.height; ++y) {
    ThrowIfInterrupted();
    const uint8_t* row = surface.bits + ptrdiff_t{y} * surface.stride;
    if (converted) {
      std::copy_n(row, StrideOf(width, static_cast<uint32_t>(bits)), wide.data());
      Vn_ConvertBuffer(wide.data(), width, bits, 24, ORDER_BGR, ORDER_BGR, nullptr, nullptr);
      row = wide.data();
    }
    sink.WriteRow(row);
  }
}

}  // namespace vn::tool
