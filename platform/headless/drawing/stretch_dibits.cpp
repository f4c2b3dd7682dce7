// StretchDIBits: a picture of the caller's drawn on a context.
#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "platform/headless/devices/context.h"
#include "platform/headless/drawing/dib_runs.h"
#include "platform/headless/memory/free_memory.h"
#include "platform/headless/surfaces/blit.h"

namespace headless {
namespace {

Headless_StretchObserver observer = nullptr;
void* observerData = nullptr;

// Whether the context draws on pixels whose values are indexes of its device's system palette.
bool OnSystemPalette(const Context& context, const Surface& target) {
  return context.device().palette && target.colors == context.device().palette->colors();
}

// Palette indexes of a DIB to system indexes, through a realised palette: no colour is looked at.
// What was translated last is kept, since a picture comes in many small parts. Guarded by the lock
// of every call.
const PixelTable& RealizedIndexes(const DibFormat& format, const Palette& palette) {
  static uint8_t lastTable[256 * sizeof(WORD)];
  static size_t lastSize = 0;
  static std::vector<uint8_t> lastMapping;
  static PixelTable indexes;
  const size_t size = format.colorCount * sizeof(WORD);
  if (size == lastSize && indexes.bits() == format.layout.bits &&
      std::memcmp(format.table, lastTable, size) == 0 && palette.mapping == lastMapping) {
    return indexes;
  }
  lastSize = 0;
  lastMapping = palette.mapping;
  std::memcpy(lastTable, format.table, size);
  lastSize = size;
  std::array<uint32_t, 256> mapped{};
  for (uint32_t i = 0; i < format.colorCount; ++i) {
    WORD index;
    std::memcpy(&index, format.table + i * sizeof index, sizeof index);
    mapped[i] = palette.mapping[index % palette.mapping.size()];
  }
  return indexes = PixelTable(mapped, format.layout);
}

// The palette of a DIB that goes that way, or null.
const Palette* ThroughRealized(const DibFormat& format, UINT usage, const Context& context,
                               const Surface& target) {
  if (usage != DIB_PAL_COLORS || !format.layout.indexed() || !OnSystemPalette(context, target)) {
    return nullptr;
  }
  const Palette* palette = context.SelectedPalette();
  return palette && !palette->mapping.empty() && context.device().palette->Holds(*palette)
             ? palette
             : nullptr;
}

// Whether a stretch of pixels from `first` on, of either sign, has one from 0 to limit - 1.
bool Meets(int32_t first, int32_t size, int32_t limit) {
  const int64_t end = int64_t{first} + size;
  return std::min<int64_t>(first, end) < limit && std::max<int64_t>(first, end) > 0 && size != 0;
}

// Rectangles moved by x and y, and cut by a surface and its clip where there is one.
ClipRects Reached(const ClipRects& rects, int32_t x, int32_t y, const Surface& target,
                  const ClipRects* clip) {
  const ClipRects whole = {{0, 0, target.width, target.height}};
  ClipRects moved;
  for (const RECT& r : rects) {
    for (const RECT& c : clip ? *clip : whole) {
      const auto left = std::max<int64_t>(int64_t{r.left} + x, c.left);
      const auto top = std::max<int64_t>(int64_t{r.top} + y, c.top);
      const auto right = std::min<int64_t>(int64_t{r.right} + x, c.right);
      const auto bottom = std::min<int64_t>(int64_t{r.bottom} + y, c.bottom);
      if (left >= right || top >= bottom) continue;
      moved.push_back({static_cast<LONG>(left), static_cast<LONG>(top), static_cast<LONG>(right),
                       static_cast<LONG>(bottom)});
    }
  }
  return moved;
}

// The DIB's pixels in values that `map` translates.
int DrawPixels(const Headless_StretchCall& call, const DibFormat& format, const ColorMap& map,
               const Context& context, Surface& target) {
  const auto* rowsGiven = static_cast<const uint8_t*>(call.bits);
  DecodedRuns decoded;
  if (format.runBytes) {
    if (!FitsInMemory(format.bytes())) return 0;
    decoded = DecodeRuns(format, rowsGiven, format.runBytes);
    rowsGiven = decoded.bits.data();
  }
  // The source is only read.
  const Surface source = DibSurface(format, const_cast<uint8_t*>(rowsGiven));
  if (!Meets(call.srcX, call.srcWidth, format.width) ||
      !Meets(call.srcY, call.srcHeight, format.height)) {
    return 0;
  }
  // A plain copy counts source rows from the lowest one, in top-down DIBs too, unless it is one to
  // one from the corner. Other operations count them from the first one in memory.
  const bool copies = call.rasterOp == SRCCOPY;
  const bool fromCorner = call.srcX == 0 && call.srcY == 0 && call.width == call.srcWidth &&
                          call.height == call.srcHeight;
  const int64_t fromTop = int64_t{format.height} - call.srcY - call.srcHeight;
  // What lies out of reach is no part of a picture, wherever it is.
  const int32_t srcY =
      format.topDown && (!copies || fromCorner)
          ? call.srcY
          : static_cast<int32_t>(std::clamp<int64_t>(fromTop, INT32_MIN, INT32_MAX));
  const Axis columns =
      MakeAxis(call.x, call.width, target.width, call.srcX, call.srcWidth, format.width);
  const Axis rows =
      MakeAxis(call.y, call.height, target.height, srcY, call.srcHeight, format.height);
  // What no code reaches is left alone in a plain copy from the corner, and is 0 in all others.
  const ClipRects* clip = context.state.clip.get();
  ClipRects reached;
  if (format.runBytes && copies && fromCorner) {
    reached = Reached(decoded.reached, call.x, call.y, target, clip);
    clip = &reached;
  }
  const RasterOp operation(call.rasterOp);
  const Brush* brush = operation.NeedsPattern() ? Find<Brush>(context.state.brush) : nullptr;
  Blit({&target, clip, columns, rows, &source, &map, brush, context.Monochrome(), operation});
  return copies || !format.topDown ? format.height : -format.height;
}

int Draw(const Headless_StretchCall& call) {
  const auto* context = Find<Context>(call.context);
  Surface* target = context ? context->Target() : nullptr;
  DibFormat format;
  if (!target || !call.bits || call.usage > DIB_PAL_COLORS ||
      !ReadDibFormat(call.info, &format, true)) {
    return 0;
  }
  if (const Palette* palette = ThroughRealized(format, call.usage, *context, *target)) {
    const ColorMap map(format.layout, RealizedIndexes(format, *palette), *target);
    return DrawPixels(call, format, map, *context, *target);
  }
  ColorTable colors;
  if (!ReadDibColors(format, call.usage, context, &colors)) return 0;
  // In a monochrome target the DIB's white is 1, whatever the context's background colour is.
  const ColorMap map(format.layout, &colors, *target, MonochromeColors{});
  return DrawPixels(call, format, map, *context, *target);
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
