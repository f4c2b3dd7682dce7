// Ones of blocks of bits: many blocks at a time where they are parts of bytes, and elsewhere each
// by one count of a window of 64 bits.
#include "device/bit_blocks_avx2.h"

#include <immintrin.h>

#include <cstring>

namespace vn {
namespace {

constexpr uint32_t kBytes = 32;

__m256i Load(const uint8_t* at) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at)); }
void Store(uint8_t* at, __m256i bytes) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), bytes);
}

// A table of 16 bytes for every nibble.
template <class ValueOf>
__m256i Table(const ValueOf& valueOf) {
  alignas(16) uint8_t table[16];
  for (uint32_t i = 0; i < 16; ++i)
    table[i] = valueOf(i);
  return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(table)));
}

__m256i High(__m256i bytes) {
  return _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(15));
}
__m256i Low(__m256i bytes) { return _mm256_and_si256(bytes, _mm256_set1_epi8(15)); }

// Two vectors as 64 bytes that alternate, in order.
void Interleave(__m256i even, __m256i odd, __m256i to[2]) {
  const __m256i low = _mm256_unpacklo_epi8(even, odd), high = _mm256_unpackhi_epi8(even, odd);
  to[0] = _mm256_permute2x128_si256(low, high, 0x20);
  to[1] = _mm256_permute2x128_si256(low, high, 0x31);
}

uint8_t Ones(uint32_t bits) { return static_cast<uint8_t>(_mm_popcnt_u32(bits)); }

// `write(bytes, at)` turns 32 bytes into `PerByte` times as many values.
template <uint32_t PerByte, class Write>
void ForBytes(const BlockPlan& plan, const uint8_t* bits, uint8_t* values, const Write& write) {
  const uint32_t bytes = (plan.blocks + PerByte - 1) / PerByte;
  uint32_t i = 0;
  for (; i + kBytes <= bytes; i += kBytes)
    write(Load(bits + i), values + i * PerByte);
  if (i == bytes) return;
  alignas(32) uint8_t rest[kBytes] = {};
  std::memcpy(rest, bits + i, bytes - i);
  write(Load(rest), values + i * PerByte);
}

}  // namespace

void ByteValuesAvx2(const BlockPlan& plan, const uint8_t* bits, uint8_t* values) {
  const __m256i ones = Table(Ones);
  const __m256i value = Table([&](uint32_t count) { return plan.values[0][count]; });
  ForBytes<1>(plan, bits, values, [&](__m256i bytes, uint8_t* at) {
    const __m256i counts = _mm256_add_epi8(_mm256_shuffle_epi8(ones, High(bytes)),
                                           _mm256_shuffle_epi8(ones, Low(bytes)));
    Store(at, _mm256_shuffle_epi8(value, counts));
  });
}

void NibbleValuesAvx2(const BlockPlan& plan, const uint8_t* bits, uint8_t* values) {
  const __m256i value = Table([&](uint32_t nibble) { return plan.values[0][Ones(nibble)]; });
  ForBytes<2>(plan, bits, values, [&](__m256i bytes, uint8_t* at) {
    __m256i both[2];
    Interleave(_mm256_shuffle_epi8(value, High(bytes)), _mm256_shuffle_epi8(value, Low(bytes)),
               both);
    Store(at, both[0]);
    Store(at + kBytes, both[1]);
  });
}

void PairValuesAvx2(const BlockPlan& plan, const uint8_t* bits, uint8_t* values) {
  const __m256i left = Table([&](uint32_t nibble) { return plan.values[0][Ones(nibble >> 2)]; });
  const __m256i right = Table([&](uint32_t nibble) { return plan.values[0][Ones(nibble & 3)]; });
  ForBytes<4>(plan, bits, values, [&](__m256i bytes, uint8_t* at) {
    __m256i nibbles[2];
    Interleave(High(bytes), Low(bytes), nibbles);
    for (uint32_t i = 0; i < 2; ++i) {
      __m256i both[2];
      Interleave(_mm256_shuffle_epi8(left, nibbles[i]), _mm256_shuffle_epi8(right, nibbles[i]),
                 both);
      Store(at + 2 * i * kBytes, both[0]);
      Store(at + (2 * i + 1) * kBytes, both[1]);
    }
  });
}

void BlockValuesAvx2(const BlockPlan& plan, const uint8_t* bits, uint8_t* values) {
  // Out of the plan, which a store through a byte pointer could change.
  const uint32_t quotient = plan.quotient, remainder = plan.remainder, divisor = plan.divisor;
  const uint32_t blocks = plan.blocks;
  const uint32_t shifts[2] = {64 - plan.columns[0], 64 - plan.columns[1]};
  uint8_t table[2][64];
  std::memcpy(table, plan.values, sizeof table);
  uint32_t column = plan.first, accumulator = plan.accumulator;
  for (uint32_t i = 0; i < blocks; ++i) {
    accumulator += remainder;
    const uint32_t more = accumulator >= divisor;
    accumulator -= more ? divisor : 0;
    uint64_t window;
    std::memcpy(&window, bits + (column >> 3), sizeof window);
    window = __builtin_bswap64(window) << (column & 7) >> shifts[more];
    // By halves: 32-bit processors have no count of 64.
    const auto ones = _mm_popcnt_u32(static_cast<uint32_t>(window)) +
                      _mm_popcnt_u32(static_cast<uint32_t>(window >> 32));
    values[i] = table[more][ones];
    column += quotient + more;
  }
}

void VotesAvx2(const uint16_t* counts, uint32_t threshold, uint32_t bytes, uint8_t* target) {
  const __m256i below = _mm256_set1_epi16(static_cast<short>(threshold - 1));
  const __m256i turned = _mm256_setr_epi8(7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8, 7,
                                          6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8);
  for (; bytes; counts += kBytes) {
    const auto* const words = reinterpret_cast<const __m256i*>(counts);
    const __m256i ink =
        _mm256_packs_epi16(_mm256_cmpgt_epi16(_mm256_loadu_si256(words), below),
                           _mm256_cmpgt_epi16(_mm256_loadu_si256(words + 1), below));
    const __m256i ordered = _mm256_permute4x64_epi64(ink, _MM_SHUFFLE(3, 1, 2, 0));
    const auto four =
        static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_shuffle_epi8(ordered, turned)));
    const uint32_t some = bytes < 4 ? bytes : 4;
    std::memcpy(target, &four, some);
    target += some;
    bytes -= some;
  }
}

}  // namespace vn
