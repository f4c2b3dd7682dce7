// Spans of a row interpolated: the plain loop, and the plan of the vector loop.
#include "geometry/row_spans.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "geometry/cell_division.h"
#include "kernel/vector.h"

namespace vn {
namespace {

// A channel on its way from one pixel to the next: the same floors as by a division for each step.
struct Line {
  int32_t value, quotient, remainder, error = 0;

  Line(int32_t from, int32_t to, int32_t steps)
      : value(from), quotient((to - from) / steps), remainder((to - from) % steps) {
    if (remainder < 0) {
      remainder += steps;
      --quotient;
    }
  }
  void Step(int32_t steps) {
    value += quotient;
    error += remainder;
    if (error < steps) return;
    error -= steps;
    ++value;
  }
};

}  // namespace

template <uint32_t Channels>
void InterpolateSpans(const ResampleAxis& axis, const uint8_t* source, uint8_t* target) {
  const uint8_t* const end = target + size_t{axis.newSize} * Channels;
  Stepper spans = axis.Sizes();
  for (uint32_t i = axis.Lead(); i > 0; --i, target += Channels)
    std::memcpy(target, source, Channels);
  for (uint32_t pixel = 0; target < end; ++pixel, source += Channels) {
    const uint8_t* const next = source + (pixel + 1 < axis.oldSize ? Channels : 0);
    const uint32_t span = spans.Advance();
    const auto places = static_cast<uint32_t>(static_cast<size_t>(end - target) / Channels);
    const uint32_t count = std::min(span, places);
    for (uint32_t channel = 0; channel < Channels; ++channel) {
      const auto steps = static_cast<int32_t>(span);
      Line line(source[channel], next[channel], steps);
      uint8_t* at = target + channel;
      for (uint32_t i = 0; i < count; ++i, at += Channels) {
        *at = static_cast<uint8_t>(line.value);
        line.Step(steps);
      }
    }
    target += size_t{count} * Channels;
  }
}

template void InterpolateSpans<1>(const ResampleAxis&, const uint8_t*, uint8_t*);
template void InterpolateSpans<3>(const ResampleAxis&, const uint8_t*, uint8_t*);

namespace {

// Where a new pixel lies: `step` of `span` on the way from old pixel `from`.
struct Place {
  uint32_t from, step, span;

  Place(const ResampleAxis& axis, uint32_t pixel) {
    const auto startOf = [&axis](uint64_t old) {
      return static_cast<uint32_t>(old * axis.newSize / axis.oldSize);
    };
    const uint32_t lead = axis.Lead();
    const uint32_t at = pixel < lead ? 0 : pixel - lead;
    from = static_cast<uint32_t>((uint64_t{at} * axis.oldSize + axis.oldSize - 1) / axis.newSize);
    step = at - startOf(from);
    span = startOf(uint64_t{from} + 1) - startOf(from);
  }
};

}  // namespace

RowSpans::RowSpans(const ResampleAxis& axis, uint32_t channels) : axis_(axis), channels_(channels) {
  const SpanLoop vector = VNCORE_VECTOR_FORM(nullptr, InterpolateSpansAvx2);
  if (vector && MakePlan()) vector_ = vector;
}

void RowSpans::PlanQuarter(uint32_t target, SpanPiece* piece, uint32_t quarter) const {
  const uint32_t sourceBytes = axis_.oldSize * channels_;
  uint32_t pixel = target / channels_, channel = target % channels_;
  Place place(axis_, pixel);
  // Eight new bytes come from at most nine old ones, or from five pixels of three. All that is read
  // lies in the row.
  const uint32_t start = std::min(place.from * channels_, sourceBytes - 16);
  piece->starts[quarter] = start;
  for (uint32_t i = 0; i < 8; ++i) {
    const uint32_t next = std::min(place.from + 1, axis_.oldSize - 1);
    const uint32_t unit = weight_ / place.span;
    uint8_t* const shuffle = piece->shuffles[quarter] + 2 * i;
    int8_t* const weights = piece->weights[quarter] + 2 * i;
    shuffle[0] = static_cast<uint8_t>(place.from * channels_ + channel - start);
    shuffle[1] = static_cast<uint8_t>(next * channels_ + channel - start);
    weights[0] = static_cast<int8_t>((place.span - place.step) * unit);
    weights[1] = static_cast<int8_t>(place.step * unit);
    if (++channel == channels_) {
      channel = 0;
      place = Place(axis_, ++pixel);
    }
  }
}

bool RowSpans::MakePlan() {
  // One divisor for spans of both lengths.
  const Stepper spans = axis_.Sizes();
  constexpr uint64_t kMostWeight = 127;
  const uint64_t weight = uint64_t{spans.quotient} * (spans.remainder ? spans.quotient + 1 : 1);
  const uint64_t sourceBytes = uint64_t{axis_.oldSize} * channels_;
  const uint64_t targetBytes = uint64_t{axis_.newSize} * channels_;
  if (weight < 2 || weight > kMostWeight || sourceBytes < 16 || targetBytes < kSpanPiece ||
      targetBytes > INT32_MAX) {
    return false;
  }
  weight_ = static_cast<uint32_t>(weight);
  const NarrowReciprocal reciprocal(weight_);
  plan_.pieces = static_cast<uint32_t>((targetBytes + kSpanPiece - 1) / kSpanPiece);
  plan_.lastStart = static_cast<uint32_t>(targetBytes) - kSpanPiece;
  plan_.multiplier = reciprocal.multiplier;
  plan_.shift = reciprocal.shift;
  pieces_ = ScratchBuffer<SpanPiece>(plan_.pieces);
  if (!pieces_) return false;
  for (uint32_t i = 0; i < plan_.pieces; ++i) {
    const uint32_t at = std::min(i * kSpanPiece, plan_.lastStart);
    constexpr uint32_t kOrder[] = {0, 2, 1, 3};
    for (uint32_t quarter = 0; quarter < 4; ++quarter)
      PlanQuarter(at + 8 * kOrder[quarter], &pieces_[i], quarter);
  }
  return true;
}

void RowSpans::Interpolate(const uint8_t* source, uint8_t* target) const {
  if (vector_) {
    vector_(plan_, pieces_.data(), source, target);
  } else if (channels_ == 1) {
    InterpolateSpans<1>(axis_, source, target);
  } else {
    InterpolateSpans<3>(axis_, source, target);
  }
}

}  // namespace vn
