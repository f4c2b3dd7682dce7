#include "geometry/mirror_row.h"

#include <cstring>

#include "geometry/mirror_row_avx2.h"
#include "kernel/pixel_format.h"
#include "kernel/vector.h"

namespace vn {
namespace {

// What a row is mirrored in: bytes of several pixels, which turn within themselves, or pixels.
template <int Bits>
struct MirrorUnit {
  static constexpr size_t kBytes = Bits < 8 ? 1 : Bits / 8;
  uint8_t bytes[kBytes];

  static MirrorUnit Turned(const uint8_t* at) {
    MirrorUnit unit;
    std::memcpy(unit.bytes, at, kBytes);
    uint8_t& byte = unit.bytes[0];
    if constexpr (Bits <= 4) byte = static_cast<uint8_t>(byte << 4 | byte >> 4);
    if constexpr (Bits == 1) {
      byte = static_cast<uint8_t>((byte & 0x33) << 2 | (byte >> 2 & 0x33));
      byte = static_cast<uint8_t>((byte & 0x55) << 1 | (byte >> 1 & 0x55));
    }
    return unit;
  }
  void Store(uint8_t* at) const { std::memcpy(at, bytes, kBytes); }
};

// Exchanges unit i of `first` with unit `units` - 1 - i of `second`, each turned. The rows are
// apart or the same.
template <int Bits>
void ExchangeTurned(uint8_t* first, uint8_t* second, size_t units) {
  using Unit = MirrorUnit<Bits>;
  const size_t pairs = first == second ? (units + 1) / 2 : units;
  uint8_t* mirrored = second + units * Unit::kBytes;
  for (size_t i = 0; i < pairs; ++i) {
    mirrored -= Unit::kBytes;
    const Unit a = Unit::Turned(first), b = Unit::Turned(mirrored);
    b.Store(first);
    a.Store(mirrored);
    first += Unit::kBytes;
  }
}

// Moves a row's bits left by `shift`, below 8; zeros follow.
void ShiftLeft(uint8_t* row, size_t bytes, unsigned shift) {
  for (size_t i = 0; i + 1 < bytes; ++i)
    row[i] = static_cast<uint8_t>(row[i] << shift | row[i + 1] >> (8 - shift));
  row[bytes - 1] = static_cast<uint8_t>(row[bytes - 1] << shift);
}

// The vector forms of the two loops, and what does nothing in their place.
struct Vectors {
  MirrorVectors* mirror;
  size_t (*shift)(uint8_t* row, size_t bytes, unsigned shift);
};
size_t MirrorNone(uint8_t*, uint8_t*, size_t) { return 0; }
size_t ShiftNone(uint8_t*, size_t, unsigned) { return 0; }
constexpr Vectors kNoVectors = {MirrorNone, ShiftNone};
#ifdef VNCORE_HAVE_AVX2
template <int Bits>
constexpr Vectors kVectors = {Bits == 1    ? Mirror1Avx2
                              : Bits == 4  ? Mirror4Avx2
                              : Bits == 8  ? Mirror8Avx2
                              : Bits == 16 ? Mirror16Avx2
                              : Bits == 24 ? Mirror24Avx2
                                           : Mirror32Avx2,
                              ShiftLeftAvx2};
#endif

template <int Bits, const Vectors& kForms>
void Mirror(uint8_t* first, uint8_t* second, RowSize size) {
  constexpr size_t kPerUnit = Bits < 8 ? 8 / Bits : 1;
  const size_t units = (size.pixels + kPerUnit - 1) / kPerUnit;
  // Done at either end; of two rows the second is done from its end on.
  const size_t done = kForms.mirror(first, second, units);
  const size_t bytesDone = done * MirrorUnit<Bits>::kBytes;
  if (first == second) {
    ExchangeTurned<Bits>(first + bytesDone, second + bytesDone, units - 2 * done);
  } else {
    ExchangeTurned<Bits>(first + bytesDone, second, units - done);
  }
  if constexpr (Bits < 8) {
    // The rest behind the last pixel has come to the front.
    const auto rest = static_cast<unsigned>((kPerUnit * units - size.pixels) * Bits);
    if (!rest) return;
    for (uint8_t* row : {first, second}) {
      const size_t shifted = kForms.shift(row, units, rest);
      ShiftLeft(row + shifted, units - shifted, rest);
      if (first == second) break;
    }
  }
}

void ExchangeBytes(uint8_t* first, uint8_t* second, size_t bytes) {
  constexpr size_t kPiece = 512;
  uint8_t piece[kPiece];
  for (size_t done = 0; done < bytes; done += kPiece) {
    const size_t count = bytes - done < kPiece ? bytes - done : kPiece;
    std::memcpy(piece, first + done, count);
    std::memcpy(first + done, second + done, count);
    std::memcpy(second + done, piece, count);
  }
}

template <size_t (*Vectors)(uint8_t* first, uint8_t* second, size_t bytes)>
void Exchange(uint8_t* first, uint8_t* second, RowSize size) {
  const size_t done = Vectors(first, second, size.bytes);
  ExchangeBytes(first + done, second + done, size.bytes - done);
}

}  // namespace

RowPairWork MirrorWork(int32_t bitsPerPixel) {
  int32_t bits = 32;
  WithDepth(bitsPerPixel, [&](auto depth) { bits = depth; });
  RowPairWork work = nullptr;
  WithDepth(bits, [&](auto depth) {
    work = VNCORE_VECTOR_FORM((Mirror<depth, kNoVectors>), (Mirror<depth, kVectors<depth>>));
  });
  return work;
}

RowPairWork ExchangeWork() {
  return VNCORE_VECTOR_FORM(Exchange<MirrorNone>, Exchange<ExchangeAvx2>);
}

}  // namespace vn
