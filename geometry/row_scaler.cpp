// The rows of one bitmap scaled to one width.
#include "geometry/row_scaler.h"

#include <algorithm>

#include "geometry/scale_row.h"

#if defined(__x86_64__) || defined(__i386__)
#include <tmmintrin.h>
#define VNCORE_SSSE3 __attribute__((target("ssse3")))
#endif

namespace vn {

namespace {

constexpr uint32_t kPiece = 16;
constexpr uint32_t kMostSpread = 4;  // beyond it too much of what is read is thrown away
constexpr uint8_t kNoByte = 0x80;    // in a mask: the byte comes from another piece

#ifdef VNCORE_SSSE3

bool HasByteShuffle() { return __builtin_cpu_supports("ssse3"); }

VNCORE_SSSE3 inline __m128i Load(const uint8_t* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}

template <uint32_t Spread>
VNCORE_SSSE3 inline void PickPiece(const uint8_t* source, const uint8_t* masks, uint8_t* target) {
  __m128i picked = _mm_shuffle_epi8(Load(source), Load(masks));
  for (uint32_t i = 1; i < Spread; ++i) {
    picked =
        _mm_or_si128(picked, _mm_shuffle_epi8(Load(source + i * kPiece), Load(masks + i * kPiece)));
  }
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target), picked);
}

template <uint32_t Spread>
VNCORE_SSSE3 void PickRow(const uint8_t* source, const uint32_t* offsets, const uint8_t* masks,
                          uint32_t pieces, uint8_t* target, uint8_t* lastTarget) {
  for (uint32_t i = 0; i + 1 < pieces; ++i) {
    PickPiece<Spread>(source + offsets[i], masks, target);
    masks += Spread * kPiece;
    target += kPiece;
  }
  PickPiece<Spread>(source + offsets[pieces - 1], masks, lastTarget);
}

using Picker = void (*)(const uint8_t*, const uint32_t*, const uint8_t*, uint32_t, uint8_t*,
                        uint8_t*);
constexpr Picker kPickers[kMostSpread] = {PickRow<1>, PickRow<2>, PickRow<3>, PickRow<4>};

#else

bool HasByteShuffle() { return false; }

#endif

}  // namespace

RowScaler::RowScaler(int32_t bitsPerPixel, const Stepper& across, uint32_t oldWidth,
                     uint32_t rowBytes, bool expand)
    : bitsPerPixel_(bitsPerPixel), across_(across), rowBytes_(rowBytes), expand_(expand) {
  const bool whole =
      bitsPerPixel == 8 || bitsPerPixel == 16 || bitsPerPixel == 24 || bitsPerPixel == 32;
  if (whole && HasByteShuffle()) Plan(oldWidth);
}

uint32_t RowScaler::PieceStart(uint32_t index) const {
  return std::min(index * kPiece, targetBytes_ - kPiece);
}

namespace {

// The bytes of the old row that a piece of the new one takes, from byte `start` of that on.
struct PieceSources {
  PieceSources(Stepper across, uint32_t pixelBytes, uint32_t start) {
    const uint64_t pixel = start / pixelBytes;
    const uint64_t sum = pixel * across.remainder;
    uint64_t from = pixel * across.quotient + sum / across.divisor;
    across.accumulator = static_cast<uint32_t>(sum % across.divisor);
    first = static_cast<uint32_t>(from) * pixelBytes;
    uint32_t channel = start % pixelBytes;
    for (uint32_t& byte : bytes) {
      byte = static_cast<uint32_t>(from) * pixelBytes + channel;
      if (++channel < pixelBytes) continue;
      channel = 0;
      from += across.Advance();
    }
    span = bytes[kPiece - 1] / pixelBytes * pixelBytes + pixelBytes - first;
  }
  uint32_t first;  // of the leftmost pixel
  uint32_t span;   // up to the end of the rightmost one
  uint32_t bytes[kPiece];
};

}  // namespace

void RowScaler::Plan(uint32_t oldWidth) {
  const uint32_t pixelBytes = static_cast<uint32_t>(bitsPerPixel_) / 8;
  const uint64_t sourceBytes = uint64_t{oldWidth} * pixelBytes;
  const uint64_t targetBytes = uint64_t{across_.divisor} * pixelBytes;
  if (sourceBytes > INT32_MAX || targetBytes > INT32_MAX || targetBytes < kPiece) return;
  targetBytes_ = static_cast<uint32_t>(targetBytes);
  const uint32_t pieces = (targetBytes_ + kPiece - 1) / kPiece;

  uint32_t span = 0;
  for (uint32_t i = 0; i < pieces; ++i) {
    span = std::max(span, PieceSources(across_, pixelBytes, PieceStart(i)).span);
    if (span > kMostSpread * kPiece) return;
  }
  spread_ = (span + kPiece - 1) / kPiece;
  const uint32_t read = spread_ * kPiece;
  if (sourceBytes < read) return;

  offsets_ = ScratchBuffer<uint32_t>(pieces);
  masks_ = ScratchBuffer<uint8_t>(size_t{pieces} * read);
  if (!offsets_ || !masks_) return;
  for (uint32_t i = 0; i < pieces; ++i) {
    const PieceSources sources(across_, pixelBytes, PieceStart(i));
    // All that is read lies in the row.
    offsets_[i] = std::min(sources.first, static_cast<uint32_t>(sourceBytes) - read);
    uint8_t* masks = masks_.data() + size_t{i} * read;
    std::fill_n(masks, read, kNoByte);
    for (uint32_t byte = 0; byte < kPiece; ++byte) {
      const uint32_t from = sources.bytes[byte] - offsets_[i];
      masks[from / kPiece * kPiece + byte] = static_cast<uint8_t>(from % kPiece);
    }
  }
  pieces_ = pieces;
}

void RowScaler::Scale(const uint8_t* source, uint8_t* destination) const {
#ifdef VNCORE_SSSE3
  if (pieces_) {
    kPickers[spread_ - 1](source, offsets_.data(), masks_.data(), pieces_, destination,
                          destination + PieceStart(pieces_ - 1));
    return;
  }
#endif
  ScaleRow(bitsPerPixel_, rowBytes_, 0, across_.quotient, 0, across_.remainder, source, destination,
           across_.divisor, across_.divisor, expand_);
}

}  // namespace vn
