// Brushes and the stock objects.
#include "platform/headless/surfaces/brush.h"

#include <algorithm>
#include <cstring>

#include "platform/headless/objects/font.h"
#include "platform/headless/objects/palette.h"
#include "platform/headless/surfaces/bitmap.h"
#include "platform/headless/surfaces/pen.h"

namespace headless {

// A LOGBRUSH: style, colour, and a native word for the hatch or pattern.
int Brush::Describe(int bytes, void* result) const {
  struct LogBrush {
    UINT style;
    COLORREF color;
    ULONG_PTR hatch;
  };
  constexpr UINT kSolidStyle = 0, kNullStyle = 1, kPatternStyle = 3;
  if (!result) return sizeof(LogBrush);
  const LogBrush answer = {kind == Kind::kSolid     ? kSolidStyle
                           : kind == Kind::kPattern ? kPatternStyle
                                                    : kNullStyle,
                           color, 0};
  if (bytes <= 0) return 0;
  const size_t given = std::min(static_cast<size_t>(bytes), sizeof answer);
  std::memcpy(result, &answer, given);
  return static_cast<int>(given);
}

HBRUSH StockBrush(int which) {
  const auto make = [](Brush::Kind kind, COLORREF color) {
    return static_cast<HBRUSH>(AddStockObject(std::make_unique<Brush>(kind, color)));
  };
  static const HBRUSH white = make(Brush::Kind::kSolid, 0xFFFFFF);
  static const HBRUSH black = make(Brush::Kind::kSolid, 0x000000);
  static const HBRUSH null = make(Brush::Kind::kNull, 0);
  switch (which) {
    case WHITE_BRUSH:
      return white;
    case BLACK_BRUSH:
      return black;
    case NULL_BRUSH:
      return null;
    default:
      return nullptr;
  }
}

}  // namespace headless

using namespace headless;

HBRUSH CreateSolidBrush(COLORREF color) {
  return Enter<HBRUSH>(nullptr, [&] {
    return AddNew<HBRUSH>(std::make_unique<Brush>(Brush::Kind::kSolid, color & 0xFFFFFF));
  });
}

// The brush keeps a copy of the pattern: the bitmap can go or change.
HBRUSH CreatePatternBrush(HBITMAP pattern) {
  return Enter<HBRUSH>(nullptr, [&]() -> HBRUSH {
    const auto* bitmap = Find<Bitmap>(pattern);
    if (!bitmap) return nullptr;
    const Surface& from = bitmap->surface;
    auto brush = std::make_unique<Brush>(Brush::Kind::kPattern);
    const auto stride =
        static_cast<size_t>(RowBytes(static_cast<uint64_t>(from.width), from.layout.bits));
    brush->memory.resize(stride * static_cast<size_t>(from.height));
    brush->pattern = from;
    brush->pattern.top = brush->memory.data();
    brush->pattern.pitch = static_cast<ptrdiff_t>(stride);
    if (from.colors) brush->pattern.colors = std::make_shared<ColorTable>(*from.colors);
    for (int32_t y = 0; y < from.height; ++y) {
      std::memcpy(brush->pattern.Row(y), from.Row(y), stride);
    }
    return AddNew<HBRUSH>(std::move(brush));
  });
}

HGDIOBJ GetStockObject(int which) {
  return Enter<HGDIOBJ>(nullptr, [&]() -> HGDIOBJ {
    if (which == DEFAULT_PALETTE) return DefaultPalette();
    if (which == SYSTEM_FONT) return DefaultFont();
    if (HPEN pen = StockPen(which)) return pen;
    return StockBrush(which);
  });
}
