// Grays of rows of every depth.
#include "color/gray_rows.h"

#include "color/palettes.h"
#include "color/swizzle_24_32.h"
#include "kernel/pixel_format.h"

#if defined(__x86_64__) || defined(__i386__)
#define VNCORE_X86 1
#include <immintrin.h>
#endif

namespace vn {
namespace {

template <int Bits>
void IndexGrays(const uint8_t* source, uint8_t* target, size_t width, const uint8_t* levels) {
  for (size_t x = 0; x < width; ++x)
    target[x] = levels[IndexReader<Bits>::Get(source, x)];
}

template <int Bits, uint32_t Order>
void ColorGrays(const uint8_t* source, uint8_t* target, size_t width, const uint8_t*) {
  for (size_t x = 0; x < width; ++x) {
    target[x] = static_cast<uint8_t>(GrayOf(ColorReader<Bits, Order>::Get(source, x)));
  }
}

#ifdef VNCORE_X86

// Loads eight pixels as four bytes each, of which the last does not count. At 24 bits it reads four
// bytes beyond them.
template <int Bits>
__attribute__((target("avx2"))) inline __m256i EightPixels(const uint8_t* p) {
  if constexpr (Bits == 32) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
  } else {
    const __m256i apart = _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, 0,
                                           1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 12));
    return _mm256_shuffle_epi8(_mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1),
                               apart);
  }
}

// 32 pixels a turn: weighted sums of pairs of channels, then of the pairs. The packing steps work
// within the halves of a register, and one permutation at the end puts the fours in order.
template <int Bits, uint32_t Order>
__attribute__((target("avx2"))) void ColorGraysAvx2(const uint8_t* source, uint8_t* target,
                                                    size_t width, const uint8_t* levels) {
  constexpr size_t kBytes = Bits / 8;
  const __m256i weights = _mm256_set1_epi32(Order == ORDER_BGR ? 0x00020501 : 0x00010502);
  const __m256i half = _mm256_set1_epi16(4);
  const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
  size_t x = 0;
  for (; x + 34 <= width; x += 32) {
    const uint8_t* p = source + x * kBytes;
    const __m256i a = _mm256_maddubs_epi16(EightPixels<Bits>(p), weights);
    const __m256i b = _mm256_maddubs_epi16(EightPixels<Bits>(p + 8 * kBytes), weights);
    const __m256i c = _mm256_maddubs_epi16(EightPixels<Bits>(p + 16 * kBytes), weights);
    const __m256i d = _mm256_maddubs_epi16(EightPixels<Bits>(p + 24 * kBytes), weights);
    const __m256i ab = _mm256_srli_epi16(_mm256_add_epi16(_mm256_hadd_epi16(a, b), half), 3);
    const __m256i cd = _mm256_srli_epi16(_mm256_add_epi16(_mm256_hadd_epi16(c, d), half), 3);
    const __m256i grays = _mm256_permutevar8x32_epi32(_mm256_packus_epi16(ab, cd), order);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(target + x), grays);
  }
  ColorGrays<Bits, Order>(source + x * kBytes, target + x, width - x, levels);
}

#endif

template <int Bits, uint32_t Order>
GrayRow SelectColorGrays() {
#ifdef VNCORE_X86
  if constexpr (Bits != 16) {
    if (BestShuffles() == Shuffles::kAvx2) return ColorGraysAvx2<Bits, Order>;
  }
#endif
  return ColorGrays<Bits, Order>;
}

// The depth that a row is read at.
int32_t ReadBits(int32_t bitsPerPixel) {
  return WithDepth(bitsPerPixel, [](auto) {}) ? bitsPerPixel : 32;
}

}  // namespace

GrayRow SelectGrayRow(int32_t bitsPerPixel, uint32_t order) {
  GrayRow row = nullptr;
  WithDepth(ReadBits(bitsPerPixel), [&](auto bits) {
    if constexpr (bits <= 8) {
      row = IndexGrays<bits>;
    } else if (order == ORDER_BGR) {
      row = SelectColorGrays<bits, ORDER_BGR>();
    } else {
      row = SelectColorGrays<bits, ORDER_RGB>();
    }
  });
  return row;
}

bool ReadGrayLevels(const BitmapHandle& bitmap, uint8_t* levels) {
  if (bitmap.BitsPerPixel >= 16) return true;
  RGBQUAD colors[256];
  const auto count = static_cast<uint32_t>(bitmap.ColorCount);
  const HPALETTE palette = ActivePalette(bitmap);
  if (!palette || count > 256 || Vn_GetPaletteEntries(palette, 0, count, colors) < count) {
    return false;
  }
  for (uint32_t i = 0; i < 256; ++i)
    levels[i] = i < count ? static_cast<uint8_t>(GrayOf(ColorOf(colors[i]))) : 0;
  return true;
}

bool HoldsGraySource(const BitmapHandle& bitmap) {
  const auto bits = static_cast<uint64_t>(ReadBits(bitmap.BitsPerPixel));
  return (bits * static_cast<uint32_t>(bitmap.Width) + 7) / 8 <= bitmap.BytesPerLine;
}

}  // namespace vn
