// Ternary raster operations.
#ifndef VNCORE_PLATFORM_HEADLESS_RASTER_OP_H
#define VNCORE_PLATFORM_HEADLESS_RASTER_OP_H

#include <cstdint>

namespace headless {

// The operation's third byte is its truth table: bit 4P + 2S + D tells the result of the three
// bits of pattern, source and destination.
class RasterOp {
 public:
  explicit RasterOp(uint32_t rasterOp) : truth_(static_cast<uint8_t>(rasterOp >> 16)) {}

  bool NeedsPattern() const { return (truth_ >> 4 & 0x0F) != (truth_ & 0x0F); }
  bool NeedsSource() const { return (truth_ >> 2 & 0x33) != (truth_ & 0x33); }
  bool NeedsTarget() const { return (truth_ >> 1 & 0x55) != (truth_ & 0x55); }
  bool CopiesSource() const { return truth_ == 0xCC; }

  // target = f(pattern, source, target) for words of pixels, all bits of a word at once.
  void Combine(int32_t count, const uint32_t* pattern, const uint32_t* source,
               uint32_t* target) const;

 private:
  uint8_t truth_;
};

// What a binary operation of pen and target (R2_) is among the ternary ones.
inline RasterOp BinaryOp(int operation) {
  const auto truth = static_cast<uint32_t>(operation - 1);  // bit 2P + D
  return RasterOp(((truth & 3) * 0x05 | (truth >> 2) * 0x50) << 16);
}

}  // namespace headless

#endif
