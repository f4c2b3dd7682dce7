// Palettes that libimagequant finds, for who wants better ones than the library's own.
#ifndef VNCORE_TOOLS_BEST_PALETTE_H
#define VNCORE_TOOLS_BEST_PALETTE_H

#include <vector>

#include <vncore/vncore.h>

namespace vn::tool {

// At most `count` (2 to 256) colours for the bitmap. Throws Failure, also where the tool was built
// without libimagequant, and Interruption.
std::vector<RGBQUAD> BestPalette(BitmapHandle* bitmap, uint32_t count);

}  // namespace vn::tool

#endif
