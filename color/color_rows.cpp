#include "color/color_rows.h"

#include "color/color_rows_avx2.h"
#include "kernel/pixel_format.h"
#include "kernel/vector.h"

namespace vn {
namespace {

uint32_t LoadDword(const uint8_t* at) {
  uint32_t word;
  std::memcpy(&word, at, sizeof word);
  return word;
}
void StoreDword(uint8_t* at, uint32_t word) { std::memcpy(at, &word, sizeof word); }

// Pixels as words: blue lowest, then green and red, and above them 0, or the fourth byte of 32
// bits. 0 bits stand for grays of a byte.
template <int Bits>
uint32_t Load(const uint8_t* row, size_t x, const RGBQUAD* colors) {
  if constexpr (Bits == 0) {
    return row[x] * 0x010101u;
  } else if constexpr (Bits <= 8) {
    return LoadDword(&colors[IndexReader<Bits>::Get(row, x)].rgbBlue) & 0x00FFFFFF;
  } else if constexpr (Bits == 16) {
    // Each field in the top five bits of its byte, and its own top bits repeated below them.
    const uint32_t w = LoadWord(row + 2 * x);
    const uint32_t tops = (w & 0x7C00) << 9 | (w & 0x03E0) << 6 | (w & 0x001F) << 3;
    return tops | (tops >> 5 & 0x070707);
  } else if constexpr (Bits == 24) {
    return LoadWord(row + 3 * x) | uint32_t{row[3 * x + 2]} << 16;
  } else {
    return LoadDword(row + 4 * x);
  }
}

constexpr size_t BytesOf(int bits) { return bits ? static_cast<size_t>(bits) / 8 : 1; }

constexpr uint32_t SwapOuter(uint32_t w) {
  return (w & 0xFF00FF00) | (w & 0xFF) << 16 | (w >> 16 & 0xFF);
}

template <int Bits>
void Store(uint8_t* row, size_t x, uint32_t word) {
  if constexpr (Bits == 16) {
    StoreWord(row + 2 * x, (word >> 9 & 0x7C00) | (word >> 6 & 0x03E0) | (word >> 3 & 0x001F));
  } else if constexpr (Bits == 24) {
    StoreWord(row + 3 * x, word);
    row[3 * x + 2] = static_cast<uint8_t>(word >> 16);
  } else {
    StoreDword(row + 4 * x, word);
  }
}

template <int From, int To, bool Swap>
void Convert(const uint8_t* source, uint8_t* target, size_t first, size_t end,
             const RGBQUAD* colors) {
  const auto word = [=](size_t x) {
    const uint32_t pixel = Load<From>(source, x, colors);
    return Swap ? SwapOuter(pixel) : pixel;
  };
  size_t x = first;
  // A word of four bytes is one store where three are two; the next pixel mends the fourth.
  if constexpr (To == 24) {
    for (; x + 1 < end; ++x)
      StoreDword(target + 3 * x, word(x));
  }
  for (; x < end; ++x)
    Store<To>(target, x, word(x));
}

template <int From, int To, bool Swap>
void ConvertPlain(const uint8_t* source, uint8_t* target, size_t width, const RGBQUAD* colors) {
  Convert<From, To, Swap>(source, target, 0, width, colors);
}

template <int Bits>
void Copy(const uint8_t* source, uint8_t* target, size_t width, const RGBQUAD*) {
  std::memcpy(target, source, width * (Bits / 8));
}

#ifdef VNCORE_HAVE_AVX2
template <int From, int To, bool Swap>
void ConvertByVectors(const uint8_t* source, uint8_t* target, size_t width, const RGBQUAD* colors) {
  // At 32 bits the vectors begin where their stores do not straddle cache lines.
  const size_t ahead = To == 32 ? -(reinterpret_cast<uintptr_t>(target) / 4) % 8 : 0;
  const size_t first = ahead < width ? ahead : width;
  Convert<From, To, Swap>(source, target, 0, first, colors);
  const size_t done = kColorVectorsAvx2[From / 8][To / 8 - 2][Swap](
      source + first * BytesOf(From), target + first * (To / 8), width - first,
      reinterpret_cast<const uint8_t*>(colors));
  Convert<From, To, Swap>(source, target, first + done, width, colors);
}
#endif

template <int From, int To, bool Swap>
ColorRow Select() {
  if constexpr (From == To && !Swap) {
    return Copy<To>;
  } else if constexpr (From == 1 || From == 4) {
    return ConvertPlain<From, To, Swap>;
  } else {
    return VNCORE_VECTOR_FORM((ConvertPlain<From, To, Swap>), (ConvertByVectors<From, To, Swap>));
  }
}

}  // namespace

ColorRow SelectColorRow(int32_t sourceBits, int32_t targetBits, bool swap) {
  ColorRow row = nullptr;
  WithDepth(targetBits, [&](auto to) {
    if constexpr (to > 8) {
      if (sourceBits == 0) row = Select<0, to, false>();
      WithDepth(sourceBits, [&](auto from) {
        row = swap ? Select<from, to, true>() : Select<from, to, false>();
      });
    }
  });
  return row;
}

}  // namespace vn
