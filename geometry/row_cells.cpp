// Cells of a row averaged: the plain loop, and the plan of the vector loops.
#include "geometry/row_cells.h"

#include <algorithm>
#include <array>

#include "geometry/cell_division.h"
#include "kernel/vector.h"

namespace vn {
namespace {

// First old pixel of new pixel `place`.
uint32_t CellStart(const ResampleAxis& axis, uint32_t place) {
  return static_cast<uint32_t>(uint64_t{place} * axis.oldSize / axis.newSize);
}

// The steps from new pixel `place` on.
Stepper SizesFrom(const ResampleAxis& axis, uint32_t place) {
  Stepper sizes = axis.Sizes();
  sizes.accumulator = static_cast<uint32_t>(uint64_t{place} * sizes.remainder % axis.newSize);
  return sizes;
}

// 2^24 divided by a cell's size, or 0 where there is no such division.
uint32_t ReciprocalOf(uint32_t size) { return size <= kMostCell ? WideReciprocal(size) : 0; }

}  // namespace

template <uint32_t Channels>
void AverageCells(const ResampleAxis& axis, const uint8_t* source, uint8_t* target,
                  uint32_t first) {
  Stepper sizes = SizesFrom(axis, first);
  const uint32_t reciprocals[2] = {ReciprocalOf(sizes.quotient), ReciprocalOf(sizes.quotient + 1)};
  source += size_t{CellStart(axis, first)} * Channels;
  target += size_t{first} * Channels;
  for (uint32_t place = first; place < axis.newSize; ++place, target += Channels) {
    const uint32_t size = sizes.Advance();
    std::array<uint32_t, Channels> sums{};
    for (uint32_t i = 0; i < size; ++i) {
      for (uint32_t channel = 0; channel < Channels; ++channel)
        sums[channel] += *source++;
    }
    const uint32_t reciprocal = reciprocals[size - sizes.quotient];
    for (uint32_t channel = 0; channel < Channels; ++channel) {
      target[channel] = static_cast<uint8_t>(reciprocal ? sums[channel] * reciprocal >> 24
                                                        : sums[channel] / size);
    }
  }
}

template void AverageCells<1>(const ResampleAxis&, const uint8_t*, uint8_t*, uint32_t);
template void AverageCells<3>(const ResampleAxis&, const uint8_t*, uint8_t*, uint32_t);

namespace {

constexpr uint8_t kNothing = 0x80;  // in a shuffle's mask
constexpr uint32_t kMostSmall = 4;  // pixels of a cell, for the loop that makes four in a lane

// What counts of a chunk that holds `pixels` pixels of a cell. One channel: a mask of bits. Three:
// a shuffle that brings up to four bytes of a channel together.
void WriteChunkMask(uint32_t channels, uint32_t pixels, uint8_t* mask) {
  for (uint32_t byte = 0; byte < 16; ++byte) {
    if (channels == 1) {
      mask[byte] = byte < pixels ? 0xFF : 0;
    } else {
      const uint32_t channel = byte / 4, pixel = byte % 4;
      const bool counts = channel < 3 && pixel < pixels;
      mask[byte] = counts ? static_cast<uint8_t>(3 * pixel + channel) : kNothing;
    }
  }
}

CellLoop VectorLoop([[maybe_unused]] const ResampleAxis& axis, [[maybe_unused]] uint32_t channels) {
  if (channels == 3) return VNCORE_VECTOR_FORM(nullptr, AverageCells3Avx2);
  if (axis.LargestSize() > kMostSmall) return VNCORE_VECTOR_FORM(nullptr, AverageCells1Avx2);
  return VNCORE_VECTOR_FORM(nullptr, AverageSmallCells1Avx2);
}

}  // namespace

RowCells::RowCells(const ResampleAxis& axis, uint32_t channels) : axis_(axis), channels_(channels) {
  const CellLoop vector = VectorLoop(axis, channels);
  if (vector && MakePlan()) vector_ = vector;
}

// How many groups can be made without a read behind the source or a write behind the target.
uint32_t RowCells::GroupsInReach(uint32_t readBytes) const {
  const uint64_t sourceBytes = uint64_t{axis_.oldSize} * channels_;
  const uint32_t behind = channels_ == 3 ? 4 : 0;  // bytes that the last group writes too much
  const uint64_t targetBytes = uint64_t{axis_.newSize} * channels_;
  if (sourceBytes > INT32_MAX || targetBytes < behind) return 0;
  auto groups = static_cast<uint32_t>((targetBytes - behind) / (kCellGroup * channels_));
  while (groups > 0 && uint64_t{CellStart(axis_, groups * kCellGroup - 1)} * channels_ + readBytes >
                           sourceBytes) {
    --groups;
  }
  return channels_ == 1 && axis_.LargestSize() <= kMostSmall ? groups & ~3u : groups;
}

bool RowCells::MakePlan() {
  const uint32_t chunkPixels = channels_ == 1 ? 16 : 4;
  const uint32_t small = axis_.Sizes().quotient;
  if (small >= kMostCell - 1) return false;
  plan_.fullChunks = small / chunkPixels;
  plan_.groups = GroupsInReach(plan_.fullChunks * chunkPixels * channels_ + 16);
  if (plan_.groups == 0) return false;
  starts_ = ScratchBuffer<uint32_t>(size_t{plan_.groups} * kCellGroup);
  larger_ = ScratchBuffer<uint8_t>(plan_.groups, Fill::kZero);
  if (!starts_ || !larger_) return false;
  plan_.starts = starts_.data();
  plan_.larger = larger_.data();

  Stepper sizes = axis_.Sizes();
  uint32_t start = 0;
  for (uint32_t place = 0; place < plan_.groups * kCellGroup; ++place) {
    const uint32_t size = sizes.Advance();
    starts_[place] = start;
    start += size * channels_;
    larger_[place / kCellGroup] |= static_cast<uint8_t>((size - small) << place % kCellGroup);
  }

  const uint32_t inPart = small - plan_.fullChunks * chunkPixels;
  for (uint32_t lanes = 0; lanes < 4; ++lanes) {
    for (uint32_t lane = 0; lane < 2; ++lane) {
      const uint32_t more = lanes >> lane & 1;
      WriteChunkMask(channels_, inPart + more, plan_.masks[lanes] + 16 * lane);
      std::fill_n(plan_.laneReciprocals[lanes] + 4 * lane, 4, WideReciprocal(small + more));
    }
  }
  for (uint32_t pixels = 0; pixels < 16; ++pixels) {
    uint32_t at = 0;
    for (uint32_t i = 0; i < 4; ++i) {
      const uint32_t size = small + (pixels >> i & 1);
      plan_.pixelReciprocals[pixels][i] = WideReciprocal(size);
      for (uint32_t k = 0; k < kMostSmall; ++k) {
        plan_.quadShuffles[pixels][4 * i + k] = k < size ? static_cast<uint8_t>(at + k) : kNothing;
      }
      at += size;
    }
  }
  return true;
}

void RowCells::Average(const uint8_t* source, uint8_t* target) const {
  uint32_t done = 0;
  if (vector_) {
    vector_(plan_, source, target);
    done = plan_.groups * kCellGroup;
  }
  if (channels_ == 1) {
    AverageCells<1>(axis_, source, target, done);
  } else {
    AverageCells<3>(axis_, source, target, done);
  }
}

}  // namespace vn
