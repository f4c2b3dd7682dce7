#include "geometry/mirror_row_avx2.h"

#include <immintrin.h>

namespace vn {
namespace {

using Vector = __m256i;

Vector Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const Vector*>(p)); }
void Store(uint8_t* p, Vector v) { _mm256_storeu_si256(reinterpret_cast<Vector*>(p), v); }

Vector SwapLanes(Vector v) { return _mm256_permute4x64_epi64(v, 0x4E); }
Vector BothLanes(__m128i v) { return _mm256_broadcastsi128_si256(v); }

Vector ReverseBytes(Vector v) {
  return SwapLanes(_mm256_shuffle_epi8(
      v, BothLanes(_mm_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0))));
}
Vector HighNibbles(Vector v) {
  return _mm256_and_si256(_mm256_srli_epi16(v, 4), _mm256_set1_epi8(15));
}
Vector LowNibbles(Vector v) { return _mm256_and_si256(v, _mm256_set1_epi8(15)); }

// A vector of units read in reverse order, each turned, and the way back to memory.
template <int Bits>
struct Units {
  static constexpr size_t kBytes = 32;
  static constexpr size_t kUnits = Bits < 8 ? 32 : 256 / Bits;

  static Vector Read(const uint8_t* p) {
    const Vector v = Load(p);
    if constexpr (Bits == 1) {
      // A byte turned is its nibbles turned and exchanged.
      const Vector turned =
          BothLanes(_mm_setr_epi8(0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15));
      const Vector low = _mm256_shuffle_epi8(turned, LowNibbles(v));
      const Vector high = _mm256_shuffle_epi8(turned, HighNibbles(v));
      return ReverseBytes(_mm256_or_si256(_mm256_slli_epi16(low, 4), high));
    }
    if constexpr (Bits == 4) {
      return ReverseBytes(_mm256_or_si256(_mm256_slli_epi16(LowNibbles(v), 4), HighNibbles(v)));
    }
    if constexpr (Bits == 8) return ReverseBytes(v);
    if constexpr (Bits == 16) {
      return SwapLanes(_mm256_shuffle_epi8(
          v, BothLanes(_mm_setr_epi8(14, 15, 12, 13, 10, 11, 8, 9, 6, 7, 4, 5, 2, 3, 0, 1))));
    }
    return _mm256_permutevar8x32_epi32(v, _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0));
  }
  static void Write(uint8_t* p, Vector v) { Store(p, v); }
};

// Eight pixels of three bytes: the last four and the first four are read as they lie in 16 bytes
// each, and turned.
template <>
struct Units<24> {
  static constexpr size_t kBytes = 24;
  static constexpr size_t kUnits = 8;

  static Vector Read(const uint8_t* p) {
    const auto* early = reinterpret_cast<const __m128i*>(p);
    const auto* late = reinterpret_cast<const __m128i*>(p + 8);
    const Vector v = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(late)),
                                             _mm_loadu_si128(early), 1);
    const Vector turned = _mm256_shuffle_epi8(
        v, _mm256_setr_epi8(13, 14, 15, 10, 11, 12, 7, 8, 9, 4, 5, 6, -1, -1, -1, -1, 9, 10, 11, 6,
                            7, 8, 3, 4, 5, 0, 1, 2, -1, -1, -1, -1));
    return _mm256_permutevar8x32_epi32(turned, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
  }
  static void Write(uint8_t* p, Vector v) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(v));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p + 16), _mm256_extracti128_si256(v, 1));
  }
};

template <int Bits>
size_t Exchange(uint8_t* first, uint8_t* second, size_t units) {
  using Vectors = Units<Bits>;
  const size_t taken = first == second ? 2 * Vectors::kUnits : Vectors::kUnits;
  uint8_t* mirrored = second + units / Vectors::kUnits * Vectors::kBytes +
                      units % Vectors::kUnits * (Vectors::kBytes / Vectors::kUnits);
  size_t done = 0;
  for (size_t left = units; left >= taken; left -= taken) {
    mirrored -= Vectors::kBytes;
    const Vector a = Vectors::Read(first), b = Vectors::Read(mirrored);
    Vectors::Write(first, b);
    Vectors::Write(mirrored, a);
    first += Vectors::kBytes;
    done += Vectors::kUnits;
  }
  return done;
}

}  // namespace

size_t Mirror1Avx2(uint8_t* first, uint8_t* second, size_t units) {
  return Exchange<1>(first, second, units);
}
size_t Mirror4Avx2(uint8_t* first, uint8_t* second, size_t units) {
  return Exchange<4>(first, second, units);
}
size_t Mirror8Avx2(uint8_t* first, uint8_t* second, size_t units) {
  return Exchange<8>(first, second, units);
}
size_t Mirror16Avx2(uint8_t* first, uint8_t* second, size_t units) {
  return Exchange<16>(first, second, units);
}
size_t Mirror24Avx2(uint8_t* first, uint8_t* second, size_t units) {
  return Exchange<24>(first, second, units);
}
size_t Mirror32Avx2(uint8_t* first, uint8_t* second, size_t units) {
  return Exchange<32>(first, second, units);
}

size_t ExchangeAvx2(uint8_t* first, uint8_t* second, size_t bytes) {
  size_t done = 0;
  for (; bytes - done >= 64; done += 64) {
    const Vector a = Load(first + done), b = Load(first + done + 32);
    Store(first + done, Load(second + done));
    Store(first + done + 32, Load(second + done + 32));
    Store(second + done, a);
    Store(second + done + 32, b);
  }
  return done;
}

size_t ShiftLeftAvx2(uint8_t* row, size_t bytes, unsigned shift) {
  const Vector keep = _mm256_set1_epi8(static_cast<char>(0xFF << shift));
  const __m128i left = _mm_cvtsi32_si128(static_cast<int>(shift));
  const __m128i right = _mm_cvtsi32_si128(static_cast<int>(8 - shift));
  size_t done = 0;
  for (; done + 32 < bytes; done += 32) {
    const Vector own = _mm256_sll_epi16(Load(row + done), left);
    const Vector next = _mm256_srl_epi16(Load(row + done + 1), right);
    Store(row + done,
          _mm256_or_si256(_mm256_and_si256(own, keep), _mm256_andnot_si256(keep, next)));
  }
  return done;
}

}  // namespace vn
