// Nearest-pixel scaling of a row over itself.
#include "geometry/scale_row_in_place.h"

#include <cstddef>
#include <cstring>

#include "kernel/pixel_format.h"
#include "kernel/stepper.h"

namespace vn {

namespace {

// From the row's end back to its start, one pixel a call. The source begins behind the last pixel
// of the old row.
class BackwardWalk {
 public:
  BackwardWalk(uint32_t remainder, uint32_t count) : remainder_(remainder), divisor_(count) {}
  // One destination pixel back; true when the source goes back by one as well.
  bool Back() {
    if (left_ >= remainder_) {
      left_ -= remainder_;
      return false;
    }
    left_ += divisor_ - remainder_;
    return true;
  }

 private:
  uint32_t remainder_, divisor_, left_ = 0;
};

template <size_t Bytes>
void EnlargeBytes(uint32_t oldWidth, uint8_t* row, uint32_t count) {
  BackwardWalk walk(oldWidth, count);
  size_t source = oldWidth;
  for (size_t d = count; d-- > 0;) {
    if (walk.Back()) --source;
    uint8_t pixel[Bytes];
    std::memcpy(pixel, row + source * Bytes, Bytes);
    std::memcpy(row + d * Bytes, pixel, Bytes);
  }
}

// Bits are only ever set, so a byte is zeroed when the walk enters it. The byte in which the new
// row ends is not, where the old row ends in it too: its old bits stay set.
void EnlargeBits(uint32_t oldWidth, uint8_t* row, uint32_t count) {
  BackwardWalk walk(oldWidth, count);
  size_t source = oldWidth >> 3;
  size_t target = count >> 3;
  uint32_t sourceMask = 0x80u >> (oldWidth & 7);
  uint32_t targetMask = 0x80u >> (count & 7);
  uint32_t cached = row[source];
  // With no pixel of the row in it the byte may lie behind the buffer.
  if (target > source && count & 7) row[target] = 0;
  for (uint32_t d = 0; d < count; ++d) {
    if (walk.Back()) {
      sourceMask <<= 1;
      if (sourceMask > 0x80) {
        cached = row[--source];
        sourceMask = 1;
      }
    }
    targetMask <<= 1;
    if (targetMask > 0x80) {
      row[--target] = 0;
      targetMask = 1;
    }
    if (cached & sourceMask) row[target] |= static_cast<uint8_t>(targetMask);
  }
}

// A left pixel is ORed into its byte, which its right neighbour has replaced just before. The last
// pixel of an odd row has none, and meets the old byte where the old row ends in it too.
void EnlargeNibbles(uint32_t oldWidth, uint8_t* row, uint32_t count) {
  BackwardWalk walk(oldWidth, count);
  uint32_t s = oldWidth;
  size_t source = s >> 1;
  size_t target = count >> 1;
  uint32_t cached = row[source];
  if (count & 1 && target > source) row[target] = 0;
  for (uint32_t d = count; d-- > 0;) {
    if (walk.Back()) {
      --s;
      if (s & 1) cached = row[--source];
    }
    switch ((s & 1) << 1 | (d & 1)) {
      case 0:
        row[target] |= static_cast<uint8_t>(cached & 0xF0);
        break;
      case 1:
        row[--target] = static_cast<uint8_t>(cached >> 4);
        break;
      case 2:
        row[target] |= static_cast<uint8_t>(cached << 4);
        break;
      case 3:
        row[--target] = static_cast<uint8_t>(cached & 0x0F);
        break;
    }
  }
}

void ShrinkBits(Stepper step, uint8_t* row, uint32_t count) {
  uint32_t p = 0;
  for (uint32_t d = 0; d < count; ++d, p += step.Advance()) {
    PutIndex<1>(row, d, IndexReader<1>::Get(row, p));
  }
}

// Within one and the same byte the nibbles are not told apart with care: a left nibble that stays
// left is not written, so the right one keeps its old value, and a right nibble is ORed with what
// is there. Pictures depend on it.
void ShrinkNibbles(Stepper step, uint8_t* row, uint32_t count) {
  uint32_t p = 0;
  for (uint32_t d = 0; d < count; ++d, p += step.Advance()) {
    uint8_t& target = row[d >> 1];
    const uint32_t source = row[p >> 1];
    const uint32_t selector = (p & 1) << 1 | (d & 1);
    if (p >> 1 != d >> 1) {
      switch (selector) {
        case 0:
          target = static_cast<uint8_t>(source & 0xF0);
          break;
        case 1:
          target |= static_cast<uint8_t>(source >> 4);
          break;
        case 2:
          target = static_cast<uint8_t>(source << 4);
          break;
        case 3:
          target |= static_cast<uint8_t>(source & 0x0F);
          break;
      }
    } else if (selector == 1) {
      target = static_cast<uint8_t>((source & 0xF0) | source >> 4);
    } else if (selector == 2) {
      target = static_cast<uint8_t>(source << 4 | (source & 0xF0));
    }
  }
}

}  // namespace

void ScaleRowInPlace(int32_t bitsPerPixel, uint32_t stepQuotient, uint32_t stepRemainder,
                     uint8_t* row, uint32_t count, bool backward) {
  // Backward the quotient is 0, and the remainder the old width.
  const Stepper step{stepQuotient, stepRemainder, count, 0};
  WithDepth(bitsPerPixel, [&](auto depth) {
    if constexpr (depth >= 8) {
      EnlargeBytes<depth / 8>(stepRemainder, row, count);
    } else if constexpr (depth == 4) {
      backward ? EnlargeNibbles(stepRemainder, row, count) : ShrinkNibbles(step, row, count);
    } else {
      backward ? EnlargeBits(stepRemainder, row, count) : ShrinkBits(step, row, count);
    }
  });
}

}  // namespace vn
