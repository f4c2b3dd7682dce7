// What the innermost loops of a combination are, and their two forms. No inline functions here: the
// vector form includes this.
#ifndef VNCORE_COMPOSE_COMBINE_WAYS_H
#define VNCORE_COMPOSE_COMBINE_WAYS_H

#include <cstddef>
#include <cstdint>

namespace vn {

// What is done around an operation: bits complemented before and after it, as words of 16 bits;
// whether source and destination change places in between; and how far source pixels lie to the
// right of where the target's lie in their bytes, 0 to 7 bits. A shifted target byte i takes the low
// 8 - shift bits of source[i] and the top `shift` bits of source[i + 1].
struct CombineOperands {
  uint16_t invertSource, invertDestination, invertResult;
  bool swapped;
  uint32_t shift;
};

// Bytes in a row that are all combined, but for seams: places where other bits lie in between. From
// byte `seam` on come `seamBytes` (up to 16) that are written as a mask tells, and again after each
// `seamPeriod` bytes; at least four vectors lie before, between and behind. Without any, `seam` is
// `bytes`. In the mask a long vector of ones comes before what is for the seam, and one behind.
struct CombineStretch {
  uint8_t* target;
  const uint8_t* source;
  size_t bytes;  // at least four vectors
  size_t seam, seamBytes, seamPeriod;
  const uint8_t* seamMask;
};

inline constexpr size_t kCombineVector = 32;  // bytes of the longest vector
inline constexpr size_t kCombineSeam = 16;    // and of a seam

// The ways of one loop, in place. Source and target are at the same address, or the target lies
// before the source, or all of it behind.
struct CombineLoop {
  // One vector.
  void (*one)(const CombineOperands& operands, uint8_t* target, const uint8_t* source);
  void (*along)(const CombineOperands& operands, const CombineStretch& stretch);
  size_t vectorBytes;
};

// What truth tables and operations come down to, complemented and swapped.
enum class CombineCore : uint8_t {
  kZero,
  kDestination,
  kSource,
  kAnd,
  kXor,
  kAdd,
  kMul,
  kDivide,  // destination by source
  kAverage,
  kMin
};

// Cores up to kXor have loops of their own for operands that are not complemented at all.
struct CombineShape {
  CombineCore core;
  int32_t channelBits;  // 4, 5 or 8; 8 for cores up to kXor
  bool shifted, inverted;
};

CombineLoop PlainCombineLoop(const CombineShape& shape);
CombineLoop CombineLoopAvx2(const CombineShape& shape);

}  // namespace vn

#endif
