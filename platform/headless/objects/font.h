// Fonts as the caller describes them. What face answers the description is found when text is
// drawn.
#ifndef VNCORE_PLATFORM_HEADLESS_FONT_H
#define VNCORE_PLATFORM_HEADLESS_FONT_H

#include <string>

#include "platform/headless/objects/objects.h"

namespace headless {

struct FontTraits {
  // Pixels: of the em square when negative, of the cell (ascent and descent) when positive; 0: 16.
  int32_t height = 0;
  int32_t weight = FW_NORMAL;  // 1 to 1000
  bool italic = false, underline = false, strikeOut = false;
  bool smooth = true;  // edges may be shaded where the surface has the colours
  std::string face;    // empty: any

  bool operator==(const FontTraits&) const = default;
};

class Font : public Object {
 public:
  explicit Font(FontTraits wanted) : Object(OBJ_FONT), traits(std::move(wanted)) {}
  HGDIOBJ SelectInto(Context& context, HGDIOBJ self) override;

  const FontTraits traits;
};

// The font that contexts begin with.
HFONT DefaultFont();

}  // namespace headless

#endif
