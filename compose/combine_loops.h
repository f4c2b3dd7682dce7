// The loops of combinations, written once on the compiler's vector types, and compiled twice: by
// combine_loops.cpp for any machine and by combine_loops_avx2.cpp for AVX2. So both forms are equal
// by construction. All is in an unnamed namespace: each file has its own copy, and the linker must
// not choose between them. Nothing else includes this.
#ifndef VNCORE_COMPOSE_COMBINE_LOOPS_H
#define VNCORE_COMPOSE_COMBINE_LOOPS_H

#include <cstring>
#include <type_traits>

#include "compose/combine_ways.h"

namespace vn {
namespace {

#ifdef __AVX2__
constexpr size_t kVector = 32;
#else
constexpr size_t kVector = 16;
#endif

typedef uint8_t Bytes __attribute__((vector_size(kVector)));
typedef uint16_t Words __attribute__((vector_size(kVector)));
typedef uint32_t Dwords __attribute__((vector_size(kVector)));
typedef int32_t Integers __attribute__((vector_size(kVector)));
typedef float Floats __attribute__((vector_size(kVector)));

inline Bytes Splat(uint8_t byte) { return Bytes{} + byte; }
inline Bytes SplatWord(uint16_t word) { return reinterpret_cast<Bytes>(Words{} + word); }
template <class Lanes>
inline Lanes Min(Lanes a, Lanes b) {
  return a < b ? a : b;
}

// The operations, on lanes that hold a channel each. `m`: the channel's maximum, 2^Bits - 1, in
// each lane. `Lanes`: the narrowest lanes in which an operation can work at 8 bits.
struct Add {
  using Lanes = Bytes;
  template <int, class L>
  static L Of(L d, L s, L m) {
    return d + Min(s, m - d);
  }
};
struct Mul {
  using Lanes = Words;
  // The quotient by 2^Bits - 1 is exact up to its square.
  template <int Bits, class L>
  static L Of(L d, L s, L) {
    const L product = d * s;
    return (product + 1 + (product >> Bits)) >> Bits;
  }
};
struct Divide {
  using Lanes = Dwords;
  // Exact: a quotient of 16 by 8 bits that is no whole number lies farther from one than a float
  // can err.
  template <int, class L>
  static L Of(L d, L s, L m) {
    const L none = s == 0;  // all ones where true
    const Floats dividend = __builtin_convertvector(reinterpret_cast<Integers>(d * m), Floats);
    const Floats divisor = __builtin_convertvector(reinterpret_cast<Integers>(s - none), Floats);
    const auto quotient =
        reinterpret_cast<L>(__builtin_convertvector(dividend / divisor, Integers));
    return Min(quotient, m) | (none & m);
  }
};
struct Average {
  using Lanes = Bytes;
  template <int, class L>
  static L Of(L d, L s, L) {
    return (d & s) + ((d ^ s) >> 1);
  }
};
struct Smaller {
  using Lanes = Bytes;
  template <int, class L>
  static L Of(L d, L s, L) {
    return Min(d, s);
  }
};

// Applies an operation to each field of Bits bits of the lanes; the unused bits become 0. At 16
// bits a pixel, lanes of 32 bits hold two words of three fields.
template <class Operation, int Bits, class Lanes>
inline Bytes InFields(Bytes d, Bytes s) {
  constexpr int kLaneBits = sizeof(Lanes{}[0]) * 8;
  constexpr int kUnit = Bits == 5 ? 16 : Bits;  // bits from one first field to the next
  const Lanes m = Lanes{} + ((1 << Bits) - 1);
  const auto from = reinterpret_cast<Lanes>(d), with = reinterpret_cast<Lanes>(s);
  Lanes result{};
#pragma GCC unroll 8
  for (int unit = 0; unit < kLaneBits; unit += kUnit) {
#pragma GCC unroll 8
    for (int at = unit; at + Bits <= unit + kUnit; at += Bits) {
      const auto field = [&](Lanes lanes) {
        return at + Bits == kLaneBits ? lanes >> at : lanes >> at & m;
      };
      result |= Operation::template Of<Bits>(field(from), field(with), m) << at;
    }
  }
  return reinterpret_cast<Bytes>(result);
}

// What a loop does with a vector of bytes, and which operands it reads. `kShort`: in so few
// instructions that a copy of them costs no more than a call. `kSwaps`: the operands may be asked
// for in turned order.
template <class Operation, int Bits>
struct Arithmetic {
  static constexpr bool kReadsTarget = true, kReadsSource = true;
  static constexpr bool kShort = Bits == 8 && sizeof(typename Operation::Lanes{}[0]) == 1;
  static constexpr bool kSwaps = std::is_same_v<Operation, Divide>;
  static Bytes Of(Bytes d, Bytes s) {
    if constexpr (Bits == 8) return InFields<Operation, 8, typename Operation::Lanes>(d, s);
    if constexpr (sizeof(typename Operation::Lanes{}[0]) > 2) {
      return InFields<Operation, Bits, typename Operation::Lanes>(d, s);
    }
    return InFields<Operation, Bits, Words>(d, s);
  }
};
template <bool ReadsTarget, bool ReadsSource>
struct Boolean {
  static constexpr bool kReadsTarget = ReadsTarget, kReadsSource = ReadsSource;
  static constexpr bool kShort = true, kSwaps = false;
};
struct Zero : Boolean<false, false> {
  static Bytes Of(Bytes, Bytes) { return Bytes{}; }
};
struct Destination : Boolean<true, false> {
  static Bytes Of(Bytes d, Bytes) { return d; }
};
struct Source : Boolean<false, true> {
  static Bytes Of(Bytes, Bytes s) { return s; }
};
struct And : Boolean<true, true> {
  static Bytes Of(Bytes d, Bytes s) { return d & s; }
};
struct Xor : Boolean<true, true> {
  static Bytes Of(Bytes d, Bytes s) { return d ^ s; }
};

template <class Lanes>
inline Lanes Load(const uint8_t* at) {
  Lanes lanes;
  std::memcpy(&lanes, at, sizeof lanes);
  return lanes;
}
inline void Store(uint8_t* at, Bytes lanes) { std::memcpy(at, &lanes, sizeof lanes); }

// One vector under an operation, and what it takes. It is local to a loop, where no store through a
// byte pointer can change it, and so stays in registers.
template <class Operation, bool Shifted, bool Inverted>
struct Step {
  explicit Step(const CombineOperands& operands)
      : invertSource(SplatWord(operands.invertSource)),
        invertTarget(SplatWord(operands.invertDestination)),
        invertResult(SplatWord(operands.invertResult)),
        leftMask(Splat(static_cast<uint8_t>(0xFF << operands.shift))),
        rightMask(Splat(static_cast<uint8_t>(0xFF >> (8 - operands.shift)))),
        swapMask(Splat(operands.swapped ? 0xFF : 0)),
        left(operands.shift),
        right(8 - operands.shift) {}

  Bytes Combine(Bytes d, Bytes s) const {
    if constexpr (!Inverted) return Operation::Of(d, s);
    d ^= invertTarget;
    s ^= invertSource;
    if constexpr (Operation::kSwaps) {
      const Bytes turned = (d ^ s) & swapMask;
      d ^= turned;
      s ^= turned;
    }
    return Operation::Of(d, s) ^ invertResult;
  }
  // For all places but the innermost loop.
  [[gnu::noinline]] Bytes CombineCalled(Bytes d, Bytes s) const { return Combine(d, s); }
  Bytes CombineRarely(Bytes d, Bytes s) const {
    return Operation::kShort ? Combine(d, s) : CombineCalled(d, s);
  }

  Bytes Joined(Bytes high, Bytes low) const {
    const auto upper = reinterpret_cast<Bytes>(reinterpret_cast<Words>(high) << left);
    const auto lower = reinterpret_cast<Bytes>(reinterpret_cast<Words>(low) >> right);
    return (upper & leftMask) | (lower & rightMask);
  }
  Bytes SourceAt(const uint8_t* source) const {
    if constexpr (!Operation::kReadsSource) return Bytes{};
    const auto s = Load<Bytes>(source);
    if constexpr (!Shifted) return s;
    return Joined(s, Load<Bytes>(source + 1));
  }
  Bytes TargetAt(const uint8_t* target) const {
    return Operation::kReadsTarget ? Load<Bytes>(target) : Bytes{};
  }
  // At an aligned target.
  void Apply(uint8_t* target, const uint8_t* source) const {
    target = static_cast<uint8_t*>(__builtin_assume_aligned(target, kVector));
    Store(target, Combine(TargetAt(target), SourceAt(source)));
  }

  Bytes invertSource, invertTarget, invertResult, leftMask, rightMask, swapMask;
  uint32_t left, right;
};

// The ways of a loop.
template <class Operation, bool Shifted, bool Inverted>
class Loop {
  using Vectors = Step<Operation, Shifted, Inverted>;

 public:
  static void One(const CombineOperands& operands, uint8_t* target, const uint8_t* source) {
    const Vectors step(operands);
    Store(target, step.CombineRarely(step.TargetAt(target), step.SourceAt(source)));
  }

  // All stores but those at the ends are aligned.
  static void Along(const CombineOperands& operands, const CombineStretch& stretch) {
    const Vectors step(operands);
    uint8_t* const target = stretch.target;
    const uint8_t* const source = stretch.source;
    const size_t aligned = kVector - reinterpret_cast<uintptr_t>(target) % kVector;
    Two(step, stretch, 0, aligned);
    size_t i = aligned + kVector;
    const size_t rest = stretch.bytes - 2 * kVector;  // from here on it is two vectors, or less
    for (size_t seam = stretch.seam; i < rest;) {
      const size_t clear = seam - (kVector - 1);
      for (const size_t end = clear < rest ? clear : rest; i < end; i += kVector)
        step.Apply(target + i, source + i);
      if (i >= rest) break;
      const auto written = Load<Bytes>(stretch.seamMask + kCombineVector + i - seam);
      Blend(step, target + i, source + i, written);
      i += kVector;
      if (i >= seam + stretch.seamBytes) seam += stretch.seamPeriod;
    }
    Two(step, stretch, i, stretch.bytes - kVector);
  }

 private:
  static void Blend(const Vectors& step, uint8_t* target, const uint8_t* source, Bytes written) {
    const auto d = Load<Bytes>(target);
    Store(target, (d & ~written) | (step.CombineRarely(d, step.SourceAt(source)) & written));
  }

  // Two vectors of a stretch, which may overlap.
  static void Two(const Vectors& step, const CombineStretch& stretch, size_t a, size_t b) {
    uint8_t* const target = stretch.target;
    const uint8_t* const source = stretch.source;
    const Bytes first = step.CombineRarely(step.TargetAt(target + a), step.SourceAt(source + a));
    const Bytes second = step.CombineRarely(step.TargetAt(target + b), step.SourceAt(source + b));
    Store(target + a, first);
    Store(target + b, second);
  }
};

template <class Operation, bool Shifted, bool Inverted = true>
constexpr CombineLoop Ways() {
  return {Loop<Operation, Shifted, Inverted>::One, Loop<Operation, Shifted, Inverted>::Along,
          kVector};
}

// Pixels of whole bytes are never shifted.
template <class Operation>
CombineLoop SelectArithmetic(const CombineShape& shape) {
  if (shape.channelBits == 8) return Ways<Arithmetic<Operation, 8>, false>();
  if (shape.channelBits == 5) return Ways<Arithmetic<Operation, 5>, false>();
  return shape.shifted ? Ways<Arithmetic<Operation, 4>, true>()
                       : Ways<Arithmetic<Operation, 4>, false>();
}

template <class Operation>
CombineLoop SelectBoolean(const CombineShape& shape) {
  if (shape.shifted) {
    return shape.inverted ? Ways<Operation, true>() : Ways<Operation, true, false>();
  }
  return shape.inverted ? Ways<Operation, false>() : Ways<Operation, false, false>();
}

CombineLoop SelectLoop(const CombineShape& shape) {
  switch (shape.core) {
    case CombineCore::kZero:
      return Ways<Zero, false>();
    case CombineCore::kDestination:
      return Ways<Destination, false>();
    case CombineCore::kSource:
      return SelectBoolean<Source>(shape);
    case CombineCore::kAnd:
      return SelectBoolean<And>(shape);
    case CombineCore::kXor:
      return SelectBoolean<Xor>(shape);
    case CombineCore::kAdd:
      return SelectArithmetic<Add>(shape);
    case CombineCore::kMul:
      return SelectArithmetic<Mul>(shape);
    case CombineCore::kDivide:
      return SelectArithmetic<Divide>(shape);
    case CombineCore::kAverage:
      return SelectArithmetic<Average>(shape);
    default:
      return SelectArithmetic<Smaller>(shape);
  }
}

}  // namespace
}  // namespace vn

#endif
