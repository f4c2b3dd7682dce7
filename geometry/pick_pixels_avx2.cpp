// Picking with the places of eight pixels computed at a time. The pixels are loaded one by one: on
// the processors at hand that is faster than the gather instruction, and reads nothing beyond them.
#include "geometry/pick_pixels_avx2.h"

#include <immintrin.h>

#include "geometry/pick_pixels.h"

namespace vn {
namespace {

using Vector = __m256i;

// The numbers of eight pixels of a line, counted from its origin in pixels, as if rows had no rest.
class PixelNumbers {
 public:
  // `pitch` is the number of pixels from row to row.
  PixelNumbers(const PickLine& line, int32_t pitch)
      : x_(Eight(line.x, line.stepX)),
        y_(Eight(line.y, line.stepY)),
        stepX_(_mm256_set1_epi32(8 * line.stepX)),
        stepY_(_mm256_set1_epi32(8 * line.stepY)),
        pitch_(_mm256_set1_epi32(pitch)) {}

  // Times `scale`, where a row's pitch is told in bytes.
  template <int Scale>
  Vector Next() {
    Vector column = _mm256_srai_epi32(x_, 14);
    if constexpr (Scale == 2) column = _mm256_slli_epi32(column, 1);
    if constexpr (Scale == 3) column = _mm256_add_epi32(column, _mm256_slli_epi32(column, 1));
    if constexpr (Scale == 4) column = _mm256_slli_epi32(column, 2);
    const Vector row = _mm256_srai_epi32(y_, 14);
    x_ = _mm256_add_epi32(x_, stepX_);
    y_ = _mm256_add_epi32(y_, stepY_);
    return _mm256_add_epi32(_mm256_mullo_epi32(row, pitch_), column);
  }

 private:
  static Vector Eight(int32_t first, int32_t step) {
    const Vector numbers = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
    return _mm256_add_epi32(_mm256_set1_epi32(first),
                            _mm256_mullo_epi32(numbers, _mm256_set1_epi32(step)));
  }
  Vector x_, y_, stepX_, stepY_, pitch_;
};

// Calls `use` with the eight numbers in turn. Taking them out in pairs is faster than through
// memory, where there are registers for a pair.
template <class Use>
inline __attribute__((always_inline)) void ForEach(Vector numbers, Use use) {
#ifdef __x86_64__
  const auto two = [&](int64_t pair) __attribute__((always_inline)) {
    use(static_cast<int32_t>(pair));
    use(static_cast<int32_t>(pair >> 32));
  };
  two(_mm256_extract_epi64(numbers, 0));
  two(_mm256_extract_epi64(numbers, 1));
  two(_mm256_extract_epi64(numbers, 2));
  two(_mm256_extract_epi64(numbers, 3));
#else
  int32_t each[8];
  _mm256_storeu_si256(reinterpret_cast<Vector*>(each), numbers);
  for (const int32_t number : each)
    use(number);
#endif
}

// Whether every number on a line of `count` pixels fits 32 bits: no line spans more rows than
// pixels.
bool Fits(ptrdiff_t pitch, size_t count) {
  const auto size = static_cast<size_t>(pitch < 0 ? -pitch : pitch);
  return size < (size_t{1} << 29) / (count + 2);
}

template <int Bits>
size_t PickPacked(const PickLine& line, uint8_t* to, size_t count) {
  constexpr int kPerByte = 8 / Bits, kShift = Bits == 1 ? 3 : 1;
  const ptrdiff_t pitch = line.stride * kPerByte;
  if (!Fits(pitch, count)) return 0;
  PixelNumbers numbers(line, static_cast<int32_t>(pitch));
  const size_t whole = count & ~size_t{7};
  for (size_t done = 0; done < whole; done += 8) {
    uint32_t pixels = 0;
    ForEach(
        numbers.Next<1>(), [&](int32_t number) __attribute__((always_inline)) {
          // The byte's left pixel is its high one. Numbers in rows above the origin are negative.
          const uint32_t byte = line.origin[number >> kShift];
          const int shift = (~number & (kPerByte - 1)) * Bits;
          pixels = pixels << Bits | (byte >> shift & ((1u << Bits) - 1));
        });
    // Eight pixels, the first on top.
    if constexpr (Bits == 4) pixels = __builtin_bswap32(pixels);
    __builtin_memcpy(to, &pixels, Bits);
    to += Bits;
  }
  return whole;
}

struct Item3 {
  uint8_t bytes[3];
};

template <class Item>
size_t PickItems(const PickLine& line, uint8_t* to, size_t count) {
  if (!Fits(line.stride, count)) return 0;
  PixelNumbers numbers(line, static_cast<int32_t>(line.stride));
  const size_t whole = count & ~size_t{7};
  for (size_t done = 0; done < whole; done += 8) {
    ForEach(
        numbers.Next<sizeof(Item)>(), [&](int32_t place) __attribute__((always_inline)) {
          __builtin_memcpy(to, line.origin + place, sizeof(Item));
          to += sizeof(Item);
        });
  }
  return whole;
}

}  // namespace

size_t Pick1Avx2(const PickLine& line, uint8_t* to, size_t count) {
  return PickPacked<1>(line, to, count);
}
size_t Pick4Avx2(const PickLine& line, uint8_t* to, size_t count) {
  return PickPacked<4>(line, to, count);
}
size_t Pick8Avx2(const PickLine& line, uint8_t* to, size_t count) {
  return PickItems<uint8_t>(line, to, count);
}
size_t Pick16Avx2(const PickLine& line, uint8_t* to, size_t count) {
  return PickItems<uint16_t>(line, to, count);
}
size_t Pick24Avx2(const PickLine& line, uint8_t* to, size_t count) {
  return PickItems<Item3>(line, to, count);
}
size_t Pick32Avx2(const PickLine& line, uint8_t* to, size_t count) {
  return PickItems<uint32_t>(line, to, count);
}

}  // namespace vn
