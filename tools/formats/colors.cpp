#include "tools/formats/colors.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "tools/formats/samples.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

// Steps of linear light by which sRGB's curve is looked up: five a level where it is steepest.
constexpr size_t kLight = 1 << 14;

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;

Vector Times(const Matrix& m, const Vector& v) {
  Vector sum{};
  for (size_t i = 0; i < 3; ++i)
    sum[i] = m[i][0] * v[0] + m[i][1] * v[1] + m[i][2] * v[2];
  return sum;
}

// IEC 61966-2-1.
double SrgbCurve(double light) {
  return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

const std::array<uint8_t, kLight + 1>& SrgbLevels() {
  static const auto levels = [] {
    std::array<uint8_t, kLight + 1> made{};
    for (size_t i = 0; i <= kLight; ++i)
      made[i] = static_cast<uint8_t>(std::lround(255 * SrgbCurve(static_cast<double>(i) / kLight)));
    return made;
  }();
  return levels;
}

uint8_t LevelOf(double light) {
  const double at = std::clamp(light, 0.0, 1.0) * kLight + 0.5;
  return SrgbLevels()[static_cast<size_t>(at)];
}

// The inverse of the cube root with its line near black: CIE 15, section 8.2.1.
double FromCubeRoot(double t) {
  constexpr double kBend = 6.0 / 29;
  return t > kBend ? t * t * t : 3 * kBend * kBend * (t - 4.0 / 29);
}

}  // namespace

Inks::Inks(Metadata& metadata)
    : profile_(ToSrgb::Create(metadata.profile, ToSrgb::Samples::kInks)) {
  if (!profile_ && !metadata.profile.empty()) metadata.left.push_back("colour profile");
  DropProfile(metadata);
}

void Inks::Show(const uint8_t* inks, uint8_t* row, size_t pixels) const {
  if (profile_) return profile_->Apply(inks, row, pixels);
  for (size_t i = 0; i < pixels; ++i, inks += 4, row += 3) {
    const uint32_t light = 255u - inks[3];
    for (size_t channel = 0; channel < 3; ++channel)
      row[channel] = Lay(255u - inks[2 - channel], light, 0);
  }
}

Lab::Lab(double x, double y) {
  if (!(x > 0.1 && y > 0.1 && x + y < 0.95)) x = 0.34567, y = 0.35850;
  const Vector white = {x / y, 1, (1 - x - y) / y};
  // Bradford's method: cones see the one white as the other.
  constexpr Matrix kCones = {
      {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};
  constexpr Matrix kBack = {{{0.9869929, -0.1470543, 0.1599627},
                             {0.4323053, 0.5183603, 0.0492912},
                             {-0.0085287, 0.0400428, 0.9684867}}};
  constexpr Vector kWhite = {0.950456, 1, 1.089058};  // D65
  // Of the primaries of sRGB.
  constexpr Matrix kLight = {{{3.2409699, -1.5373832, -0.4986108},
                              {-0.9692436, 1.8759675, 0.0415551},
                              {0.0556301, -0.2039770, 1.0569715}}};
  const Vector from = Times(kCones, white), to = Times(kCones, kWhite);
  for (size_t i = 0; i < 3; ++i) {
    Vector column = {kCones[0][i] * white[i] * to[0] / from[0],
                     kCones[1][i] * white[i] * to[1] / from[1],
                     kCones[2][i] * white[i] * to[2] / from[2]};
    column = Times(kLight, Times(kBack, column));
    for (size_t channel = 0; channel < 3; ++channel)
      toLight_[channel][i] = column[channel];
  }
}

void Lab::Show(const uint16_t* lab, uint8_t* row, size_t pixels) const {
  for (size_t i = 0; i < pixels; ++i, lab += 3, row += 3) {
    const double l = (lab[0] * (100 / 65535.0) + 16) / 116;
    const double a = static_cast<int16_t>(lab[1]) / 256.0 / 500;
    const double b = static_cast<int16_t>(lab[2]) / 256.0 / 200;
    const double x = FromCubeRoot(l + a), y = FromCubeRoot(l), z = FromCubeRoot(l - b);
    for (size_t channel = 0; channel < 3; ++channel) {
      const double(&to)[3] = toLight_[2 - channel];
      row[channel] = LevelOf(to[0] * x + to[1] * y + to[2] * z);
    }
  }
}

std::unique_ptr<ToSrgb> TakeToSrgb(const std::string& path, Metadata& metadata,
                                   ToSrgb::Samples samples) {
  if (metadata.profile.empty()) return nullptr;
  auto transform = ToSrgb::Create(metadata.profile, samples);
  if (!transform) {
#ifdef VNCORE_TOOL_LCMS
    throw Failure(path + ": its colour profile cannot be used");
#else
    throw Failure(path + ": this vncore was built without lcms2 and uses no colour profiles");
#endif
  }
  DropProfile(metadata);
  return transform;
}

void PaletteToSrgb(const std::string& path, PictureInfo& info) {
  static_assert(sizeof(RGBQUAD) == 4);
  auto* const colors = reinterpret_cast<uint8_t*>(info.colors.data());
  const auto transform = TakeToSrgb(path, info.metadata, ToSrgb::Samples::kBgra);
  if (transform) transform->Apply(colors, colors, info.colors.size());
}

}  // namespace vn::tool
