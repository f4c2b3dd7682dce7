// StretchDIBits: a picture of the caller's drawn on a context.
#include <algorithm>
#include <cstring>
#include <optional>

#include "platform/headless/blit.h"
#include "platform/headless/context.h"
#include "platform/headless/dib_format.h"

namespace headless {
namespace {

Headless_StretchObserver observer = nullptr;
void* observerData = nullptr;

// Whether the context draws on pixels whose values are indexes of its device's system palette.
bool OnSystemPalette(const Context& context, const Surface& target) {
  return context.device().palette && target.colors == context.device().palette->colors();
}

// Palette indexes of the DIB to system indexes, through the realised palette: no colour is looked
// at. Null where it does not hold.
std::optional<ColorMap> RealizedMap(const DibFormat& format, UINT usage, const Context& context,
                                    const Surface& target) {
  const Palette* palette = context.SelectedPalette();
  if (usage != DIB_PAL_COLORS || !format.layout.indexed() || !palette || palette->mapping.empty() ||
      !OnSystemPalette(context, target) || !context.device().palette->Holds(*palette)) {
    return std::nullopt;
  }
  std::array<uint32_t, 256> table{};
  for (uint32_t i = 0; i < format.colorCount; ++i) {
    WORD index;
    std::memcpy(&index, format.table + i * sizeof index, sizeof index);
    table[i] = palette->mapping[index % palette->mapping.size()];
  }
  return ColorMap(format.layout, table, target);
}

// Whether a stretch of pixels from `first` on, of either sign, has one from 0 to limit - 1.
bool Meets(int32_t first, int32_t size, int32_t limit) {
  const int64_t end = int64_t{first} + size;
  return std::min<int64_t>(first, end) < limit && std::max<int64_t>(first, end) > 0 && size != 0;
}

int Draw(const Headless_StretchCall& call) {
  const auto* context = Find<Context>(call.context);
  Surface* target = context ? context->Target() : nullptr;
  DibFormat format;
  ColorTable colors;
  if (!target || !call.bits || call.usage > DIB_PAL_COLORS || !ReadDibFormat(call.info, &format) ||
      !ReadDibColors(format, call.usage, context, &colors)) {
    return 0;
  }
  // The source is only read.
  const Surface source =
      DibSurface(format, const_cast<uint8_t*>(static_cast<const uint8_t*>(call.bits)));
  const MonochromeColors monochrome = {RgbOf(context->state.text),
                                       RgbOf(context->state.background)};
  std::optional<ColorMap> map = RealizedMap(format, call.usage, *context, *target);
  // In a monochrome target the DIB's white is 1, whatever the context's background colour is.
  if (!map) map.emplace(format.layout, &colors, *target, MonochromeColors{});
  if (!Meets(call.srcX, call.srcWidth, format.width) ||
      !Meets(call.srcY, call.srcHeight, format.height)) {
    return 0;
  }
  // A plain copy counts source rows from the lowest one, in top-down DIBs too, unless it is one to
  // one from the corner. Other operations count them from the first one in memory.
  const bool copies = call.rasterOp == SRCCOPY;
  const bool fromCorner = call.srcX == 0 && call.srcY == 0 && call.width == call.srcWidth &&
                          call.height == call.srcHeight;
  const int32_t srcY = format.topDown && (!copies || fromCorner)
                           ? call.srcY
                           : format.height - call.srcY - call.srcHeight;
  const Axis columns =
      MakeAxis(call.x, call.width, target->width, call.srcX, call.srcWidth, format.width);
  const Axis rows =
      MakeAxis(call.y, call.height, target->height, srcY, call.srcHeight, format.height);
  Blit({target, context->state.clip.get(), columns, rows, &source, &*map,
        Find<Brush>(context->state.brush), monochrome, RasterOp(call.rasterOp)});
  return copies ? format.height : call.info->bmiHeader.biHeight;
}

}  // namespace
}  // namespace headless

using namespace headless;

void Headless_ObserveStretch(Headless_StretchObserver newObserver, void* data) {
  const std::lock_guard lock(GdiMutex());
  observer = newObserver;
  observerData = data;
}

// The number of rows of the DIB, with the sign of biHeight unless it is a plain copy; 0 for a
// failure and for a source rectangle outside of it.
int StretchDIBits(HDC context, int x, int y, int width, int height, int srcX, int srcY,
                  int srcWidth, int srcHeight, LPCVOID bits, const BITMAPINFO* info, UINT usage,
                  DWORD rasterOp) {
  const Headless_StretchCall call = {context,  x,         y,    width, height, srcX,    srcY,
                                     srcWidth, srcHeight, bits, info,  usage,  rasterOp};
  return Enter<int>(0, [&] {
    if (observer) observer(observerData, &call);
    return Draw(call);
  });
}
