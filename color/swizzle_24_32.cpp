// Byte shuffles between 24 and 32 bits. A shuffled loop does whole groups of pixels and leaves the
// ragged end of the row to the plain one.
#include "color/swizzle_24_32.h"

#include <utility>

#include "kernel/pixel_format.h"

#if defined(__x86_64__) || defined(__i386__)
#define VNCORE_X86 1
#include <immintrin.h>
#define VNCORE_AVX2 __attribute__((target("avx2")))
#endif

namespace vn {
namespace {

uint32_t LoadDword(const uint8_t* at) {
  uint32_t word;
  std::memcpy(&word, at, sizeof word);
  return word;
}
void StoreDword(uint8_t* at, uint32_t word) { std::memcpy(at, &word, sizeof word); }

constexpr uint32_t SwapOuter(uint32_t w) {
  return (w & 0xFF00FF00) | (w & 0xFF) << 16 | (w >> 16 & 0xFF);
}

void WidenPixels(uint8_t* row, size_t first, size_t end, bool swap) {
  for (size_t x = end; x-- > first;) {
    const uint8_t* p = row + 3 * x;
    const uint32_t w = LoadWord(p) | uint32_t{p[2]} << 16;
    StoreDword(row + 4 * x, swap ? SwapOuter(w) : w);
  }
}

void NarrowPixels(uint8_t* row, size_t first, size_t end, bool swap) {
  for (size_t x = first; x < end; ++x) {
    uint32_t w = LoadDword(row + 4 * x);
    if (swap) w = SwapOuter(w);
    StoreWord(row + 3 * x, w);
    row[3 * x + 2] = static_cast<uint8_t>(w >> 16);
  }
}

void SwapPixels(uint8_t* row, size_t first, size_t end) {
  for (size_t x = first; x < end; ++x)
    std::swap(row[3 * x], row[3 * x + 2]);
}

#ifdef VNCORE_X86

__m128i* At(uint8_t* p) { return reinterpret_cast<__m128i*>(p); }

// Byte patterns for four pixels; -1 gives a zero byte.
VNCORE_AVX2 __m128i WidenPattern(bool swap) {
  return swap ? _mm_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1)
              : _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
}
VNCORE_AVX2 __m128i NarrowPattern(bool swap) {
  return swap ? _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1)
              : _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
}

// Whole eights of pixels, the last ending at `end`; returns the number of pixels left before them.
// Two loads of 16 bytes hold four pixels each and take four bytes of what follows with them; the
// buffer of 4 bytes a pixel reaches that far.
VNCORE_AVX2 size_t WidenEights(uint8_t* row, size_t end, bool swap) {
  const __m256i pattern = _mm256_broadcastsi128_si256(WidenPattern(swap));
  size_t x = end;
#pragma GCC unroll 4
  for (; x >= 8; x -= 8) {
    uint8_t* from = row + 3 * (x - 8);
    const __m256i eight = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(At(from))),
                                                  _mm_loadu_si128(At(from + 12)), 1);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(row + 4 * (x - 8)),
                        _mm256_shuffle_epi8(eight, pattern));
  }
  return x;
}

// `end` is a multiple of 8, and at least 3 pixels follow it. A store of 32 bytes carries 24 of
// pixels; the next store, or the plain loop, puts the other 8 right. No unread source lies there.
VNCORE_AVX2 void NarrowEights(uint8_t* row, size_t end, bool swap) {
  const __m256i pattern = _mm256_broadcastsi128_si256(NarrowPattern(swap));
  const __m256i join = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
#pragma GCC unroll 4
  for (size_t x = 0; x < end; x += 8) {
    const __m256i eight = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(row + 4 * x));
    const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(eight, pattern), join);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(row + 3 * x), packed);
  }
}

// `end` is a multiple of 16: 48 bytes, in which a pixel can straddle two of the three registers.
VNCORE_AVX2 void SwapSixteens(uint8_t* row, size_t end) {
  const __m128i aOwn = _mm_setr_epi8(2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, -1);
  const __m128i aNext =
      _mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 1);
  const __m128i bOwn = _mm_setr_epi8(0, -1, 4, 3, 2, 7, 6, 5, 10, 9, 8, 13, 12, 11, -1, 15);
  const __m128i bLast =
      _mm_setr_epi8(-1, 15, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i bNext =
      _mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 0, -1);
  const __m128i cLast =
      _mm_setr_epi8(14, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i cOwn = _mm_setr_epi8(-1, 3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10, 15, 14, 13);
  for (size_t x = 0; x < end; x += 16) {
    uint8_t* p = row + 3 * x;
    const __m128i a = _mm_loadu_si128(At(p));
    const __m128i b = _mm_loadu_si128(At(p + 16));
    const __m128i c = _mm_loadu_si128(At(p + 32));
    _mm_storeu_si128(At(p), _mm_or_si128(_mm_shuffle_epi8(a, aOwn), _mm_shuffle_epi8(b, aNext)));
    _mm_storeu_si128(At(p + 16), _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(b, bOwn),
                                                           _mm_shuffle_epi8(a, bLast)),
                                              _mm_shuffle_epi8(c, bNext)));
    _mm_storeu_si128(At(p + 32),
                     _mm_or_si128(_mm_shuffle_epi8(c, cOwn), _mm_shuffle_epi8(b, cLast)));
  }
}

#endif

}  // namespace

Shuffles BestShuffles() {
#ifdef VNCORE_X86
  if (__builtin_cpu_supports("avx2")) return Shuffles::kAvx2;
#endif
  return Shuffles::kPlain;
}

void Widen24To32(uint8_t* row, size_t width, bool swap, [[maybe_unused]] Shuffles with) {
  size_t left = width;
#ifdef VNCORE_X86
  if (with == Shuffles::kAvx2 && width >= 16) {
    // The eights end where their stores of 32 bytes fall on whole cache lines.
    const size_t ragged = reinterpret_cast<uintptr_t>(row + 4 * width) / 4 % 8;
    WidenPixels(row, width - ragged, width, swap);
    left = WidenEights(row, width - ragged, swap);
  }
#endif
  WidenPixels(row, 0, left, swap);
}

void Narrow32To24(uint8_t* row, size_t width, bool swap, [[maybe_unused]] Shuffles with) {
  size_t shuffled = 0;
#ifdef VNCORE_X86
  if (with == Shuffles::kAvx2 && width > 3) {
    shuffled = (width - 3) & ~size_t{7};
    NarrowEights(row, shuffled, swap);
  }
#endif
  NarrowPixels(row, shuffled, width, swap);
}

void SwapRedBlue24(uint8_t* row, size_t width, [[maybe_unused]] Shuffles with) {
  size_t shuffled = 0;
#ifdef VNCORE_X86
  if (with == Shuffles::kAvx2) {
    shuffled = width & ~size_t{15};
    SwapSixteens(row, shuffled);
  }
#endif
  SwapPixels(row, shuffled, width);
}

void SwapRedBlue32(uint8_t* row, size_t width) {
  for (size_t x = 0; x < width; ++x)
    StoreDword(row + 4 * x, SwapOuter(LoadDword(row + 4 * x)));
}

}  // namespace vn
