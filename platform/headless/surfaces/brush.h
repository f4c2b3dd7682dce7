// Brushes: what fills.
#ifndef VNCORE_PLATFORM_HEADLESS_BRUSH_H
#define VNCORE_PLATFORM_HEADLESS_BRUSH_H

#include <memory>
#include <vector>

#include "platform/headless/objects/objects.h"
#include "platform/headless/surfaces/surface.h"

namespace headless {

class Brush : public Object {
 public:
  enum class Kind { kNull, kSolid, kPattern };

  explicit Brush(Kind fill, COLORREF solid = 0) : Object(OBJ_BRUSH), kind(fill), color(solid) {}
  int Describe(int bytes, void* result) const override;
  HGDIOBJ SelectInto(Context& context, HGDIOBJ self) override;

  const Kind kind;
  const COLORREF color;  // of a solid brush
  Surface pattern;       // of a pattern brush: a copy, over `memory`
  std::vector<uint8_t> memory;
};

// The stock brushes of this subset (WHITE_BRUSH, BLACK_BRUSH, NULL_BRUSH); null for any other.
HBRUSH StockBrush(int which);

}  // namespace headless

#endif
