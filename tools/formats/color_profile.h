// Colour profiles of the ICC: what they are, and colours in them as sRGB. ISO 15076-1.
#ifndef VNCORE_TOOLS_COLOR_PROFILE_H
#define VNCORE_TOOLS_COLOR_PROFILE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace vn::tool {

// What a profile's samples are, by its header alone.
enum class ProfileSpace { kNone, kGray, kRgb, kInks };
ProfileSpace SpaceOf(const std::string& profile);

// The name that the profile gives itself; empty where the tool was built without lcms2.
std::string ProfileName(const std::string& profile);

// Turns samples of 8 bits into sRGB ones.
class ToSrgb {
 public:
  // Alpha stays as it is. Inks, 255 being most of one, become 24-bit colours. A profile of gray, which
  // stays gray with the tone curve of sRGB, is also one of colours whose samples are equal.
  enum class Samples { kGray, kGrayAlpha, kBgr, kBgra, kInks };

  // Null for a profile that is damaged or of other samples, and where the tool was built without
  // lcms2.
  static std::unique_ptr<ToSrgb> Create(const std::string& profile, Samples samples);
  virtual ~ToSrgb() = default;

  // `to` may be `from`, but for inks.
  virtual void Apply(const uint8_t* from, uint8_t* to, size_t pixels) const = 0;
};

}  // namespace vn::tool

#endif
