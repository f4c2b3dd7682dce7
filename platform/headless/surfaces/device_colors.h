// Colours of devices that have no settable palette.
#ifndef VNCORE_PLATFORM_HEADLESS_DEVICE_COLORS_H
#define VNCORE_PLATFORM_HEADLESS_DEVICE_COLORS_H

#include <memory>

#include "platform/headless/surfaces/surface.h"

namespace headless {

// 1 bit: black and white. 4 bits: the 16 VGA colours. 8 bits: the reserved colours at the two ends,
// and between them the value's own bits as levels, bbgggrrr, in steps of 64, 32 and 32. Null for
// deeper ones.
const std::shared_ptr<ColorTable>& FixedColors(uint32_t bits);

}  // namespace headless

#endif
