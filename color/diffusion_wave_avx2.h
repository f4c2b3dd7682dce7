// The vector form of error diffusion; only diffusion_wave.cpp calls it.
#ifndef VNCORE_COLOR_DIFFUSION_WAVE_AVX2_H
#define VNCORE_COLOR_DIFFUSION_WAVE_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

inline constexpr size_t kWaveLines = 16;
// What the loops touch beyond a line, in pixels: of colours and indexes behind its end, of sums to
// either side.
inline constexpr size_t kWaveMargin = 128;

// A group of kWaveLines lines.
struct WaveGroup {
  const uint8_t* pixels;  // blue, green, red; the margins are read, and do not count
  ptrdiff_t pixelStride;
  uint8_t* indexes;  // a byte each; what the margins get means nothing
  ptrdiff_t indexStride;
  // By channel, blue first, and row: the undivided sums that are aimed at the group's first lines,
  // and then those that it aims at the first lines behind it. As many rows as the filter reaches.
  int16_t* aimed[3][3];
  size_t width;
};
using WaveLoop = void(const WaveGroup& group);

// The loop for a method, 1 to 6, to the whole fixed palette of 1, 4 or 8 bits; null where sums
// could leave 16 bits.
WaveLoop* WaveLoopAvx2(int32_t method, int32_t paletteBits);

}  // namespace vn

#endif
