// The colours that the system keeps for itself on a palette display.
#ifndef VNCORE_COLOR_SYSTEM_COLORS_H
#define VNCORE_COLOR_SYSTEM_COLORS_H

#include <vncore/vncore.h>

namespace vn {

// Copies the reserved colours of the screen's system palette to both ends of `colors`, flags bytes
// 0, and returns their number, at most `count`. 0 on a display without a palette.
uint32_t ReserveSystemColors(RGBQUAD* colors, uint32_t count);

}  // namespace vn

#endif
