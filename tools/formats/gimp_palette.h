// Palette files in the form of the GIMP (.gpl).
#ifndef VNCORE_TOOLS_GIMP_PALETTE_H
#define VNCORE_TOOLS_GIMP_PALETTE_H

#include <string>
#include <vector>

#include <vncore/vncore.h>

namespace vn::tool {

// The colours of the file, 1 to 256. Throws Failure.
std::vector<RGBQUAD> ReadGimpPalette(const std::string& path);

}  // namespace vn::tool

#endif
