// The fixed palettes of 2, 16 and 256 colours. Dithering and painting compute indexes into them
// with shifts, so their values never change.
#ifndef VNCORE_COLOR_FIXED_PALETTES_H
#define VNCORE_COLOR_FIXED_PALETTES_H

#include <array>
#include <cstddef>

#include <vncore/vncore.h>

namespace vn {

namespace detail {

constexpr RGBQUAD Entry(unsigned red, unsigned green, unsigned blue) {
  return {static_cast<BYTE>(blue), static_cast<BYTE>(green), static_cast<BYTE>(red), 0};
}

// Index bits RRRGGGBB; levels are evenly spaced and rounded.
constexpr std::array<RGBQUAD, 256> MakeFixedPalette256() {
  constexpr auto kLevel = [](unsigned k) { return (k * 255 * 2 + 7) / 14; };
  std::array<RGBQUAD, 256> table{};
  for (unsigned i = 0; i < 256; ++i)
    table[i] = Entry(kLevel(i >> 5), kLevel(i >> 2 & 7), (i & 3) * 85);
  return table;
}

constexpr std::array<RGBQUAD, 256> MakeGrayRamp256() {
  std::array<RGBQUAD, 256> table{};
  for (unsigned i = 0; i < 256; ++i)
    table[i] = Entry(i, i, i);
  return table;
}

}  // namespace detail

inline constexpr std::array<RGBQUAD, 2> FixedPalette2 = {detail::Entry(0, 0, 0),
                                                         detail::Entry(255, 255, 255)};

// Bits of index minus 8: red, green, blue from bit 0 on, for the full colours 9 to 15.
inline constexpr std::array<RGBQUAD, 16> FixedPalette16 = {
    detail::Entry(0, 0, 0),      detail::Entry(128, 0, 0),     detail::Entry(0, 128, 0),
    detail::Entry(128, 128, 0),  detail::Entry(0, 0, 128),     detail::Entry(128, 0, 128),
    detail::Entry(0, 128, 128),  detail::Entry(128, 128, 128), detail::Entry(192, 192, 192),
    detail::Entry(255, 0, 0),    detail::Entry(0, 255, 0),     detail::Entry(255, 255, 0),
    detail::Entry(0, 0, 255),    detail::Entry(255, 0, 255),   detail::Entry(0, 255, 255),
    detail::Entry(255, 255, 255)};

inline constexpr std::array<RGBQUAD, 256> FixedPalette256 = detail::MakeFixedPalette256();

inline constexpr std::array<RGBQUAD, 256> GrayRamp256 = detail::MakeGrayRamp256();

}  // namespace vn

#endif
