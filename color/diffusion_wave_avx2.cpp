// Error diffusion of 16 lines side by side. A line may follow the one above it as soon as that one
// has passed the filter's reach, so each is kLag pixels behind: the lanes stand on a slanting front
// that moves to the right by a pixel each turn. Lane 15 is the first line, lane 0 the last one, and
// what a line aims below moves on to the lane beneath.
#include "color/diffusion_wave_avx2.h"

#include <immintrin.h>

#include "color/dither_filters.h"

namespace vn {
namespace {

using Vector = __m256i;     // a word for each line
constexpr int kTurns = 16;  // of a block

Vector Load(const void* p) { return _mm256_loadu_si256(static_cast<const Vector*>(p)); }
__m128i LoadHalf(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
void StoreHalf(void* p, __m128i v) { _mm_storeu_si128(static_cast<__m128i*>(p), v); }
Vector All(int value) { return _mm256_set1_epi16(static_cast<short>(value)); }

// Byte c of row r becomes byte r of row c, of 16 rows of 16 bytes. The two lanes hold eight rows
// each; a round interleaves the first half of the vectors with the second.
void Transpose(const uint8_t* from, ptrdiff_t fromStride, uint8_t* to, ptrdiff_t toStride) {
  Vector v[8], w[8];
#pragma GCC unroll 8
  for (int i = 0; i < 8; ++i, from += fromStride)
    v[i] = _mm256_set_m128i(LoadHalf(from + 8 * fromStride), LoadHalf(from));
#pragma GCC unroll 3
  for (int round = 0; round < 3; ++round) {
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) {
      w[2 * i] = _mm256_unpacklo_epi8(v[i], v[i + 4]);
      w[2 * i + 1] = _mm256_unpackhi_epi8(v[i], v[i + 4]);
    }
#pragma GCC unroll 8
    for (int i = 0; i < 8; ++i)
      v[i] = w[i];
  }
#pragma GCC unroll 8
  for (int i = 0; i < 8; ++i, to += 2 * toStride) {
    const Vector rows = _mm256_permute4x64_epi64(v[i], 0xD8);
    StoreHalf(to, _mm256_castsi256_si128(rows));
    StoreHalf(to + toStride, _mm256_extracti128_si256(rows, 1));
  }
}

// The fixed palettes: Choose gives the index of colours within 0 to 255, blue first, and leaves in
// their place the errors.
template <int Bits>
struct Palette;

template <>
struct Palette<1> {
  static constexpr int kMostError = 255;
  static Vector Choose(Vector& blue, Vector& green, Vector& red) {
    // A gray of 128 or more, before its weights are divided away.
    const Vector sum = _mm256_add_epi16(_mm256_add_epi16(_mm256_add_epi16(red, red), blue),
                                        _mm256_add_epi16(_mm256_slli_epi16(green, 2), green));
    const Vector light = _mm256_cmpgt_epi16(sum, All(8 * 128 - 4 - 1));
    const Vector level = _mm256_srli_epi16(light, 8);
    blue = _mm256_sub_epi16(blue, level);
    green = _mm256_sub_epi16(green, level);
    red = _mm256_sub_epi16(red, level);
    return _mm256_srli_epi16(light, 15);
  }
};

// Black and the seven full colours at 9 to 15.
template <>
struct Palette<4> {
  static constexpr int kMostError = 127;
  static Vector Choose(Vector& blue, Vector& green, Vector& red) {
    const Vector bits = _mm256_or_si256(_mm256_or_si256(Bit(blue, 4), Bit(green, 2)), Bit(red, 1));
    return _mm256_or_si256(bits, _mm256_and_si256(_mm256_cmpgt_epi16(bits, All(0)), All(8)));
  }

 private:
  static Vector Bit(Vector& channel, int bit) {
    const Vector full = _mm256_cmpgt_epi16(channel, All(127));
    channel = _mm256_sub_epi16(channel, _mm256_srli_epi16(full, 8));
    return _mm256_and_si256(full, All(bit));
  }
};

// 4, 8 and 8 levels.
template <>
struct Palette<8> {
  static constexpr int kMostError = 63;
  static Vector Choose(Vector& blue, Vector& green, Vector& red) {
    // 0, 85, 170, 255, and 0, 36, 73, 109, 146, 182, 219, 255.
    const __m128i four = _mm_setr_epi32(static_cast<int>(0xFFAA5500), 0, 0, 0);
    const __m128i eight = _mm_setr_epi32(0x6D492400, static_cast<int>(0xFFDBB692), 0, 0);
    const Vector blueBits = Bits(blue, 6, four);
    const Vector greenBits = Bits(green, 5, eight);
    const Vector redBits = Bits(red, 5, eight);
    return _mm256_or_si256(
        _mm256_slli_epi16(_mm256_or_si256(_mm256_slli_epi16(redBits, 3), greenBits), 2), blueBits);
  }

 private:
  // Level 0 is 0, which the words' upper bytes find, too.
  static Vector Bits(Vector& channel, int shift, __m128i levels) {
    const Vector bits = _mm256_srli_epi16(channel, shift);
    channel =
        _mm256_sub_epi16(channel, _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(levels), bits));
    return bits;
  }
};

// `value` plus sum / Divisor, truncated toward zero.
template <int Divisor>
Vector Corrected(Vector value, Vector sum) {
  if constexpr (Divisor == 16) {
    // Sums are within +-4095: the top four bits of a negative one are what truncation adds.
    const Vector whole = _mm256_add_epi16(_mm256_slli_epi16(value, 4), sum);
    return _mm256_srai_epi16(_mm256_add_epi16(whole, _mm256_srli_epi16(sum, 12)), 4);
  } else if constexpr (Divisor == 32) {
    const Vector rounding = _mm256_srli_epi16(_mm256_srai_epi16(sum, 15), 11);
    return _mm256_add_epi16(value, _mm256_srai_epi16(_mm256_add_epi16(sum, rounding), 5));
  } else {
    // By the reciprocal in the smallest word above it, which gives each sum of 15 bits its quotient
    // rounded down, and one less to multiples below 0: one more for all of those is truncation.
    constexpr int kShift = Divisor < 64 ? 4 : 6;
    constexpr int kReciprocal = (0x10000 << kShift) / Divisor + 1;
    static_assert(kReciprocal < 0x8000 &&
                  (kReciprocal * Divisor - (0x10000 << kShift)) * 0x6800 < 0x10000 << kShift);
    const Vector down = _mm256_srai_epi16(_mm256_mulhi_epi16(sum, All(kReciprocal)), kShift);
    return _mm256_add_epi16(value, _mm256_add_epi16(down, _mm256_srli_epi16(sum, 15)));
  }
}

template <int Method>
struct Front {
  static constexpr const DiffusionFilter& kFilter = kDiffusionFilters[Method];
  static constexpr int kReach = kFilter.reach, kRows = kFilter.rows;
  // One more than must be, so that a turn need not wait for what the one before it aims below.
  static constexpr int kLag = kReach + 2;
  static constexpr int kBefore = kRows * kLag + kReach;  // turns that still count
  static_assert((kWaveLines + 2) * kLag + kTurns <= kWaveMargin);

  static constexpr int Weight(int row, int dx) { return kFilter.weights[row][kMostReach + dx]; }

  // By channel: the errors of the turns before a block, and of its own.
  Vector errors[3][kBefore + kTurns];

  // What a lane's errors aim at the pixel where the lane `row` lines below stands in turn `turn`.
  template <int Row>
  Vector Aimed(int channel, int turn) const {
    Vector sum = All(0);
#pragma GCC unroll 7
    for (int dx = -kReach; dx <= kReach; ++dx) {
      const int weight = Weight(Row, dx);
      if (weight == 0) continue;
      const Vector error = errors[channel][kBefore + turn - Row * kLag - dx];
      sum = _mm256_add_epi16(sum, _mm256_mullo_epi16(error, All(weight)));
    }
    return sum;
  }

  // The same for all rows from `Row` down, moved to the lane beneath: what the first lane gets, and
  // what the last one gives, are sums of the groups before and behind.
  template <int Row>
  Vector FromAbove(const WaveGroup& group, int channel, int turn, ptrdiff_t first) const {
    Vector sum = Aimed<Row>(channel, turn);
    if constexpr (Row < kRows)
      sum = _mm256_add_epi16(sum, FromAbove<Row + 1>(group, channel, turn, first));
    // The first word is the one; those behind it are written over by the next turns.
    int16_t* const row = group.aimed[channel][Row - 1] + first + turn - (Row - 1) * kLag;
    const Vector next = Load(row);
    StoreHalf(row - static_cast<ptrdiff_t>(kWaveLines) * kLag, _mm256_castsi256_si128(sum));
    return _mm256_alignr_epi8(_mm256_permute2x128_si256(sum, next, 0x21), sum, 2);
  }

  // The lanes that stand on their lines in turn `at`.
  static Vector Present(ptrdiff_t at, ptrdiff_t width) {
    const Vector behind = _mm256_mullo_epi16(
        _mm256_setr_epi16(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0), All(kLag));
    constexpr ptrdiff_t kMost = kWaveLines * kLag;
    const ptrdiff_t begun = at + 1 < kMost ? at + 1 : kMost;
    const ptrdiff_t ended = at - width > -1 ? at - width : -1;
    return _mm256_and_si256(_mm256_cmpgt_epi16(All(static_cast<int>(begun)), behind),
                            _mm256_cmpgt_epi16(behind, All(static_cast<int>(ended))));
  }

  // The turns of a block, of which the first is turn `first` of the group. `pixels`: three bytes of
  // each lane for each turn, a channel behind the other; `indexes`: one of each lane. With `Edge`,
  // lanes may stand beside their lines.
  template <class Palette, bool Edge>
  void Advance(const WaveGroup& group, ptrdiff_t first, const uint8_t* pixels, uint8_t* indexes) {
    for (int turn = 0; turn < kTurns; ++turn) {
      Vector wanted[3];
#pragma GCC unroll 3
      for (int channel = 0; channel < 3; ++channel) {
        const Vector value =
            _mm256_cvtepu8_epi16(LoadHalf(pixels + (3 * turn + channel) * kWaveLines));
        const Vector sum =
            _mm256_add_epi16(FromAbove<1>(group, channel, turn, first), AimedAhead(channel, turn));
        const Vector corrected = Corrected<kFilter.divisor>(value, sum);
        wanted[channel] = _mm256_min_epi16(_mm256_max_epi16(corrected, All(0)), All(255));
      }
      const Vector index = Palette::Choose(wanted[0], wanted[1], wanted[2]);
#pragma GCC unroll 3
      for (int channel = 0; channel < 3; ++channel) {
        Vector error = wanted[channel];
        if (Edge) {
          const auto width = static_cast<ptrdiff_t>(group.width);
          error = _mm256_and_si256(error, Present(first + turn, width));
        }
        errors[channel][kBefore + turn] = error;
      }
      StoreHalf(indexes + turn * kWaveLines, _mm_packus_epi16(_mm256_castsi256_si128(index),
                                                              _mm256_extracti128_si256(index, 1)));
    }
    for (auto& channel : errors) {
      for (int i = 0; i < kBefore; ++i)
        channel[i] = channel[i + kTurns];
    }
  }

  // What the pixels before it on its own line aim at a lane's pixel.
  Vector AimedAhead(int channel, int turn) const {
    Vector sum = All(0);
#pragma GCC unroll 3
    for (int dx = 1; dx <= kReach; ++dx) {
      if (Weight(0, dx) == 0) continue;
      sum = _mm256_add_epi16(
          sum, _mm256_mullo_epi16(errors[channel][kBefore + turn - dx], All(Weight(0, dx))));
    }
    return sum;
  }
};

template <int Method, class Palette>
void Run(const WaveGroup& group) {
  using Lanes = Front<Method>;
  constexpr auto kLag = ptrdiff_t{Lanes::kLag};
  constexpr auto kLast = static_cast<ptrdiff_t>(kWaveLines) - 1;
  Lanes front;
  for (auto& channel : front.errors) {
    for (int i = 0; i < Lanes::kBefore; ++i)
      channel[i] = All(0);
  }
  alignas(32) uint8_t pixels[3 * kTurns * kWaveLines], indexes[kTurns * kWaveLines];
  const auto width = static_cast<ptrdiff_t>(group.width);
  // A line further is also kLag pixels back.
  const ptrdiff_t pixelStride = group.pixelStride - 3 * kLag;
  const ptrdiff_t indexStride = group.indexStride - kLag;
  const ptrdiff_t turns = width + (kLast + Lanes::kRows) * kLag;
  for (ptrdiff_t first = 0; first < turns; first += kTurns) {
    const uint8_t* const from = group.pixels + 3 * first + kLast * pixelStride;
    for (int i = 0; i < 3; ++i)
      Transpose(from + 16 * i, -pixelStride, pixels + 16 * 16 * i, 16);
    if (first >= kLast * kLag && first + kTurns <= width) {
      front.template Advance<Palette, false>(group, first, pixels, indexes);
    } else {
      front.template Advance<Palette, true>(group, first, pixels, indexes);
    }
    Transpose(indexes, 16, group.indexes + first + kLast * indexStride, -indexStride);
  }
}

template <int Method, int Bits>
constexpr WaveLoop* Loop() {
  constexpr bool kFits = kDiffusionFilters[Method].divisor * Palette<Bits>::kMostError < 0x8000;
  if constexpr (kFits) {
    return Run<Method, Palette<Bits>>;
  } else {
    return nullptr;
  }
}

template <int Bits>
constexpr WaveLoop* kLoops[] = {Loop<1, Bits>(), Loop<2, Bits>(), Loop<3, Bits>(),
                                Loop<4, Bits>(), Loop<5, Bits>(), Loop<6, Bits>()};

}  // namespace

WaveLoop* WaveLoopAvx2(int32_t method, int32_t paletteBits) {
  return (paletteBits == 1 ? kLoops<1> : paletteBits == 4 ? kLoops<4> : kLoops<8>)[method - 1];
}

}  // namespace vn
