#include "region/region_transform.h"

#include <algorithm>

namespace vn {
namespace {

int32_t Add(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
int32_t Subtract(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}
int32_t Multiply(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}
int32_t Divide(int32_t a, int32_t b) {
  if (b == -1) return Subtract(0, a);  // the one quotient that does not fit, too
  return b ? a / b : 0;
}

int32_t ScaleUp(int32_t value, int32_t numerator, int32_t denominator) {
  const int32_t product = Multiply(value, numerator);
  return Divide(Subtract(Add(product, denominator), 1), denominator);
}

}  // namespace

int32_t ScaleTruncated(int32_t value, int32_t numerator, int32_t denominator) {
  return Divide(Multiply(value, numerator), denominator);
}

void FlipRect(RECT* rect, int32_t height) {
  const int32_t top = Subtract(height, rect->bottom);
  rect->bottom = Subtract(height, rect->top);
  rect->top = top;
}

void ReverseRect(RECT* rect, int32_t width) {
  const int32_t left = Subtract(width, rect->right);
  rect->right = Subtract(width, rect->left);
  rect->left = left;
}

bool RegionMapping::IsValid(const RegionTransform* transform) {
  if (!transform) return true;
  const bool knownOrder =
      transform->ViewOrigin == VIEW_TOP_FIRST || transform->ViewOrigin == VIEW_BOTTOM_FIRST;
  return knownOrder && transform->XScaleDenominator != 0 && transform->YScaleDenominator != 0;
}

RegionMapping::RegionMapping(const BitmapHandle* bitmap, const RegionTransform* transform)
    : height_(bitmap->Height), transform_(transform) {
  if (!transform) return;
  flip_ = static_cast<uint32_t>(transform->ViewOrigin) != bitmap->ViewOrigin;
  scaleX_ = transform->XScaleNumerator != transform->XScaleDenominator;
  scaleY_ = transform->YScaleNumerator != transform->YScaleDenominator;
}

bool RegionMapping::Changes() const {
  return transform_ &&
         (flip_ || scaleX_ || scaleY_ || transform_->XOffset != 0 || transform_->YOffset != 0);
}

void RegionMapping::MapIn(RECT* rect) const {
  if (!transform_) return;
  const RegionTransform& t = *transform_;
  rect->left = Add(rect->left, t.XOffset);
  rect->right = Add(rect->right, t.XOffset);
  rect->top = Add(rect->top, t.YOffset);
  rect->bottom = Add(rect->bottom, t.YOffset);
  if (scaleX_) {
    rect->left = ScaleTruncated(rect->left, t.XScaleNumerator, t.XScaleDenominator);
    rect->right = ScaleTruncated(rect->right, t.XScaleNumerator, t.XScaleDenominator);
  }
  if (scaleY_) {
    rect->top = ScaleTruncated(rect->top, t.YScaleNumerator, t.YScaleDenominator);
    rect->bottom = ScaleTruncated(rect->bottom, t.YScaleNumerator, t.YScaleDenominator);
  }
  if (flip_) FlipRect(rect, height_);
}

// Where the upper edge of a row comes to lie before a flip. Rows beyond the words stay at their end.
int64_t RegionMapping::RowIn(int64_t row) const {
  if (!transform_) return row;
  const RegionTransform& t = *transform_;
  row = std::clamp<int64_t>(row + t.YOffset, INT32_MIN, INT32_MAX);
  return scaleY_ ? row * t.YScaleNumerator / t.YScaleDenominator : row;
}

// Rows map in rising order, so the next one that is not squeezed to nothing is found by bisection.
// Where they map in falling order, none has an inside.
int32_t RegionMapping::NextRow(int32_t row, int32_t end, int32_t height) const {
  const int64_t behind = std::max<int64_t>(RowIn(row), 0);
  int64_t low = row, high = end;  // the row is `low` or above, and `end` if none
  if (low < high && RowIn(low + 1) > behind) high = low;
  while (low < high) {
    const int64_t middle = low + (high - low) / 2;
    if (RowIn(middle + 1) > behind) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return low < end && RowIn(low) < height ? static_cast<int32_t>(low) : end;
}

void RegionMapping::MapOut(RECT* rect) const {
  if (!transform_) return;
  const RegionTransform& t = *transform_;
  if (flip_) FlipRect(rect, height_);
  if (scaleX_) {
    rect->left = ScaleUp(rect->left, t.XScaleNumerator, t.XScaleDenominator);
    rect->right = ScaleUp(rect->right, t.XScaleNumerator, t.XScaleDenominator);
  }
  if (scaleY_) {
    // Not symmetric to the columns, and to stay so.
    const auto scale = t.ViewOrigin == VIEW_BOTTOM_FIRST ? ScaleUp : ScaleTruncated;
    rect->top = scale(rect->top, t.YScaleNumerator, t.YScaleDenominator);
    rect->bottom = scale(rect->bottom, t.YScaleNumerator, t.YScaleDenominator);
  }
  rect->left = Add(rect->left, t.XOffset);
  rect->right = Add(rect->right, t.XOffset);
  rect->top = Add(rect->top, t.YOffset);
  rect->bottom = Add(rect->bottom, t.YOffset);
}

}  // namespace vn
