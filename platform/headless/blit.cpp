// The one drawing loop.
#include "platform/headless/blit.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "platform/headless/pixel_rows.h"

namespace headless {

Axis MakeAxis(int32_t target, int32_t targetSize, int32_t targetLimit) {
  const int64_t from = std::min<int64_t>(target, int64_t{target} + targetSize);
  const int64_t to = std::max<int64_t>(target, int64_t{target} + targetSize);
  const int64_t first = std::max<int64_t>(from, 0);
  const int64_t last = std::min<int64_t>(to, targetLimit);
  Axis axis;
  if (first >= last) return axis;
  axis.first = static_cast<int32_t>(first);
  axis.count = static_cast<int32_t>(last - first);
  return axis;
}

Axis MakeAxis(int32_t target, int32_t targetSize, int32_t targetLimit, int32_t source,
              int32_t sourceSize, int32_t sourceLimit) {
  Axis axis = MakeAxis(target, targetSize, targetLimit);
  if (axis.count == 0 || sourceSize == 0) return Axis{};
  const int64_t targetFrom = std::min<int64_t>(target, int64_t{target} + targetSize);
  const int64_t sourceFrom = std::min<int64_t>(source, int64_t{source} + sourceSize);
  const int64_t targetPixels = std::abs(int64_t{targetSize});
  const int64_t sourcePixels = std::abs(int64_t{sourceSize});
  const bool mirrored = (targetSize < 0) != (sourceSize < 0);
  const auto sourceOf = [&](int64_t at) {
    const int64_t step = (at - targetFrom) * sourcePixels / targetPixels;
    return sourceFrom + (mirrored ? sourcePixels - 1 - step : step);
  };
  // Sources rise or fall along the target, so those that exist are one stretch of it.
  const auto exists = [&](int64_t at) { return at >= 0 && at < sourceLimit; };
  int64_t first = axis.first, last = int64_t{axis.first} + axis.count;
  while (first < last && !exists(sourceOf(first)))
    ++first;
  while (last > first && !exists(sourceOf(last - 1)))
    --last;
  if (first >= last) return Axis{};
  axis.first = static_cast<int32_t>(first);
  axis.count = static_cast<int32_t>(last - first);
  axis.source = static_cast<int32_t>(sourceOf(first));
  if (targetPixels != sourcePixels || mirrored) {
    axis.table.reserve(static_cast<size_t>(axis.count));
    for (int64_t at = first; at < last; ++at) {
      axis.table.push_back(static_cast<int32_t>(sourceOf(at)));
    }
  }
  return axis;
}

namespace {

// Pattern pixels of a brush in values of the target.
class PatternRows {
 public:
  PatternRows(const BlitJob& job) : brush_(*job.brush) {
    if (brush_.kind == Brush::Kind::kPattern) {
      map_.emplace(brush_.pattern.layout, PatternColors(job), *job.target, job.monochrome);
    } else {
      solid_ = PixelOf(RgbOf(brush_.color), *job.target, job.monochrome);
    }
  }

  // The pattern repeats from the surface's origin on.
  void Get(int32_t x, int32_t y, int32_t count, uint32_t* pixels) const {
    if (!map_) {
      std::fill_n(pixels, count, solid_);
      return;
    }
    const Surface& pattern = brush_.pattern;
    const uint8_t* row = pattern.Row(y % pattern.height);
    for (int32_t done = 0; done < count;) {
      const int32_t from = (x + done) % pattern.width;
      const int32_t run = std::min(pattern.width - from, count - done);
      LoadPixels(row, pattern.layout.bits, from, run, pixels + done);
      done += run;
    }
    map_->Apply(count, pixels);
  }

 private:
  const ColorTable* PatternColors(const BlitJob& job) {
    if (!brush_.pattern.monochrome()) return brush_.pattern.colors.get();
    mono_.count = 2;
    mono_.entries[0] = QuadOf(job.monochrome.text);
    mono_.entries[1] = QuadOf(job.monochrome.background);
    return &mono_;
  }

  const Brush& brush_;
  uint32_t solid_ = 0;
  ColorTable mono_;
  std::optional<ColorMap> map_;
};

// One call's work on rectangles of the target.
class Painter {
 public:
  explicit Painter(const BlitJob& job) : job_(job), bits_(job.target->layout.bits) {
    const auto width = static_cast<size_t>(job.columns.count);
    source_.resize(width);
    if (job.operation.NeedsPattern()) pattern_.emplace(job);
    if (!CopiesOnly()) {
      patternPixels_.resize(width);
      targetPixels_.resize(width);
    }
    if (!job.columns.table.empty()) {
      const auto [low, high] =
          std::minmax_element(job.columns.table.begin(), job.columns.table.end());
      spanFirst_ = *low;
      span_.resize(static_cast<size_t>(*high - *low + 1));
    }
    copiesBytes_ = CopiesOnly() && span_.empty() && job.map->identity() && bits_ >= 8;
    copiesTable_ = CopiesOnly() && span_.empty() && bits_ == 8 && job.source->layout.bits == 8;
    if (copiesTable_) {
      std::transform(job.map->table().begin(), job.map->table().end(), bytes_,
                     [](uint32_t value) { return static_cast<uint8_t>(value); });
    }
  }

  void PaintRow(int32_t x, int32_t y, int32_t count) {
    uint8_t* row = job_.target->Row(y);
    const uint8_t* from = job_.source ? job_.source->Row(job_.rows.SourceOf(y)) : nullptr;
    if (copiesBytes_) {
      const size_t bytes = bits_ / 8;
      std::memcpy(row + static_cast<size_t>(x) * bytes,
                  from + static_cast<size_t>(job_.columns.SourceOf(x)) * bytes,
                  static_cast<size_t>(count) * bytes);
      return;
    }
    if (copiesTable_) {
      const uint8_t* at = from + job_.columns.SourceOf(x);
      for (int32_t i = 0; i < count; ++i)
        row[x + i] = bytes_[at[i]];
      return;
    }
    if (from) GetSource(from, x, count);
    if (CopiesOnly()) {
      StorePixels(row, bits_, x, count, source_.data());
      return;
    }
    if (pattern_) pattern_->Get(x, y, count, patternPixels_.data());
    if (job_.operation.NeedsTarget()) LoadPixels(row, bits_, x, count, targetPixels_.data());
    job_.operation.Combine(count, patternPixels_.data(), source_.data(), targetPixels_.data());
    StorePixels(row, bits_, x, count, targetPixels_.data());
  }

 private:
  bool CopiesOnly() const { return job_.operation.CopiesSource(); }

  // Values of the target for the source pixels that columns x to x + count - 1 take.
  void GetSource(const uint8_t* from, int32_t x, int32_t count) {
    const uint32_t bits = job_.source->layout.bits;
    if (span_.empty()) {
      LoadPixels(from, bits, job_.columns.SourceOf(x), count, source_.data());
      job_.map->Apply(count, source_.data());
      return;
    }
    const auto spanCount = static_cast<int32_t>(span_.size());
    LoadPixels(from, bits, spanFirst_, spanCount, span_.data());
    job_.map->Apply(spanCount, span_.data());
    for (int32_t i = 0; i < count; ++i) {
      source_[static_cast<size_t>(i)] =
          span_[static_cast<size_t>(job_.columns.SourceOf(x + i) - spanFirst_)];
    }
  }

  const BlitJob& job_;
  const uint32_t bits_;
  bool copiesBytes_ = false, copiesTable_ = false;
  uint8_t bytes_[256];
  int32_t spanFirst_ = 0;
  std::vector<uint32_t> source_, span_, patternPixels_, targetPixels_;
  std::optional<PatternRows> pattern_;
};

}  // namespace

void Blit(const BlitJob& job) {
  if (job.columns.count <= 0 || job.rows.count <= 0) return;
  if (job.operation.NeedsPattern() && job.brush->kind == Brush::Kind::kNull) return;
  Painter painter(job);
  const RECT area = {job.columns.first, job.rows.first, job.columns.first + job.columns.count,
                     job.rows.first + job.rows.count};
  const auto paint = [&](const RECT& part) {
    const int32_t left = std::max(area.left, part.left), right = std::min(area.right, part.right);
    const int32_t bottom = std::min(area.bottom, part.bottom);
    if (left >= right) return;
    for (int32_t y = std::max(area.top, part.top); y < bottom; ++y) {
      painter.PaintRow(left, y, right - left);
    }
  };
  if (!job.clip) return paint(area);
  for (const RECT& part : *job.clip)
    paint(part);
}

}  // namespace headless
