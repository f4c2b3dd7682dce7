// The project's own test card, computed row by row at any size.
#ifndef VNCORE_TOOLS_CHART_H
#define VNCORE_TOOLS_CHART_H

#include "tools/formats/picture.h"

namespace vn::tool {

// From top to bottom: colour bars; gray, red, green, blue and hue gradients; a colour wheel, a zone
// plate and hairlines with a sector star; gray steps and flat patches. A frame of one white and one
// black pixel shows what is cut off.
class Chart : public PictureSource {
 public:
  Chart(int32_t width, int32_t height);

  const PictureInfo& Info() const override { return info_; }
  int32_t NextLine() const override { return line_; }
  void ReadRow(uint8_t* row) override;

 private:
  PictureInfo info_;
  int32_t line_ = 0;
};

}  // namespace vn::tool

#endif
