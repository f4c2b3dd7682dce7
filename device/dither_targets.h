// What the row dithering loops make of a colour for devices of 1, 4 and 8 bits. The fixed palettes
// are laid out so that an index needs no search. Of the two larger ones each channel is settled by
// itself, so that a table by channel value holds all that a pixel needs.
#ifndef VNCORE_DEVICE_DITHER_TARGETS_H
#define VNCORE_DEVICE_DITHER_TARGETS_H

#include <algorithm>
#include <array>

#include "color/fixed_palettes.h"
#include "device/dither_rows.h"
#include "kernel/pixel_format.h"

namespace vn {

// A pixel given its index.
struct Quantized {
  uint32_t index;
  DiffusionCell error;  // colour wanted, its channels clamped to 0 to 255, less palette colour
  DiffusionCell right;  // 7 times that, for the pixel to the right
};

// A channel with the errors of the pixels around it, `sixteenths`, divided toward zero. It is
// raised by kRaise and so never negative: those errors take or add less than that. Written so that
// few steps lie between the errors of one pixel and the table look of the next.
inline constexpr uint32_t kRaise = 256;
inline uint32_t Raised(int32_t value, int32_t sixteenths) {
  const uint32_t wanted = (static_cast<uint32_t>(value) + kRaise) * 16;
  const auto errors = static_cast<uint32_t>(sixteenths);
  return (wanted + errors + (errors >> 28)) >> 4;  // 15 more for negative errors
}
struct RaisedRgb {
  uint32_t red, green, blue;
};

// Each target tells Nearest(): the index, and the error that it leaves.
template <int Bits>
struct Target;

// Two colours, by gray.
template <>
struct Target<1> {
  static Quantized Nearest(RaisedRgb wanted) {
    const auto clamped = [](uint32_t v) {
      return std::min(std::max(static_cast<int32_t>(v - kRaise), 0), 255);
    };
    const Rgb c = {clamped(wanted.red), clamped(wanted.green), clamped(wanted.blue)};
    const uint32_t index = GrayOf(c) > 127;
    const int32_t level = index ? 255 : 0;
    const DiffusionCell error = {c.red - level, c.green - level, c.blue - level};
    return {index, error, {7 * error.red, 7 * error.green, 7 * error.blue}};
  }
};

// One channel at one value.
struct ChannelLevel {
  int32_t right;  // 7 times the error
  int16_t error;
  uint8_t bits;  // of the index
};

// By raised value; those that leave 0 to 255 count as the ends.
class ChannelLevels {
 public:
  template <class BitsOf, class LevelOf>
  constexpr ChannelLevels(BitsOf bitsOf, LevelOf levelOf) {
    for (size_t i = 0; i < levels_.size(); ++i) {
      const int32_t value =
          std::clamp(static_cast<int32_t>(i) - static_cast<int32_t>(kRaise), 0, 255);
      const uint32_t bits = bitsOf(static_cast<uint32_t>(value));
      const int32_t error = value - levelOf(bits);
      levels_[i] = {7 * error, static_cast<int16_t>(error), static_cast<uint8_t>(bits)};
    }
  }
  const ChannelLevel& operator[](uint32_t raised) const { return levels_[raised]; }

 private:
  std::array<ChannelLevel, kRaise + 256 + kRaise> levels_{};
};

inline Quantized Combined(uint32_t index, const ChannelLevel& red, const ChannelLevel& green,
                          const ChannelLevel& blue) {
  return {index, {red.error, green.error, blue.error}, {red.right, green.right, blue.right}};
}

// Black and the seven full colours, which stand from 8 on; each channel is off or full.
template <>
struct Target<4> {
  static constexpr uint32_t IndexOf(uint32_t bits) { return bits | ((bits + 7) & 8); }

  static Quantized Nearest(RaisedRgb c) {
    const ChannelLevel &red = kRed[c.red], &green = kGreen[c.green], &blue = kBlue[c.blue];
    const auto bits = static_cast<uint32_t>(red.bits | green.bits | blue.bits);
    return Combined(IndexOf(bits), red, green, blue);
  }

  static const ChannelLevels kRed, kGreen, kBlue;
};

inline constexpr ChannelLevels Target<4>::kRed{
    [](uint32_t v) { return v >> 7; },
    [](uint32_t bits) -> int32_t { return FixedPalette16[IndexOf(bits)].rgbRed; }};
inline constexpr ChannelLevels Target<4>::kGreen{
    [](uint32_t v) { return v >> 7 << 1; },
    [](uint32_t bits) -> int32_t { return FixedPalette16[IndexOf(bits)].rgbGreen; }};
inline constexpr ChannelLevels Target<4>::kBlue{
    [](uint32_t v) { return v >> 7 << 2; },
    [](uint32_t bits) -> int32_t { return FixedPalette16[IndexOf(bits)].rgbBlue; }};

// Levels of 3, 3 and 2 bits.
template <>
struct Target<8> {
  static constexpr uint32_t RedBits(uint32_t v) { return v & 0xE0; }
  static constexpr uint32_t GreenBits(uint32_t v) { return v >> 3 & 0x1C; }
  static constexpr uint32_t BlueBits(uint32_t v) { return v >> 6; }

  static Quantized Nearest(RaisedRgb c) {
    const ChannelLevel &red = kRed[c.red], &green = kGreen[c.green], &blue = kBlue[c.blue];
    return Combined(static_cast<uint32_t>(red.bits | green.bits | blue.bits), red, green, blue);
  }

  static const ChannelLevels kRed, kGreen, kBlue;
};

inline constexpr ChannelLevels Target<8>::kRed{
    RedBits, [](uint32_t bits) -> int32_t { return FixedPalette256[bits].rgbRed; }};
inline constexpr ChannelLevels Target<8>::kGreen{
    GreenBits, [](uint32_t bits) -> int32_t { return FixedPalette256[bits].rgbGreen; }};
inline constexpr ChannelLevels Target<8>::kBlue{
    BlueBits, [](uint32_t bits) -> int32_t { return FixedPalette256[bits].rgbBlue; }};

}  // namespace vn

#endif
