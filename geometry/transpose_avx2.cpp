// Transposition in registers: blocks of 16 or 32 rows, two halves of the rows side by side in the
// two lanes. A block at the end of a tile overlaps the one before it, so that none is ragged.
#include "geometry/transpose_avx2.h"

#include <immintrin.h>

#include <cstring>

namespace vn {
namespace {

using Vector = __m256i;

const __m128i* At(const uint8_t* p) { return reinterpret_cast<const __m128i*>(p); }
__m128i* At(uint8_t* p) { return reinterpret_cast<__m128i*>(p); }

Vector LoadLanes(const uint8_t* low, const uint8_t* high) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(At(low))),
                                 _mm_loadu_si128(At(high)), 1);
}

// Items of `Bytes` bytes; in each lane, item c of vector r becomes item r of vector c. One round
// interleaves the first half of the vectors with the second, which turns the bits of an item's
// number (vector, then place in the lane) by one place.
template <int Bytes>
Vector Low(Vector a, Vector b) {
  if constexpr (Bytes == 1) return _mm256_unpacklo_epi8(a, b);
  if constexpr (Bytes == 2) return _mm256_unpacklo_epi16(a, b);
  return _mm256_unpacklo_epi32(a, b);
}
template <int Bytes>
Vector High(Vector a, Vector b) {
  if constexpr (Bytes == 1) return _mm256_unpackhi_epi8(a, b);
  if constexpr (Bytes == 2) return _mm256_unpackhi_epi16(a, b);
  return _mm256_unpackhi_epi32(a, b);
}
template <int Bytes>
inline __attribute__((always_inline)) void TransposeLanes(Vector* v) {
  constexpr int kCount = 16 / Bytes;
  for (int round = 1; round < kCount; round *= 2) {
    Vector turned[kCount];
    for (int i = 0; i < kCount / 2; ++i) {
      turned[2 * i] = Low<Bytes>(v[i], v[i + kCount / 2]);
      turned[2 * i + 1] = High<Bytes>(v[i], v[i + kCount / 2]);
    }
    for (int i = 0; i < kCount; ++i)
      v[i] = turned[i];
  }
}

// A block: its source rows, the byte where it begins in them, and where its first pixel goes. The
// packed ones write `pixels` rows of the result.
struct Whole8 {
  static constexpr size_t kRows = 32, kBytes = 16;  // of a source row
  static void Turn(const uint8_t* const* rows, size_t at, uint8_t* to, ptrdiff_t stride, size_t) {
    Vector v[16];
    for (int i = 0; i < 16; ++i)
      v[i] = LoadLanes(rows[i] + at, rows[i + 16] + at);
    TransposeLanes<1>(v);
    for (int i = 0; i < 16; ++i, to += stride)
      _mm256_storeu_si256(reinterpret_cast<Vector*>(to), v[i]);
  }
};

struct Whole16 {
  static constexpr size_t kRows = 16, kBytes = 16;
  static void Turn(const uint8_t* const* rows, size_t at, uint8_t* to, ptrdiff_t stride, size_t) {
    Vector v[8];
    for (int i = 0; i < 8; ++i)
      v[i] = LoadLanes(rows[i] + at, rows[i + 8] + at);
    TransposeLanes<2>(v);
    for (int i = 0; i < 8; ++i, to += stride)
      _mm256_storeu_si256(reinterpret_cast<Vector*>(to), v[i]);
  }
};

struct Whole32 {
  static constexpr size_t kRows = 8, kBytes = 16;
  static void Turn(const uint8_t* const* rows, size_t at, uint8_t* to, ptrdiff_t stride, size_t) {
    Vector v[4];
    for (int i = 0; i < 4; ++i)
      v[i] = LoadLanes(rows[i] + at, rows[i + 4] + at);
    TransposeLanes<4>(v);
    for (int i = 0; i < 4; ++i, to += stride)
      _mm256_storeu_si256(reinterpret_cast<Vector*>(to), v[i]);
  }
};

// Eight pixels across: two times 16 bytes that hold four pixels each, the second taken four bytes
// early, so that nothing beyond the pixels is read. They are widened to words and packed again.
struct Whole24 {
  static constexpr size_t kRows = 8, kBytes = 24;
  static void Turn(const uint8_t* const* rows, size_t at, uint8_t* to, ptrdiff_t stride, size_t) {
    Four(rows, at,
         _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, 0, 1, 2, -1, 3, 4,
                          5, -1, 6, 7, 8, -1, 9, 10, 11, -1),
         to, stride);
    Four(rows, at + 8,
         _mm256_setr_epi8(4, 5, 6, -1, 7, 8, 9, -1, 10, 11, 12, -1, 13, 14, 15, -1, 4, 5, 6, -1, 7,
                          8, 9, -1, 10, 11, 12, -1, 13, 14, 15, -1),
         to + 4 * stride, stride);
  }

 private:
  static void Four(const uint8_t* const* rows, size_t offset, Vector widen, uint8_t* to,
                   ptrdiff_t stride) {
    const Vector narrow = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1,
                                           0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    const Vector join = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
    Vector v[4];
    for (int i = 0; i < 4; ++i)
      v[i] = _mm256_shuffle_epi8(LoadLanes(rows[i] + offset, rows[i + 4] + offset), widen);
    TransposeLanes<4>(v);
    for (int i = 0; i < 4; ++i, to += stride) {
      const Vector packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(v[i], narrow), join);
      _mm_storeu_si128(At(to), _mm256_castsi256_si128(packed));
      _mm_storel_epi64(At(to + 16), _mm256_extracti128_si256(packed, 1));
    }
  }
};

// Even rows in the low lane and odd ones in the high lane: the two nibbles of a byte of the result.
struct Packed4 {
  static constexpr size_t kRows = 32, kBytes = 16;
  static void Turn(const uint8_t* const* rows, size_t at, uint8_t* to, ptrdiff_t stride,
                   size_t pixels) {
    const __m128i high = _mm_set1_epi8(static_cast<char>(0xF0));
    Vector v[16];
    for (int i = 0; i < 16; ++i)
      v[i] = LoadLanes(rows[2 * i] + at, rows[2 * i + 1] + at);
    TransposeLanes<1>(v);
    for (size_t i = 0; 2 * i < pixels; ++i) {
      const __m128i even = _mm256_castsi256_si128(v[i]), odd = _mm256_extracti128_si256(v[i], 1);
      const __m128i left =
          _mm_or_si128(_mm_and_si128(even, high), _mm_andnot_si128(high, _mm_srli_epi16(odd, 4)));
      const __m128i right =
          _mm_or_si128(_mm_and_si128(_mm_slli_epi16(even, 4), high), _mm_andnot_si128(high, odd));
      _mm_storeu_si128(At(to), left);
      to += stride;
      if (2 * i + 1 == pixels) return;
      _mm_storeu_si128(At(to), right);
      to += stride;
    }
  }
};

// One column of bytes of 32 rows gives, top bit by top bit, 32 pixels of eight rows of the result.
// The eight rows of a byte are taken in reverse, because the first pixel is the high bit.
struct Packed1 {
  static constexpr size_t kRows = 32, kBytes = 16;
  static void Turn(const uint8_t* const* rows, size_t at, uint8_t* to, ptrdiff_t stride,
                   size_t pixels) {
    Vector v[16];
    for (int i = 0; i < 16; ++i)
      v[i] = LoadLanes(rows[i ^ 7] + at, rows[(i ^ 7) + 16] + at);
    TransposeLanes<1>(v);
    for (size_t i = 0; i < pixels / 8; ++i)
      to = Column(v[i], to, stride, 8);
    if (pixels % 8) Column(v[pixels / 8], to, stride, pixels % 8);
  }

 private:
  static inline __attribute__((always_inline)) uint8_t* Column(Vector v, uint8_t* to,
                                                               ptrdiff_t stride, size_t pixels) {
    for (size_t bit = 0; bit < pixels; ++bit, to += stride) {
      const int32_t mask = _mm256_movemask_epi8(v);
      std::memcpy(to, &mask, sizeof mask);
      v = _mm256_add_epi8(v, v);
    }
    return to;
  }
};

template <int Bits, class Block>
bool Run(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
         ptrdiff_t destinationStride, size_t rows, size_t columns) {
  constexpr size_t kPerByte = Bits < 8 ? 8 / Bits : 1;
  constexpr size_t kUnit = Bits < 8 ? 1 : Bits / 8;  // bytes that begin with a pixel
  constexpr size_t kColumns = Block::kBytes / kUnit * kPerByte;
  const size_t bytes = (columns + kPerByte - 1) / kPerByte * kUnit;
  if (rows < Block::kRows || bytes < Block::kBytes) return false;
  // Where the last blocks begin.
  const size_t lastRow = (rows - Block::kRows + kPerByte - 1) / kPerByte * kPerByte;
  const size_t lastByte = bytes - Block::kBytes;
  for (size_t y = 0; y < rows; y += Block::kRows) {
    const size_t row = y < lastRow ? y : lastRow;
    const uint8_t* from[Block::kRows];
    for (size_t i = 0; i < Block::kRows; ++i) {
      const size_t present = row + i < rows ? row + i : rows - 1;
      from[i] = source + static_cast<ptrdiff_t>(present) * sourceStride;
    }
    uint8_t* to = destination + row * Bits / 8;
    for (size_t x = 0; x < bytes; x += Block::kBytes) {
      const size_t byte = x < lastByte ? x : lastByte;
      const size_t column = byte / kUnit * kPerByte;
      Block::Turn(from, byte, to + static_cast<ptrdiff_t>(column) * destinationStride,
                  destinationStride, columns - column < kColumns ? columns - column : kColumns);
    }
  }
  // Rows that are not there have filled up the last byte.
  const size_t missing = (kPerByte - rows % kPerByte) % kPerByte;
  if (missing) {
    uint8_t* last = destination + rows / kPerByte;
    for (size_t x = 0; x < columns; ++x, last += destinationStride)
      *last = static_cast<uint8_t>(*last & 0xFFu << missing * Bits);
  }
  return true;
}

}  // namespace

bool Transpose1Avx2(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
                    ptrdiff_t destinationStride, size_t rows, size_t columns) {
  return Run<1, Packed1>(source, sourceStride, destination, destinationStride, rows, columns);
}
bool Transpose4Avx2(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
                    ptrdiff_t destinationStride, size_t rows, size_t columns) {
  return Run<4, Packed4>(source, sourceStride, destination, destinationStride, rows, columns);
}
bool Transpose8Avx2(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
                    ptrdiff_t destinationStride, size_t rows, size_t columns) {
  return Run<8, Whole8>(source, sourceStride, destination, destinationStride, rows, columns);
}
bool Transpose16Avx2(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
                     ptrdiff_t destinationStride, size_t rows, size_t columns) {
  return Run<16, Whole16>(source, sourceStride, destination, destinationStride, rows, columns);
}
bool Transpose24Avx2(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
                     ptrdiff_t destinationStride, size_t rows, size_t columns) {
  return Run<24, Whole24>(source, sourceStride, destination, destinationStride, rows, columns);
}
bool Transpose32Avx2(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
                     ptrdiff_t destinationStride, size_t rows, size_t columns) {
  return Run<32, Whole32>(source, sourceStride, destination, destinationStride, rows, columns);
}

}  // namespace vn
