// Palettes that the tool knows by name: those of devices.
#ifndef VNCORE_TOOLS_NAMED_PALETTES_H
#define VNCORE_TOOLS_NAMED_PALETTES_H

#include <optional>
#include <span>
#include <string>
#include <vector>

#include <vncore/vncore.h>

namespace vn::tool {

struct NamedPalette {
  const char* name;
  const char* about;
  std::span<const uint32_t> colors;  // 0xRRGGBB
};

// In the order of the list.
std::span<const NamedPalette> NamedPalettes();
// "ega", "epaper-7"
std::optional<std::vector<RGBQUAD>> FindNamedPalette(const std::string& name);
// The same, or the colours of a GIMP palette file. Throws Failure.
std::vector<RGBQUAD> NamedOrFilePalette(const std::string& text);

}  // namespace vn::tool

#endif
