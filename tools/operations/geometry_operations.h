// The operations of vncore convert that move pixels.
#ifndef VNCORE_TOOLS_GEOMETRY_OPERATIONS_H
#define VNCORE_TOOLS_GEOMETRY_OPERATIONS_H

#include "kernel/pixel_format.h"
#include "tools/operations/operation.h"

namespace vn::tool {

// What the operations share, settled when they run.
struct GeometrySettings {
  Rgb background{255, 255, 255};  // what a turned or slanted picture uncovers
  bool keepSize = false;          // a turned picture keeps its size and is cut
};

// Their kinds, in the order of the help. `settings` outlives them.
std::vector<OperationKind> GeometryKinds(const GeometrySettings* settings);

// Brings a picture that a camera took in one of the eight positions of Exif (1 is upright) into the
// upright one.
void TurnUpright(Bitmap& bitmap, int32_t orientation);

}  // namespace vn::tool

#endif
