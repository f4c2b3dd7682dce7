// Pens: what lines and outlines are drawn with.
#ifndef VNCORE_PLATFORM_HEADLESS_PEN_H
#define VNCORE_PLATFORM_HEADLESS_PEN_H

#include "platform/headless/surfaces/brush.h"

namespace headless {

// A solid pen with round ends and joins, or the one that leaves nothing behind.
class Pen : public Object {
 public:
  // `across` is in pixels, 0 for a null pen.
  Pen(int32_t across, COLORREF color)
      : Object(OBJ_PEN),
        width(across),
        ink(across > 0 ? Brush::Kind::kSolid : Brush::Kind::kNull, color) {}
  int Describe(int bytes, void* result) const override;
  HGDIOBJ SelectInto(Context& context, HGDIOBJ self) override;

  const int32_t width;
  const Brush ink;
};

// WHITE_PEN, BLACK_PEN and NULL_PEN; null for any other.
HPEN StockPen(int which);

}  // namespace headless

#endif
