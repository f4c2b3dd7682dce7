// What a context can do, and the system palette of its device.
#include <algorithm>

#include "platform/headless/devices/context.h"

namespace headless {
namespace {

// Everything that a raster display of this platform does: BitBlt, banding of bitmaps beyond 64 KB,
// GetDIBits and SetDIBits, DIBs to the device, StretchBlt, StretchDIBits.
constexpr int kRasterAbilities = 0x0001 | 0x0008 | 0x0080 | 0x0200 | 0x0800 | 0x2000;

int Millimetres(int32_t pixels, int32_t dotsPerInch) {
  return static_cast<int>(static_cast<int64_t>(pixels) * 254 / (int64_t{dotsPerInch} * 10));
}

// A memory context answers with the depth of its bitmap, so that any surface can be painted on.
int DepthOf(const Context& context) {
  const Surface* target = context.Target();
  return target ? static_cast<int>(target->layout.bits) : context.device().traits.bitsPerPixel;
}

int Capability(const Context& context, int index) {
  const Headless_Display& traits = context.device().traits;
  const int bits = DepthOf(context);
  switch (index) {
    case TECHNOLOGY:
      return traits.technology;
    case HORZSIZE:
      return Millimetres(traits.width, traits.dotsPerInch);
    case VERTSIZE:
      return Millimetres(traits.height, traits.dotsPerInch);
    case HORZRES:
      return traits.width;
    case VERTRES:
      return traits.height;
    case BITSPIXEL:
      return bits;
    case PLANES:
      return 1;
    case NUMCOLORS:  // a palette device counts the colours that it reserves
      if (context.device().colors) return context.device().colors;
      if (traits.paletteDevice) return traits.reservedColors;
      return bits <= 8 ? 1 << bits : -1;
    case RASTERCAPS:
      return kRasterAbilities | (traits.paletteDevice ? RC_PALETTE : 0);
    case LOGPIXELSX:
    case LOGPIXELSY:
      return traits.dotsPerInch;
    case SIZEPALETTE:
      return traits.paletteDevice ? 256 : 0;
    case NUMRESERVED:
      return traits.paletteDevice ? traits.reservedColors : 0;
    case COLORRES:  // bits of a colour, all channels together
      return traits.paletteDevice ? 18 : std::min(bits, 24);
    default:
      return 0;
  }
}

}  // namespace
}  // namespace headless

using namespace headless;

int GetDeviceCaps(HDC context, int index) {
  return Enter<int>(0, [&] {
    const auto* found = Find<Context>(context);
    return found ? Capability(*found, index) : 0;
  });
}

// Null entries ask for the number of colours.
UINT GetSystemPaletteEntries(HDC context, UINT first, UINT count, LPPALETTEENTRY entries) {
  return Enter<UINT>(0, [&]() -> UINT {
    const auto* found = Find<Context>(context);
    if (!found || !found->device().palette) return 0;
    const ColorTable& colors = *found->device().palette->colors();
    if (!entries) return colors.count;
    if (first >= colors.count) return 0;
    const UINT given = std::min<UINT>(count, colors.count - first);
    for (UINT i = 0; i < given; ++i) {
      const RGBQUAD& color = colors.entries[first + i];
      entries[i] = {color.rgbRed, color.rgbGreen, color.rgbBlue, 0};
    }
    return given;
  });
}

HPALETTE SelectPalette(HDC context, HPALETTE palette, BOOL forceBackground) {
  return Enter<HPALETTE>(nullptr, [&]() -> HPALETTE {
    auto* found = Find<Context>(context);
    if (!found || !Find<Palette>(palette)) return nullptr;
    found->state.backgroundPalette = forceBackground != FALSE;
    return std::exchange(found->state.palette, palette);
  });
}

UINT RealizePalette(HDC context) {
  return Enter<UINT>(0, [&]() -> UINT {
    const auto* found = Find<Context>(context);
    Palette* palette = found ? found->SelectedPalette() : nullptr;
    if (!palette || !found->device().palette) return 0;
    return found->device().palette->Realize(*palette, found->state.backgroundPalette);
  });
}
