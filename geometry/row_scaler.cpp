// The rows of one bitmap scaled to one width.
#include "geometry/row_scaler.h"

#include <algorithm>
#include <cstring>

#include "geometry/scale_row.h"
#include "kernel/pixel_format.h"
#include "kernel/vector.h"

namespace vn {
namespace {

constexpr uint8_t kNoByte = 0x80;  // in a mask: the byte comes from another piece

bool IsPacked(const RowScale& scale) { return scale.bitsPerPixel < 8; }

// Bytes that a new pixel picks.
uint32_t PickedBytes(const RowScale& scale) {
  return IsPacked(scale) ? 1 : static_cast<uint32_t>(scale.bitsPerPixel) / 8;
}

// The places of old pixels for new ones, from new pixel `pixel` on.
class Places {
 public:
  Places(const RowScale& scale, uint64_t pixel) : across_(scale.across) {
    if (IsPacked(scale)) {
      at_ = scale.startPixel % (8 / static_cast<uint32_t>(scale.bitsPerPixel));
      if (scale.expand) across_.quotient = 0;
    }
    const uint64_t sum = pixel * across_.remainder + across_.accumulator;
    at_ += pixel * across_.quotient + sum / across_.divisor;
    across_.accumulator = static_cast<uint32_t>(sum % across_.divisor);
  }
  uint64_t Next() {
    const uint64_t at = at_;
    at_ += across_.Advance();
    return at;
  }

 private:
  Stepper across_;
  uint64_t at_ = 0;
};

// The bytes of the old row that a piece of the new one takes, from picked byte `start` of that on.
struct PieceSources {
  PieceSources(const RowScale& scale, uint32_t start) {
    const uint32_t pixelBytes = PickedBytes(scale);
    Places places(scale, start / pixelBytes);
    uint32_t channel = start % pixelBytes;
    uint64_t from = 0;
    for (uint32_t i = 0; i < kPickPiece; ++i) {
      if (i == 0 || channel == 0) from = FirstByte(scale, places.Next());
      if (i == 0) first = static_cast<uint32_t>(from);
      bytes[i] = static_cast<uint32_t>(from) + channel;
      if (++channel == pixelBytes) channel = 0;
    }
    span = static_cast<uint32_t>(from) + pixelBytes - first;
  }
  static uint64_t FirstByte(const RowScale& scale, uint64_t pixel) {
    return pixel * static_cast<uint32_t>(scale.bitsPerPixel) / 8;
  }
  uint32_t first;  // of the leftmost pixel
  uint32_t span;   // up to the end of the rightmost one
  uint32_t bytes[kPickPiece];
};

}  // namespace

RowScaler::RowScaler(const RowScale& scale, uint32_t rows) : scale_(scale) {
  constexpr uint32_t kFewRows = 32;
  const PickLoop vector = VNCORE_VECTOR_FORM(nullptr, PickPiecesAvx2);
  if (!vector || rows < kFewRows || !WithDepth(scale.bitsPerPixel, [](auto) {}) || !Plan()) return;
  if (IsPacked(scale) && !PlanPacking()) return;
  vector_ = vector;
}

uint32_t RowScaler::PieceStart(uint32_t index) const {
  return std::min(index * kPickPiece, targetBytes_ - kPickPiece);
}

bool RowScaler::Plan() {
  const uint64_t sourceBytes =
      (uint64_t{scale_.oldPixels} * static_cast<uint32_t>(scale_.bitsPerPixel) + 7) / 8;
  const uint64_t targetBytes = uint64_t{scale_.newPixels} * PickedBytes(scale_);
  if (sourceBytes > INT32_MAX || targetBytes > INT32_MAX || targetBytes < kPickPiece) return false;
  targetBytes_ = static_cast<uint32_t>(targetBytes);
  const uint32_t pieces = (targetBytes_ + kPickPiece - 1) / kPickPiece;

  uint32_t span = 0;
  for (uint32_t i = 0; i < pieces; ++i) {
    const PieceSources sources(scale_, PieceStart(i));
    span = std::max(span, sources.span);
    if (span > kMostPickSpread * kPickPiece) return false;
    if (uint64_t{sources.first} + sources.span > sourceBytes) return false;
  }
  const uint32_t spread = (span + kPickPiece - 1) / kPickPiece, read = spread * kPickPiece;
  if (sourceBytes < read) return false;

  offsets_ = ScratchBuffer<uint32_t>(pieces);
  masks_ = ScratchBuffer<uint8_t>(size_t{pieces} * read);
  if (!offsets_ || !masks_) return false;
  for (uint32_t i = 0; i < pieces; ++i) {
    const PieceSources sources(scale_, PieceStart(i));
    // All that is read lies in the row.
    offsets_[i] = std::min(sources.first, static_cast<uint32_t>(sourceBytes) - read);
    uint8_t* masks = masks_.data() + size_t{i} * read;
    std::fill_n(masks, read, kNoByte);
    for (uint32_t byte = 0; byte < kPickPiece; ++byte) {
      const uint32_t from = sources.bytes[byte] - offsets_[i];
      masks[from / kPickPiece * kPickPiece + byte] = static_cast<uint8_t>(from % kPickPiece);
    }
  }
  plan_ = {pieces, spread, offsets_.data(), masks_.data(), PieceStart(pieces - 1)};
  return true;
}

bool RowScaler::PlanPacking() {
  const auto bits = static_cast<uint32_t>(scale_.bitsPerPixel);
  packedBytes_ = static_cast<uint32_t>((scale_.newPixels * uint64_t{bits} + 7) / 8);
  // Bits are cleared as far as the row is told to be long, and no farther.
  if (bits == 1 && scale_.rowBytes < packedBytes_) return false;
  const size_t room = (size_t{scale_.newPixels} + kPackPiece - 1) / kPackPiece * kPackPiece;
  picked_ = ScratchBuffer<uint8_t>(room, Fill::kZero);
  chosen_ = ScratchBuffer<uint8_t>(room, Fill::kZero);
  if (!picked_ || !chosen_) return false;
  Places places(scale_, 0);
  for (uint32_t i = 0; i < scale_.newPixels; ++i) {
    const auto left = static_cast<uint32_t>(places.Next() * bits % 8);
    chosen_[i] = static_cast<uint8_t>((0xFF00u >> bits & 0xFF) >> left);
  }
  pack_ = bits == 1 ? VNCORE_VECTOR_FORM(nullptr, PackBitsAvx2)
                    : VNCORE_VECTOR_FORM(nullptr, PackNibblesAvx2);
  return true;
}

void RowScaler::Scale(const uint8_t* source, uint8_t* destination) const {
  if (!vector_) {
    const Stepper& across = scale_.across;
    ScaleRow(scale_.bitsPerPixel, scale_.rowBytes, scale_.startPixel, across.quotient,
             across.accumulator, across.remainder, source, destination, scale_.newPixels,
             across.divisor, scale_.expand);
  } else if (!pack_) {
    vector_(plan_, source, destination);
  } else {
    vector_(plan_, source, picked_.data());
    pack_(picked_.data(), chosen_.data(), packedBytes_, destination);
    if (scale_.bitsPerPixel == 1) {
      std::memset(destination + packedBytes_, 0, scale_.rowBytes - packedBytes_);
    }
  }
}

}  // namespace vn
