// Clipping and stretching of one axis.
#include "platform/headless/surfaces/axis.h"

#include <algorithm>
#include <cstdlib>

namespace headless {
namespace {

// Larger stretches are no pictures; below it products of two sizes fit.
constexpr int64_t kLargestSize = int64_t{1} << 30;

// Pixels from `from` up to `to`, that one excluded, of a stretch that may run downwards.
struct Stretch {
  Stretch(int32_t start, int32_t size)
      : from(size < 0 ? int64_t{start} + size + 1 : start), to(from + std::abs(int64_t{size})) {}
  int64_t from, to;
};

// Source pixels of target pixel i, both counted from the starts of their stretches.
class Mapping1D {
 public:
  Mapping1D(int64_t targetPixels, int64_t sourcePixels)
      : target_(targetPixels), source_(sourcePixels) {}
  int64_t First(int64_t i) const { return source_ > target_ ? FirstMeeting(i) : Under(i); }
  int64_t Last(int64_t i) const { return source_ > target_ ? FirstMeeting(i + 1) - 1 : Under(i); }

 private:
  int64_t Under(int64_t i) const { return ((2 * i + 1) * source_ - 1) / (2 * target_); }
  int64_t FirstMeeting(int64_t i) const { return (2 * source_ * i + target_) / (2 * target_); }
  int64_t target_, source_;
};

}  // namespace

Axis MakeAxis(int32_t target, int32_t targetSize, int32_t targetLimit) {
  const Stretch stretch(target, targetSize);
  const int64_t first = std::max<int64_t>(stretch.from, 0);
  const int64_t last = std::min<int64_t>(stretch.to, targetLimit);
  Axis axis;
  if (first >= last) return axis;
  axis.first = static_cast<int32_t>(first);
  axis.count = static_cast<int32_t>(last - first);
  return axis;
}

Axis MakeAxis(int32_t target, int32_t targetSize, int32_t targetLimit, int32_t source,
              int32_t sourceSize, int32_t sourceLimit) {
  const int64_t targetPixels = std::abs(int64_t{targetSize});
  const int64_t sourcePixels = std::abs(int64_t{sourceSize});
  const Axis visible = MakeAxis(target, targetSize, targetLimit);
  if (visible.count == 0 || sourcePixels == 0 || targetPixels > kLargestSize ||
      sourcePixels > kLargestSize) {
    return Axis{};
  }
  if (targetSize == sourceSize && targetSize > 0) {
    // One to one no division is needed, and pictures come in many small parts.
    const int64_t shift = int64_t{source} - target;
    const int64_t first = std::max(int64_t{visible.first}, -shift);
    const int64_t last =
        std::min(int64_t{visible.first} + visible.count, int64_t{sourceLimit} - shift);
    if (first >= last) return Axis{};
    Axis axis = visible;
    axis.first = static_cast<int32_t>(first);
    axis.count = static_cast<int32_t>(last - first);
    axis.source = static_cast<int32_t>(first + shift);
    return axis;
  }
  const Mapping1D mapping(targetPixels, sourcePixels);
  const auto spanOf = [&](int64_t at) {
    const int64_t i = targetSize < 0 ? target - at : at - target;
    const int64_t first = mapping.First(i), last = mapping.Last(i);
    const int64_t low = sourceSize < 0 ? source - last : source + first;
    const int64_t high = sourceSize < 0 ? source - first : source + last;
    return Span{static_cast<int32_t>(std::clamp<int64_t>(low, 0, INT32_MAX)),
                static_cast<int32_t>(std::clamp<int64_t>(high, -1, sourceLimit - 1))};
  };
  const auto exists = [&](int64_t at) {
    const Span span = spanOf(at);
    return span.first <= span.last;
  };
  // Sources rise or fall along the target, so those that exist are one stretch of it.
  int64_t first = visible.first, last = first + visible.count;
  while (first < last && !exists(first))
    ++first;
  while (last > first && !exists(last - 1))
    --last;

  Axis axis;
  if (first == last) return axis;
  axis.first = static_cast<int32_t>(first);
  axis.count = static_cast<int32_t>(last - first);
  axis.source = spanOf(first).first;
  if (targetSize != sourceSize) {
    axis.table.reserve(static_cast<size_t>(axis.count));
    for (int64_t at = first; at < last; ++at)
      axis.table.push_back(spanOf(at));
  }
  return axis;
}

}  // namespace headless
