// The loops of combinations, written once on the compiler's vector types, and compiled twice: by
// combine_rows.cpp for any machine and by combine_rows_avx2.cpp for AVX2. So both forms are equal
// by construction. All is in an unnamed namespace: each file has its own copy, and the linker must
// not choose between them. Nothing else includes this.
#ifndef VNCORE_COMPOSE_COMBINE_LOOPS_H
#define VNCORE_COMPOSE_COMBINE_LOOPS_H

#include <cstring>

#include "compose/combine_rows.h"

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
template <class Lanes>
inline Lanes Min(Lanes a, Lanes b) {
  return a < b ? a : b;
}
template <class Lanes>
inline Lanes Max(Lanes a, Lanes b) {
  return a < b ? b : a;
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
struct SubSource {
  using Lanes = Bytes;
  template <int, class L>
  static L Of(L d, L s, L) {
    return d - Min(d, s);
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
struct DivSource {
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
struct Larger {
  using Lanes = Bytes;
  template <int, class L>
  static L Of(L d, L s, L) {
    return Max(d, s);
  }
};
template <class Operation>
struct Swapped {
  using Lanes = typename Operation::Lanes;
  template <int Bits, class L>
  static L Of(L d, L s, L m) {
    return Operation::template Of<Bits>(s, d, m);
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
    for (int at = unit; at + Bits <= unit + kUnit; at += Bits)
      result |= Operation::template Of<Bits>(from >> at & m, with >> at & m, m) << at;
  }
  return reinterpret_cast<Bytes>(result);
}

// What a loop does with a vector of bytes, and which operands it reads.
template <class Operation, int Bits>
struct Arithmetic {
  static constexpr bool kReadsTarget = true, kReadsSource = true;
  static Bytes Of(Bytes d, Bytes s) {
    if constexpr (Bits == 8) return InFields<Operation, 8, typename Operation::Lanes>(d, s);
    if constexpr (sizeof(typename Operation::Lanes{}[0]) > 2) {
      return InFields<Operation, Bits, typename Operation::Lanes>(d, s);
    }
    return InFields<Operation, Bits, Words>(d, s);
  }
};
struct Fill {
  static constexpr bool kReadsTarget = false, kReadsSource = false;
  static Bytes Of(Bytes, Bytes) { return Bytes{}; }
};
struct Destination {
  static constexpr bool kReadsTarget = true, kReadsSource = false;
  static Bytes Of(Bytes d, Bytes) { return d; }
};
struct Source {
  static constexpr bool kReadsTarget = false, kReadsSource = true;
  static Bytes Of(Bytes, Bytes s) { return s; }
};
struct And {
  static constexpr bool kReadsTarget = true, kReadsSource = true;
  static Bytes Of(Bytes d, Bytes s) { return d & s; }
};
struct Xor {
  static constexpr bool kReadsTarget = true, kReadsSource = true;
  static Bytes Of(Bytes d, Bytes s) { return d ^ s; }
};

template <class Lanes>
inline Lanes Load(const uint8_t* at) {
  Lanes lanes;
  std::memcpy(&lanes, at, sizeof lanes);
  return lanes;
}
inline Bytes LoadPart(const uint8_t* at, size_t count) {
  Bytes lanes{};
  std::memcpy(&lanes, at, count);
  return lanes;
}

// One vector under an operation, and what it takes. A loop keeps a copy of its own, which no store
// through a byte pointer can change, and so holds all of it in registers.
template <class Operation, bool Shifted, bool Inverted>
struct Step {
  Step(const CombineSpan& span, CombineInversions invert)
      : invertSource(Splat(invert.source)),
        invertTarget(Splat(invert.destination)),
        invertResult(Splat(invert.result)),
        leftMask(Splat(static_cast<uint8_t>(0xFF << span.shift))),
        rightMask(Splat(static_cast<uint8_t>(0xFF >> (8 - span.shift)))),
        left(span.shift),
        right(8 - span.shift) {}

  Bytes Combine(Bytes d, Bytes s) const {
    if constexpr (!Inverted) return Operation::Of(d, s);
    return Operation::Of(d ^ invertTarget, s ^ invertSource) ^ invertResult;
  }
  // For the ends of rows, once for all of them: the code of a division is long.
  [[gnu::noinline]] Bytes CombineEnd(Bytes d, Bytes s) const { return Combine(d, s); }

  Bytes Joined(Bytes high, Bytes low) const {
    const auto upper = reinterpret_cast<Bytes>(reinterpret_cast<Words>(high) << left);
    const auto lower = reinterpret_cast<Bytes>(reinterpret_cast<Words>(low) >> right);
    return (upper & leftMask) | (lower & rightMask);
  }
  Bytes At(const uint8_t* target, const uint8_t* source) const {
    Bytes d{}, s{};
    if constexpr (Operation::kReadsTarget) d = Load<Bytes>(target);
    if constexpr (Operation::kReadsSource && Shifted) {
      s = Joined(Load<Bytes>(source), Load<Bytes>(source + 1));
    } else if constexpr (Operation::kReadsSource) {
      s = Load<Bytes>(source);
    }
    return Combine(d, s);
  }

  Bytes invertSource, invertTarget, invertResult, leftMask, rightMask;
  uint32_t left, right;
};

// The rows of a span under one operation.
template <class Operation, bool Shifted, bool Inverted>
class Loop {
  using Vectors = Step<Operation, Shifted, Inverted>;

 public:
  Loop(const CombineSpan& span, CombineInversions invert) : span_(span), step_(span, invert) {}

  void Run() const {
    const bool first =
        span_.firstMask != 0xFF || (Shifted && (!span_.readsBefore || span_.bytes == 1));
    const bool last =
        span_.bytes > 1 && (span_.lastMask != 0xFF || (Shifted && !span_.readsBehind));
    const size_t whole = span_.bytes - first - last;
    const Vectors step = step_;
    uint8_t* target = span_.target;
    const uint8_t* source = span_.source;
    for (size_t row = 0; row < span_.rows; ++row) {
      if (first) Edge(target, source, 0, span_.firstMask);
      if (whole >= kVector) {
        Whole(step, target + first, source + first, whole);
      } else if (whole) {
        Part(target + first, source + first, whole);
      }
      if (last) Edge(target, source, span_.bytes - 1, span_.lastMask);
      target += span_.targetStride;
      if constexpr (Operation::kReadsSource) source += span_.sourceStride;
    }
  }

 private:
  // At least a vector of whole bytes. All stores but those of the ends are aligned. The end vectors
  // may overlap others: what they read is taken before those are written.
  static void Whole(const Vectors& step, uint8_t* target, const uint8_t* source, size_t count) {
    const size_t end = count - kVector;
    const Bytes head = step.At(target, source);
    const Bytes tail = step.At(target + end, source + end);
#pragma GCC unroll 2
    for (size_t i = -reinterpret_cast<uintptr_t>(target) % kVector; i < end; i += kVector) {
      const Bytes now = step.At(target + i, source + i);
      std::memcpy(__builtin_assume_aligned(target + i, kVector), &now, sizeof now);
    }
    std::memcpy(target, &head, sizeof head);
    std::memcpy(target + end, &tail, sizeof tail);
  }

  // Fewer bytes than a vector has.
  void Part(uint8_t* target, const uint8_t* source, size_t count) const {
    Bytes s{};
    if constexpr (Operation::kReadsSource && Shifted) {
      s = step_.Joined(LoadPart(source, count), LoadPart(source + 1, count));
    } else if constexpr (Operation::kReadsSource) {
      s = LoadPart(source, count);
    }
    const Bytes result = step_.CombineEnd(LoadPart(target, count), s);
    std::memcpy(target, &result, count);
  }

  // A byte that is written in part, or has a neighbour in the source that must not be read.
  void Edge(uint8_t* target, const uint8_t* source, size_t i, uint8_t mask) const {
    uint32_t s = 0;
    if constexpr (Operation::kReadsSource && Shifted) {
      if (i > 0 || span_.readsBefore) s = static_cast<uint32_t>(source[i]) << span_.shift;
      if (i + 1 < span_.bytes || span_.readsBehind) s |= source[i + 1] >> (8 - span_.shift);
    } else if constexpr (Operation::kReadsSource) {
      s = source[i];
    }
    const uint8_t d = target[i];
    const Bytes result = step_.CombineEnd(Bytes{d}, Bytes{static_cast<uint8_t>(s)});
    target[i] = static_cast<uint8_t>((d & ~mask) | (result[0] & mask));
  }

  CombineSpan span_;
  Vectors step_;
};

template <class Operation, bool Shifted, bool Inverted = true>
void Rows(const CombineSpan& span, CombineInversions invert) {
  Loop<Operation, Shifted, Inverted>(span, invert).Run();
}

// Pixels of whole bytes are never shifted.
template <class Operation>
CombineRows SelectArithmetic(int32_t channelBits, bool shifted) {
  if (channelBits == 8) return Rows<Arithmetic<Operation, 8>, false>;
  if (channelBits == 5) return Rows<Arithmetic<Operation, 5>, false>;
  return shifted ? Rows<Arithmetic<Operation, 4>, true> : Rows<Arithmetic<Operation, 4>, false>;
}

template <class Operation>
CombineRows SelectBoolean(bool shifted, bool inverted) {
  if (shifted) return inverted ? Rows<Operation, true> : Rows<Operation, true, false>;
  return inverted ? Rows<Operation, false> : Rows<Operation, false, false>;
}

CombineRows SelectRows(CombineShape shape, int32_t channelBits, bool shifted, bool inverted) {
  switch (shape) {
    case kShapeFill:
      return Rows<Fill, false>;
    case kShapeDestination:
      return Rows<Destination, false>;
    case kShapeSource:
      return SelectBoolean<Source>(shifted, inverted);
    case kShapeAnd:
      return SelectBoolean<And>(shifted, inverted);
    case kShapeXor:
      return SelectBoolean<Xor>(shifted, inverted);
    case kShapeAdd:
      return SelectArithmetic<Add>(channelBits, shifted);
    case kShapeSubSource:
      return SelectArithmetic<SubSource>(channelBits, shifted);
    case kShapeSubDestination:
      return SelectArithmetic<Swapped<SubSource>>(channelBits, shifted);
    case kShapeMul:
      return SelectArithmetic<Mul>(channelBits, shifted);
    case kShapeDivSource:
      return SelectArithmetic<DivSource>(channelBits, shifted);
    case kShapeDivDestination:
      return SelectArithmetic<Swapped<DivSource>>(channelBits, shifted);
    case kShapeAverage:
      return SelectArithmetic<Average>(channelBits, shifted);
    case kShapeMin:
      return SelectArithmetic<Smaller>(channelBits, shifted);
    default:
      return SelectArithmetic<Larger>(channelBits, shifted);
  }
}

}  // namespace
}  // namespace vn

#endif
