// The vector form of pixel_pattern.cpp.
#include <immintrin.h>

#include <cstring>

#include "compose/pixel_pattern_writers.h"

namespace vn {

namespace {

// Whole periods from a vector's boundary on, out of three registers.
template <class Store>
inline void StorePeriods(const uint8_t* pattern, uint8_t* at, size_t count, Store store) {
  const auto* vectors = reinterpret_cast<const __m256i*>(pattern);
  const __m256i first = _mm256_loadu_si256(vectors);
  const __m256i second = _mm256_loadu_si256(vectors + 1);
  const __m256i third = _mm256_loadu_si256(vectors + 2);
  for (uint8_t* const end = at + count; at != end; at += kPatternPeriod) {
    auto* to = reinterpret_cast<__m256i*>(at);
    store(to, first);
    store(to + 1, second);
    store(to + 2, third);
  }
}

}  // namespace

// The pattern is turned so that all stores are aligned but those of the ends: memory sees the same
// as from memset.
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
  const size_t rest = count % kPatternPeriod;
  StorePeriods(pattern, at, count - rest,
               [](__m256i* to, __m256i bytes) { _mm256_store_si256(to, bytes); });
  std::memcpy(at + count - rest, pattern, rest);
}

// Whole cache lines go past the caches; what surrounds them goes through.
void StreamPatternAvx2(const uint8_t* pattern, uint8_t* at, size_t count) {
  constexpr size_t kLines = 2 * kPatternPeriod, kLeast = 1024;
  static_assert(kLines % kCacheLine == 0);
  if (count < kLeast) return WritePatternAvx2(pattern, at, count);
  const size_t head = -reinterpret_cast<uintptr_t>(at) % kCacheLine;
  WritePatternAvx2(pattern, at, head);
  pattern += head;
  at += head;
  count -= head;
  const size_t rest = count % kLines;
  StorePeriods(pattern, at, count - rest,
               [](__m256i* to, __m256i bytes) { _mm256_stream_si256(to, bytes); });
  _mm_sfence();
  WritePatternAvx2(pattern, at + count - rest, rest);
}

}  // namespace vn
