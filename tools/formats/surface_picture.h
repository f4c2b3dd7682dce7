// What a surface of the headless platform shows, as a picture.
#ifndef VNCORE_TOOLS_SURFACE_PICTURE_H
#define VNCORE_TOOLS_SURFACE_PICTURE_H

#include <vncore/platform/headless/headless.h>
#include "tools/formats/picture.h"

namespace vn::tool {

// Paletted up to 8 bits, else 24 bits.
PictureInfo SurfaceInfo(const Headless_Surface& surface);
// Writes all rows. Throws Failure or Interruption.
void WriteSurface(const Headless_Surface& surface, PictureSink& sink);

}  // namespace vn::tool

#endif
