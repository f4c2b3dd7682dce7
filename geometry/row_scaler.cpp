// The rows of one bitmap scaled to one width.
#include "geometry/row_scaler.h"

#include <algorithm>

#include "geometry/scale_row.h"
#include "kernel/vector.h"

namespace vn {
namespace {

constexpr uint8_t kNoByte = 0x80;  // in a mask: the byte comes from another piece

// The bytes of the old row that a piece of the new one takes, from byte `start` of that on.
struct PieceSources {
  PieceSources(Stepper across, uint32_t pixelBytes, uint32_t start) {
    const uint64_t pixel = start / pixelBytes;
    const uint64_t sum = pixel * across.remainder + across.accumulator;
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
    span = bytes[kPickPiece - 1] / pixelBytes * pixelBytes + pixelBytes - first;
  }
  uint32_t first;  // of the leftmost pixel
  uint32_t span;   // up to the end of the rightmost one
  uint32_t bytes[kPickPiece];
};

}  // namespace

RowScaler::RowScaler(const RowScale& scale, uint32_t rows) : scale_(scale) {
  constexpr uint32_t kFewRows = 32;
  const bool whole = scale.bitsPerPixel == 8 || scale.bitsPerPixel == 16 ||
                     scale.bitsPerPixel == 24 || scale.bitsPerPixel == 32;
  const PickLoop vector = VNCORE_VECTOR_FORM(nullptr, PickPiecesAvx2);
  if (whole && vector && rows >= kFewRows && Plan()) vector_ = vector;
}

uint32_t RowScaler::PieceStart(uint32_t index) const {
  return std::min(index * kPickPiece, targetBytes_ - kPickPiece);
}

bool RowScaler::Plan() {
  const uint32_t pixelBytes = static_cast<uint32_t>(scale_.bitsPerPixel) / 8;
  const uint64_t sourceBytes = uint64_t{scale_.oldPixels} * pixelBytes;
  const uint64_t targetBytes = uint64_t{scale_.newPixels} * pixelBytes;
  if (sourceBytes > INT32_MAX || targetBytes > INT32_MAX || targetBytes < kPickPiece) return false;
  targetBytes_ = static_cast<uint32_t>(targetBytes);
  const uint32_t pieces = (targetBytes_ + kPickPiece - 1) / kPickPiece;

  uint32_t span = 0;
  for (uint32_t i = 0; i < pieces; ++i) {
    span = std::max(span, PieceSources(scale_.across, pixelBytes, PieceStart(i)).span);
    if (span > kMostPickSpread * kPickPiece) return false;
  }
  const uint32_t spread = (span + kPickPiece - 1) / kPickPiece, read = spread * kPickPiece;
  if (sourceBytes < read) return false;

  offsets_ = ScratchBuffer<uint32_t>(pieces);
  masks_ = ScratchBuffer<uint8_t>(size_t{pieces} * read);
  if (!offsets_ || !masks_) return false;
  for (uint32_t i = 0; i < pieces; ++i) {
    const PieceSources sources(scale_.across, pixelBytes, PieceStart(i));
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

void RowScaler::Scale(const uint8_t* source, uint8_t* destination) const {
  if (vector_) {
    vector_(plan_, source, destination);
  } else {
    const Stepper& across = scale_.across;
    ScaleRow(scale_.bitsPerPixel, scale_.rowBytes, scale_.startPixel, across.quotient,
             across.accumulator, across.remainder, source, destination, scale_.newPixels,
             across.divisor, scale_.expand);
  }
}

}  // namespace vn
