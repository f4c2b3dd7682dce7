// Error diffusion to the fixed palettes by groups of lines, where the machine has vectors for it:
// what dithering of lines and of paints share. The indexes are those of the plain loops.
#ifndef VNCORE_COLOR_DIFFUSION_WAVE_H
#define VNCORE_COLOR_DIFFUSION_WAVE_H

#include "color/color_rows.h"
#include "color/diffusion_wave_avx2.h"
#include "color/dither_blocks.h"

namespace vn {

class DiffusionWave {
 public:
  static constexpr uint32_t kLines = kWaveLines;

  // A picture to be dithered: `height` lines of `width` pixels, by a method from 1 to 6, to the whole
  // fixed palette of `targetBits`. Red and blue of the source are exchanged for `swap`.
  struct Form {
    int32_t sourceBits;
    bool swap;
    const RGBQUAD* colors;  // of sources of up to 8 bits
    int32_t method;
    int32_t targetBits;
    uint64_t width, height;
  };

  // Bytes of memory that it needs; 0 where the plain loops are to run.
  static uint64_t MemoryFor(const Form& form);

  // Without memory, nothing is to be called but the test.
  DiffusionWave() = default;
  // `memory`: zeroed, and there as long as this is used.
  DiffusionWave(const Form& form, uint8_t* memory);
  explicit operator bool() const { return loop_; }

  // Gives the next group's lines, from 0 on: `width` pixels from pixel `first` of `source` on, which
  // is below 8 and 0 from 8 bits up. The picture's last group may lack lines.
  void Put(uint32_t line, const uint8_t* source, uint32_t first);
  // Dithers them.
  void Run() { loop_(group_); }
  // Writes the indexes of one. Bits of a last byte behind the last pixel keep what they held.
  void Take(uint32_t line, uint8_t* target) const;

 private:
  WaveLoop* loop_ = nullptr;
  ColorRow read_ = nullptr;
  const RGBQUAD* colors_ = nullptr;
  WriteIndexesProc write_ = nullptr;
  uint8_t* pixels_ = nullptr;  // what group_ reads
  WaveGroup group_{};
};

}  // namespace vn

#endif
