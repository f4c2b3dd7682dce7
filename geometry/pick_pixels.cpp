#include "geometry/pick_pixels.h"

#include "geometry/pick_pixels_avx2.h"
#include "kernel/pixel_format.h"
#include "kernel/vector.h"

namespace vn {
namespace {

// The line's next index.
template <int Bits>
uint32_t Next(PickLine& line) {
  const uint8_t* row = line.origin + (line.y >> 14) * line.stride;
  const uint32_t value = IndexReader<Bits>::Get(row, static_cast<size_t>(line.x >> 14));
  line.x += line.stepX;
  line.y += line.stepY;
  return value;
}

// The vector form, or what does nothing in its place.
size_t PickNone(const PickLine&, uint8_t*, size_t) { return 0; }

void Advance(PickLine& line, size_t count) {
  line.x += static_cast<int32_t>(count) * line.stepX;
  line.y += static_cast<int32_t>(count) * line.stepY;
}

template <int Bits, PickVectors* Vectors>
void PickIndexes(PickLine line, uint8_t* row, size_t first, size_t count) {
  constexpr size_t kPerByte = 8 / Bits;
  const size_t end = first + count;
  size_t at = first;
  for (; at < end && at % kPerByte; ++at)
    PutIndex<Bits>(row, at, Next<Bits>(line));
  const size_t done = Vectors(line, row + at / kPerByte, end - at);
  Advance(line, done);
  at += done;
  for (; end - at >= kPerByte; at += kPerByte) {
    uint32_t byte = 0;
    for (size_t i = 0; i < kPerByte; ++i)
      byte = byte << Bits | Next<Bits>(line);
    row[at / kPerByte] = static_cast<uint8_t>(byte);
  }
  for (; at < end; ++at)
    PutIndex<Bits>(row, at, Next<Bits>(line));
}

template <int Bits, PickVectors* Vectors>
void PickBytes(PickLine line, uint8_t* row, size_t first, size_t count) {
  constexpr size_t kBytes = Bits / 8;
  uint8_t* to = row + first * kBytes;
  const uint8_t* end = to + count * kBytes;
  const size_t done = Vectors(line, to, count);
  Advance(line, done);
  for (to += done * kBytes; to != end; to += kBytes) {
    std::memcpy(to,
                line.origin + (line.y >> 14) * line.stride +
                    (line.x >> 14) * static_cast<ptrdiff_t>(kBytes),
                kBytes);
    Advance(line, 1);
  }
}

template <int Bits, PickVectors* Vectors>
void Pick(const PickLine& line, uint8_t* row, size_t first, size_t count) {
  if constexpr (Bits < 8) {
    PickIndexes<Bits, Vectors>(line, row, first, count);
  } else {
    PickBytes<Bits, Vectors>(line, row, first, count);
  }
}

#ifdef VNCORE_HAVE_AVX2
template <int Bits>
constexpr Picker kVectorForm = Pick<Bits, Bits == 1    ? Pick1Avx2
                                          : Bits == 4  ? Pick4Avx2
                                          : Bits == 8  ? Pick8Avx2
                                          : Bits == 16 ? Pick16Avx2
                                          : Bits == 24 ? Pick24Avx2
                                                       : Pick32Avx2>;
#endif

}  // namespace

Picker PickerOf(int32_t bitsPerPixel) {
  Picker picker = nullptr;
  WithDepth(bitsPerPixel, [&](auto depth) {
    picker = VNCORE_VECTOR_FORM((Pick<depth, PickNone>), kVectorForm<depth>);
  });
  return picker;
}

}  // namespace vn
