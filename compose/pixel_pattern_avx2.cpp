// The vector form of pixel_pattern.cpp.
#include <immintrin.h>

#include <cstring>

#include "compose/pixel_pattern_writers.h"

namespace vn {

// The pattern stays in three registers, turned so that all stores are aligned but those of the
// ends: memory sees the same as from memset.
void WritePatternAvx2(const uint8_t* pattern, uint8_t* at, size_t count) {
  if (count < kPatternPeriod) {
    std::memcpy(at, pattern, count);
    return;
  }
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(at),
                      _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pattern)));
  const size_t head = -reinterpret_cast<uintptr_t>(at) % kPatternVector;
  pattern += head;
  at += head;
  count -= head;
  const auto* vectors = reinterpret_cast<const __m256i*>(pattern);
  const __m256i first = _mm256_loadu_si256(vectors);
  const __m256i second = _mm256_loadu_si256(vectors + 1);
  const __m256i third = _mm256_loadu_si256(vectors + 2);
  for (; count >= kPatternPeriod; count -= kPatternPeriod, at += kPatternPeriod) {
    auto* to = reinterpret_cast<__m256i*>(at);
    _mm256_store_si256(to, first);
    _mm256_store_si256(to + 1, second);
    _mm256_store_si256(to + 2, third);
  }
  std::memcpy(at, pattern, count);
}

// Whole cache lines go past the caches; what surrounds them goes through.
void StreamPatternAvx2(const uint8_t* pattern, uint8_t* at, size_t count) {
  constexpr size_t kLines = 2 * kPatternPeriod, kLeast = 1024;
  if (count < kLeast) return WritePatternAvx2(pattern, at, count);
  const size_t head = -reinterpret_cast<uintptr_t>(at) % kCacheLine;
  WritePatternAvx2(pattern, at, head);
  at += head;
  count -= head;
  const auto* vectors = reinterpret_cast<const __m256i*>(pattern + head);
  const __m256i first = _mm256_loadu_si256(vectors);
  const __m256i second = _mm256_loadu_si256(vectors + 1);
  const __m256i third = _mm256_loadu_si256(vectors + 2);
  for (; count >= kLines; count -= kLines, at += kLines) {
    auto* to = reinterpret_cast<__m256i*>(at);
    _mm256_stream_si256(to, first);
    _mm256_stream_si256(to + 1, second);
    _mm256_stream_si256(to + 2, third);
    _mm256_stream_si256(to + 3, first);
    _mm256_stream_si256(to + 4, second);
    _mm256_stream_si256(to + 5, third);
  }
  _mm_sfence();
  WritePatternAvx2(pattern + head, at, count);
}

}  // namespace vn
