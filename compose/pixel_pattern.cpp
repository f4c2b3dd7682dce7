// One pixel repeated over stretches of memory.
#include "compose/pixel_pattern.h"

#include <algorithm>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define VNCORE_AVX2 __attribute__((target("avx2")))
#endif

namespace vn {

PixelPattern::PixelPattern(const uint8_t* pixel, uint32_t pixelBytes)
    : write_(Choose(
          std::all_of(pixel, pixel + pixelBytes, [&](uint8_t byte) { return byte == pixel[0]; }))) {
  for (size_t i = 0; i < sizeof bytes_; ++i) {
    bytes_[i] = pixel[i % pixelBytes];
  }
}

void PixelPattern::WriteByte(const uint8_t* pattern, uint8_t* at, size_t count) {
  std::memset(at, pattern[0], count);
}

void PixelPattern::WritePeriods(const uint8_t* pattern, uint8_t* at, size_t count) {
  for (; count >= kPeriod; count -= kPeriod, at += kPeriod) {
    std::memcpy(at, pattern, kPeriod);
  }
  std::memcpy(at, pattern, count);
}

#ifdef VNCORE_AVX2

// The pattern stays in three registers, turned so that all stores are aligned but those of the
// ends: memory sees the same as from memset.
VNCORE_AVX2 void PixelPattern::WriteVectors(const uint8_t* pattern, uint8_t* at, size_t count) {
  if (count < kPeriod) {
    std::memcpy(at, pattern, count);
    return;
  }
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(at),
                      _mm256_load_si256(reinterpret_cast<const __m256i*>(pattern)));
  const size_t head = -reinterpret_cast<uintptr_t>(at) % kVector;
  pattern += head;
  at += head;
  count -= head;
  const auto* vectors = reinterpret_cast<const __m256i*>(pattern);
  const __m256i first = _mm256_loadu_si256(vectors);
  const __m256i second = _mm256_loadu_si256(vectors + 1);
  const __m256i third = _mm256_loadu_si256(vectors + 2);
  for (; count >= kPeriod; count -= kPeriod, at += kPeriod) {
    auto* to = reinterpret_cast<__m256i*>(at);
    _mm256_store_si256(to, first);
    _mm256_store_si256(to + 1, second);
    _mm256_store_si256(to + 2, third);
  }
  std::memcpy(at, pattern, count);
}

PixelPattern::Writer PixelPattern::Choose(bool oneByte) {
  if (oneByte) return WriteByte;
  return __builtin_cpu_supports("avx2") ? WriteVectors : WritePeriods;
}

#else

PixelPattern::Writer PixelPattern::Choose(bool oneByte) {
  return oneByte ? WriteByte : WritePeriods;
}

#endif

}  // namespace vn
