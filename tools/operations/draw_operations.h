// Lines, figures and text of vncore convert, drawn through a device context over the bitmap.
#ifndef VNCORE_TOOLS_DRAW_OPERATIONS_H
#define VNCORE_TOOLS_DRAW_OPERATIONS_H

#include <optional>
#include <string>
#include <vector>

#include "tools/operations/operation.h"

namespace vn::tool {

// A colour to draw with, or none.
struct Ink {
  bool there;
  COLORREF color;
};

// What the next --draw takes, as --pen, --brush and --font have left it so far on the command line.
struct DrawSettings {
  Ink pen{true, RGB(0, 0, 0)};
  int32_t penWidth = 1;  // pixels
  Ink brush{false, RGB(255, 255, 255)};
  std::string face;  // empty: any
  bool bold = false, italic = false;
};

// --draw and the settings before it, which change `settings` when they are parsed.
std::vector<OperationKind> DrawKinds(DrawSettings* settings);

}  // namespace vn::tool

#endif
