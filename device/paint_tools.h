// What the paints of a series need alike. A paint alone is a series of one.
#ifndef VNCORE_DEVICE_PAINT_TOOLS_H
#define VNCORE_DEVICE_PAINT_TOOLS_H

#include "device/band.h"
#include "device/row_output.h"

namespace vn {

// Made by the first paint of one bitmap on one device, by one plan, for those that follow.
struct PaintTools {
  PaintScratch scratch;
  RowOutput output;
  BandTable table;

  // Between two paints, when something that they depend on may have changed: the display mode, the
  // device, the bitmap, the thread's paint record.
  void Forget() {
    output = {};
    table = {};
  }
};

}  // namespace vn

#endif
