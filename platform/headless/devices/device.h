// What a context draws for: a display or a printer, with its abilities, its colours and, unless it
// has none, its own surface.
#ifndef VNCORE_PLATFORM_HEADLESS_DEVICE_H
#define VNCORE_PLATFORM_HEADLESS_DEVICE_H

#include <memory>
#include <vector>

#include <vncore/platform/headless/headless.h>
#include "platform/headless/devices/system_palette.h"
#include "platform/headless/surfaces/surface.h"

namespace headless {

struct Device {
  Headless_Display traits{};
  int32_t colors = 0;                      // NUMCOLORS of a printer; 0: as the depth has it
  std::unique_ptr<SystemPalette> palette;  // of a palette device
  std::vector<uint8_t> pixels;
  Surface surface;  // over `pixels`

  // The colours that the device's own pixels show, and those of bitmaps that are compatible with
  // it; null above 8 bits.
  std::shared_ptr<ColorTable> Colors() const;
};

// A device with a blank surface; null for traits that no device can have, or whose surface is
// larger than the free memory. Throws when memory fails.
std::shared_ptr<Device> MakeDevice(const Headless_Display& traits);

// The display in use.
const std::shared_ptr<Device>& Screen();

}  // namespace headless

#endif
