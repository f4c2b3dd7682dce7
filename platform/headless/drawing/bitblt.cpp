// BitBlt, PatBlt, FillRect and GetPixel: drawing from context to context, and with no source at all.
#include <cstring>
#include <optional>

#include "platform/headless/devices/context.h"
#include "platform/headless/surfaces/blit.h"
#include "platform/headless/surfaces/pixel_rows.h"

namespace headless {
namespace {

// 0 and 1 stay what they are between monochrome bitmaps.
const PixelTable& SameMonochrome() {
  static const PixelTable table({0, 1}, LayoutOf(1));
  return table;
}

// A copy of some rows of a surface, for a job that writes to the pixels that it reads.
struct RowsCopy {
  RowsCopy(const Surface& from, int32_t firstRow, int32_t rowCount) : surface(from) {
    const auto bytes =
        static_cast<size_t>((static_cast<uint64_t>(from.width) * from.layout.bits + 7) / 8);
    memory.resize(bytes * static_cast<size_t>(rowCount));
    surface.top = memory.data();
    surface.pitch = static_cast<ptrdiff_t>(bytes);
    surface.height = rowCount;
    for (int32_t y = 0; y < rowCount; ++y)
      std::memcpy(surface.Row(y), from.Row(firstRow + y), bytes);
  }

  Surface surface;
  std::vector<uint8_t> memory;
};

bool PatternBlit(const Context& context, int x, int y, int width, int height, const Brush* brush,
                 RasterOp operation) {
  Surface* target = context.Target();
  if (!target) return false;
  Blit({target, context.state.clip.get(), MakeAxis(x, width, target->width),
        MakeAxis(y, height, target->height), nullptr, nullptr, brush, context.Monochrome(),
        operation});
  return true;
}
bool PatternBlit(const Context& context, int x, int y, int width, int height, RasterOp operation) {
  return PatternBlit(context, x, y, width, height, Find<Brush>(context.state.brush), operation);
}

// A source without colours of its own shows the target context's text and background colours; on a
// target without them the source context's background colour is 1 and all others are 0.
bool SourceBlit(const Context& context, int x, int y, int width, int height,
                const Context& sourceContext, int srcX, int srcY, RasterOp operation) {
  Surface* target = context.Target();
  const Surface* source = sourceContext.Target();
  if (!target || !source) return false;
  const Axis columns = MakeAxis(x, width, target->width, srcX, width, source->width);
  Axis rows = MakeAxis(y, height, target->height, srcY, height, source->height);
  if (columns.count == 0 || rows.count == 0) return true;

  std::optional<RowsCopy> copy;
  if (source->top == target->top) {
    source = &copy.emplace(*source, rows.source, rows.count).surface;
    rows.source = 0;
  }
  ColorTable monochrome;
  const ColorTable* colors = source->colors.get();
  if (source->monochrome()) {
    const MonochromeColors shown = context.Monochrome();
    monochrome.count = 2;
    monochrome.entries[0] = QuadOf(shown.text);
    monochrome.entries[1] = QuadOf(shown.background);
    colors = &monochrome;
  }
  const ColorMap map = source->monochrome() && target->monochrome()
                           ? ColorMap(source->layout, SameMonochrome(), *target)
                           : ColorMap(source->layout, colors, *target, sourceContext.Monochrome());
  Blit({target, context.state.clip.get(), columns, rows, source, &map,
        Find<Brush>(context.state.brush), context.Monochrome(), operation});
  return true;
}

}  // namespace
}  // namespace headless

using namespace headless;

BOOL BitBlt(HDC context, int x, int y, int width, int height, HDC source, int srcX, int srcY,
            DWORD rasterOp) {
  return Enter<BOOL>(FALSE, [&]() -> BOOL {
    const RasterOp operation(rasterOp);
    const auto* found = Find<Context>(context);
    if (!found) return FALSE;
    if (!operation.NeedsSource()) return PatternBlit(*found, x, y, width, height, operation);
    const auto* from = Find<Context>(source);
    return from && SourceBlit(*found, x, y, width, height, *from, srcX, srcY, operation);
  });
}

// Operations that need a source do nothing.
BOOL PatBlt(HDC context, int x, int y, int width, int height, DWORD rasterOp) {
  return Enter<BOOL>(FALSE, [&] {
    const RasterOp operation(rasterOp);
    const auto* found = Find<Context>(context);
    return found && !operation.NeedsSource() && PatternBlit(*found, x, y, width, height, operation);
  });
}

// Corners in any order: each side runs from the first one on.
int FillRect(HDC context, const RECT* rect, HBRUSH brush) {
  return Enter<int>(0, [&]() -> int {
    const auto* found = Find<Context>(context);
    const auto* fill = Find<Brush>(brush);
    const auto size = [](LONG from, LONG to) {
      return static_cast<int>(static_cast<uint32_t>(to) - static_cast<uint32_t>(from));
    };
    return found && fill &&
           PatternBlit(*found, rect->left, rect->top, size(rect->left, rect->right),
                       size(rect->top, rect->bottom), fill, RasterOp(PATCOPY));
  });
}

// CLR_INVALID outside of the surface or the clip. Monochrome pixels are black and white here.
COLORREF GetPixel(HDC context, int x, int y) {
  return Enter<COLORREF>(CLR_INVALID, [&]() -> COLORREF {
    const auto* found = Find<Context>(context);
    if (!found || !found->Shows(x, y)) return CLR_INVALID;
    const Surface& target = *found->Target();
    uint32_t pixel;
    LoadPixels(target.Row(y), target.layout.bits, x, 1, &pixel);
    return ColorRefOf(ColorOf(pixel, target));
  });
}
