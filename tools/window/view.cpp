#include "tools/window/view.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vn::tool {
namespace {

constexpr Zoom kZooms[] = {{1, 64}, {1, 48}, {1, 32}, {1, 24}, {1, 16}, {1, 12}, {1, 8}, {1, 6},
                           {1, 4},  {1, 3},  {1, 2},  {2, 3},  {1, 1},  {3, 2},  {2, 1}, {3, 1},
                           {4, 1},  {6, 1},  {8, 1},  {12, 1}, {16, 1}, {24, 1}, {32, 1}};

int32_t Clamped(double value) {
  constexpr double kMost = 1 << 30;
  return static_cast<int32_t>(std::lround(std::clamp(value, -kMost, kMost)));
}

// The edge of the picture nearest to `at` that leaves no gap on one side only; a picture that is
// smaller than the window lies in its middle.
int32_t Settled(int32_t at, int32_t extent, int32_t window) {
  if (extent <= window) return (window - extent) / 2;
  return std::clamp(at, window - extent, 0);
}

// One axis of the part that shows: from a first pixel, in multiples of the zoom's denominator, to
// an end.
struct Span {
  int32_t first, end, destination, destinationEnd;
};
Span Visible(const Zoom& zoom, int32_t side, int32_t extent, int32_t at, int32_t window) {
  const int64_t n = zoom.numerator, d = zoom.denominator;
  const int64_t first = std::max<int64_t>(0, -int64_t{at}) * d / n / d * d;
  const int64_t shown = std::max<int64_t>(0, int64_t{window} - at) * d;
  const int64_t end = (shown + n - 1) / n + d - 1;
  Span span{static_cast<int32_t>(first), side, static_cast<int32_t>(at + first * n / d),
            at + extent};
  if (end < side) {
    span.end = static_cast<int32_t>(end / d * d);
    span.destinationEnd = static_cast<int32_t>(at + span.end * n / d);
  }
  return span;
}

}  // namespace

void View::SetPicture(Size picture) {
  picture_ = picture;
  Settle();
}

void View::SetWindow(Size window) {
  left_ += (window.width - window_.width) / 2;
  top_ += (window.height - window_.height) / 2;
  window_ = window;
  Settle();
}

void View::Fit(bool enlarge) {
  fitting_ = enlarge ? Fitting::kAlways : Fitting::kShrink;
  Settle();
}

void View::StepZoom(int32_t direction, POINT anchor) {
  const auto larger = std::find_if(std::begin(kZooms), std::end(kZooms), [&](const Zoom& zoom) {
    return direction > 0 ? zoom.Factor() > zoom_.Factor() : zoom.Factor() >= zoom_.Factor();
  });
  if (direction > 0 && larger != std::end(kZooms)) ZoomTo(*larger, anchor);
  if (direction < 0 && larger != std::begin(kZooms)) ZoomTo(larger[-1], anchor);
}

void View::ShowPixels(POINT anchor) { ZoomTo({1, 1}, anchor); }

void View::ZoomTo(Zoom zoom, POINT anchor) {
  const double change = zoom.Factor() / zoom_.Factor();
  fitting_ = Fitting::kNo;
  zoom_ = zoom;
  left_ = Clamped(static_cast<double>(anchor.x) - (static_cast<double>(anchor.x) - left_) * change);
  top_ = Clamped(static_cast<double>(anchor.y) - (static_cast<double>(anchor.y) - top_) * change);
  Settle();
}

void View::Pan(int32_t dx, int32_t dy) {
  left_ += dx;
  top_ += dy;
  Settle();
}

void View::Settle() {
  if (fitting_ != Fitting::kNo) {
    // The tighter side decides: window.width / picture.width against the same of the heights.
    const bool byWidth =
        int64_t{window_.width} * picture_.height <= int64_t{window_.height} * picture_.width;
    zoom_ = byWidth ? Zoom{window_.width, picture_.width} : Zoom{window_.height, picture_.height};
    const bool enlarges = zoom_.numerator > zoom_.denominator;
    if (enlarges && fitting_ == Fitting::kShrink) zoom_ = {1, 1};
  }
  left_ = Settled(left_, Extent(picture_.width), window_.width);
  top_ = Settled(top_, Extent(picture_.height), window_.height);
}

int32_t View::Extent(int32_t side) const {
  const int64_t extent = int64_t{side} * zoom_.numerator / zoom_.denominator;
  return static_cast<int32_t>(std::max<int64_t>(extent, 1));
}

RECT View::Destination() const {
  return {left_, top_, left_ + Extent(picture_.width), top_ + Extent(picture_.height)};
}

POINT View::PixelAt(POINT position) const {
  const auto pixel = [this](int32_t at, int32_t edge, int32_t side) {
    const double pixels = std::floor((double{1} * at - edge) / zoom_.Factor());
    return static_cast<int32_t>(std::clamp(pixels, 0.0, double{1} * side - 1));
  };
  return {pixel(static_cast<int32_t>(position.x), left_, picture_.width),
          pixel(static_cast<int32_t>(position.y), top_, picture_.height)};
}

RegionTransform View::Transform() const {
  return {VIEW_TOP_FIRST,
          zoom_.numerator,
          zoom_.denominator,
          zoom_.numerator,
          zoom_.denominator,
          left_,
          top_};
}

bool View::PaintsWhole() const {
  const auto fits = [this](int32_t side, int32_t window) {
    return int64_t{side} * std::max(Extent(side), window) <= INT32_MAX;
  };
  return fits(picture_.width, window_.width) && fits(picture_.height, window_.height);
}

View::Placement View::Place() const {
  if (PaintsWhole()) return {{0, 0, picture_.width, picture_.height}, Destination()};
  const Span x = Visible(zoom_, picture_.width, Extent(picture_.width), left_, window_.width);
  const Span y = Visible(zoom_, picture_.height, Extent(picture_.height), top_, window_.height);
  return {{x.first, y.first, x.end - x.first, y.end - y.first},
          {x.destination, y.destination, x.destinationEnd, y.destinationEnd}};
}

}  // namespace vn::tool
