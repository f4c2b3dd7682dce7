#include "platform/headless/surfaces/pen.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace headless {

// A LOGPEN.
int Pen::Describe(int bytes, void* result) const {
  struct LogPen {
    UINT style;
    POINT width;
    COLORREF color;
  };
  if (!result) return sizeof(LogPen);
  if (bytes < static_cast<int>(sizeof(LogPen))) return 0;
  const LogPen answer = {width > 0 ? UINT{PS_SOLID} : UINT{PS_NULL}, {width, 0}, ink.color};
  std::memcpy(result, &answer, sizeof answer);
  return sizeof answer;
}

HPEN StockPen(int which) {
  const auto make = [](int32_t width, COLORREF color) {
    return static_cast<HPEN>(AddStockObject(std::make_unique<Pen>(width, color)));
  };
  static const HPEN pens[] = {make(1, 0xFFFFFF), make(1, 0x000000), make(0, 0)};
  return which >= WHITE_PEN && which <= NULL_PEN ? pens[which - WHITE_PEN] : nullptr;
}

}  // namespace headless

using namespace headless;

// A width of 0 is one pixel as well; its sign is not looked at.
HPEN CreatePen(int style, int width, COLORREF color) {
  return Enter<HPEN>(nullptr, [&]() -> HPEN {
    constexpr int kWidest = 1 << 14;
    if ((style != PS_SOLID && style != PS_NULL) || width < -kWidest || width > kWidest)
      return nullptr;
    const int32_t across = style == PS_NULL ? 0 : std::max(1, std::abs(width));
    return AddNew<HPEN>(std::make_unique<Pen>(across, color & 0xFFFFFF));
  });
}
