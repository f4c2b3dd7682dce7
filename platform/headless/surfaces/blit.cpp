// The one drawing loop.
#include "platform/headless/surfaces/blit.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "platform/headless/surfaces/fill_rows.h"
#include "platform/headless/surfaces/pixel_rows.h"

namespace headless {

namespace {

// A DIB of two colours shows a brush that is neither of them by the background's contrast: the
// background colour's own value for the background colour, the other value for any other.
uint32_t SolidPixel(uint32_t rgb, const Surface& target, const MonochromeColors& monochrome) {
  if (target.layout.bits != 1 || target.monochrome()) return PixelOf(rgb, target, monochrome);
  for (uint32_t i = 0; i < 2; ++i) {
    if (RgbOf(target.colors->entries[i]) == rgb) return i;
  }
  const uint32_t background = PixelOf(monochrome.background, target, monochrome);
  return rgb == monochrome.background ? background : background ^ 1;
}

// Pattern pixels of a brush in values of the target.
class PatternRows {
 public:
  PatternRows(const BlitJob& job) : brush_(*job.brush) {
    if (brush_.kind == Brush::Kind::kPattern) {
      map_.emplace(brush_.pattern.layout, PatternColors(job), *job.target, job.monochrome);
    } else {
      solid_ = SolidPixel(RgbOf(brush_.color), *job.target, job.monochrome);
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

// Without a source and with a brush of one colour, or none at all, all pixels meet the same value.
bool FillsOnly(const BlitJob& job) {
  return !job.operation.NeedsSource() &&
         (!job.operation.NeedsPattern() || job.brush->kind == Brush::Kind::kSolid);
}

Ink InkOf(const BlitJob& job) {
  const bool brush = job.operation.NeedsPattern();
  const uint32_t value =
      brush ? SolidPixel(RgbOf(job.brush->color), *job.target, job.monochrome) : 0;
  const uint32_t values[] = {value, value}, none[] = {0, 0};
  uint32_t ends[] = {0, ~0u};
  job.operation.Combine(2, values, none, ends);
  return {ends[0] ^ ends[1], ends[0]};
}

// One call's work, row by row.
class Painter {
 public:
  explicit Painter(const BlitJob& job)
      : job_(job), bits_(job.target->layout.bits), copies_(job.operation.CopiesSource()) {
    if (FillsOnly(job)) {
      fill_ = FillRowFor(bits_);
      ink_ = InkOf(job);
      return;
    }
    const auto width = static_cast<size_t>(job.columns.count);
    if (job.source && !job.rows.straight()) met_.resize(width);
    if (job.operation.NeedsPattern()) pattern_.emplace(job);
    if (!copies_) {
      patternPixels_.resize(width);
      targetPixels_.resize(width);
    }
    if (!job.columns.straight()) {
      const auto [low, high] =
          std::minmax_element(job.columns.table.begin(), job.columns.table.end(),
                              [](const Span& a, const Span& b) { return a.first < b.first; });
      unstretchedFirst_ = low->first;
      unstretched_.resize(static_cast<size_t>(high->last - unstretchedFirst_ + 1));
    } else if (copies_) {
      copiesBytes_ = job.map->identity();
      // The table of all bytes must be worth its while.
      copiesTable_ = !copiesBytes_ && bits_ <= 8 && job.source->layout.bits == bits_ &&
                     (bits_ == 8 || int64_t{job.columns.count} * job.rows.count >= 256);
    }
    if (copiesTable_) byteTable_ = bits_ == 8 ? job.map->table().data() : FillByteTable();
    // Where nothing is copied, words are needed.
    if (!copiesBytes_ && !copiesTable_) source_.resize(width);
  }

  // The part of the target within a rectangle that is not empty.
  void Paint(const RECT& r) {
    const int32_t width = r.right - r.left;
    if (fill_) {
      for (int32_t y = r.top; y < r.bottom; ++y)
        fill_(job_.target->Row(y), r.left, width, ink_);
      return;
    }
    if ((copiesBytes_ || copiesTable_) && bits_ >= 8 && job_.rows.straight()) {
      return CopyRows(r, width);
    }
    for (int32_t i = 0; i < r.bottom - r.top; ++i)
      PaintRow(r.left, FirstRow(r) + (Upwards() ? -i : i), width);
  }

 private:
  // Rows of the source are taken as they lie in memory: that is how caches expect them.
  bool Upwards() const { return job_.source && job_.source->pitch < 0; }
  int32_t FirstRow(const RECT& r) const { return Upwards() ? r.bottom - 1 : r.top; }

  void PaintRow(int32_t x, int32_t y, int32_t count) {
    uint8_t* row = job_.target->Row(y);
    if (job_.source) {
      const Span rows = job_.rows.SourcesOf(y);
      if (rows.first == rows.last && CopyRow(job_.source->Row(rows.first), row, x, count)) return;
      source_.resize(std::max(source_.size(), static_cast<size_t>(count)));
      GetSource(job_.source->Row(rows.first), x, count, source_.data());
      for (int32_t r = rows.first + 1; r <= rows.last; ++r) {
        GetSource(job_.source->Row(r), x, count, met_.data());
        for (size_t i = 0; i < static_cast<size_t>(count); ++i)
          source_[i] &= met_[i];
      }
    }
    if (copies_) return StorePixels(row, bits_, x, count, source_.data());

    if (pattern_) pattern_->Get(x, y, count, patternPixels_.data());
    if (job_.operation.NeedsTarget()) LoadPixels(row, bits_, x, count, targetPixels_.data());
    job_.operation.Combine(count, patternPixels_.data(), source_.data(), targetPixels_.data());
    StorePixels(row, bits_, x, count, targetPixels_.data());
  }

  // Rows of whole bytes.
  void CopyRows(const RECT& r, int32_t width) const {
    const auto bytes = static_cast<size_t>(width) * (bits_ / 8);
    const auto columns = static_cast<size_t>(job_.columns.SourcesOf(r.left).first);
    const int32_t first = FirstRow(r);
    const ptrdiff_t direction = Upwards() ? -1 : 1;
    const uint8_t* from =
        job_.source->Row(job_.rows.SourcesOf(first).first) + columns * (bits_ / 8);
    uint8_t* to = job_.target->Row(first) + static_cast<size_t>(r.left) * (bits_ / 8);
    for (int32_t left = r.bottom - r.top; left > 0; --left) {
      CopyWhole(from, to, bytes);
      from += job_.source->pitch * direction;
      to += job_.target->pitch * direction;
    }
  }

  // What the pixels of a byte become, below 8 bits.
  const uint32_t* FillByteTable() {
    const uint32_t mask = (1u << bits_) - 1;
    for (uint32_t byte = 0; byte < 256; ++byte) {
      uint32_t mapped = 0;
      for (uint32_t shift = 0; shift < 8; shift += bits_) {
        mapped |= (job_.map->table()[byte >> shift & mask] & mask) << shift;
      }
      bytes_[byte] = mapped;
    }
    return bytes_;
  }

  // The two ways that need no words in between: bytes as they are, or through a table. False when
  // neither does.
  bool CopyRow(const uint8_t* from, uint8_t* row, int32_t x, int32_t count) const {
    const uint64_t first = static_cast<uint64_t>(x) * bits_;
    const uint64_t end = first + static_cast<uint64_t>(count) * bits_;
    const uint64_t source = static_cast<uint64_t>(job_.columns.SourcesOf(x).first) * bits_;
    // Pixels must keep their places in the bytes.
    if ((!copiesTable_ && !copiesBytes_) || first % 8 != source % 8) return false;
    from += source / 8;
    row += first / 8;
    const uint32_t head = 0xFFu >> first % 8;   // the run's bits in its first byte
    const uint32_t tail = ~(0xFFu >> end % 8);  // and in the one behind the last whole
    if (first / 8 == end / 8) {
      CopyBits(*from, row, head & tail);
      return true;
    }
    if (first % 8) CopyBits(*from++, row++, head);
    const auto whole = static_cast<size_t>(end / 8 - (first + 7) / 8);
    CopyWhole(from, row, whole);
    if (end % 8) CopyBits(from[whole], row + whole, tail);
    return true;
  }

  void CopyBits(uint8_t from, uint8_t* to, uint32_t mask) const {
    const uint32_t mapped = copiesBytes_ ? from : byteTable_[from];
    *to = static_cast<uint8_t>((*to & ~mask) | (mapped & mask));
  }

  void CopyWhole(const uint8_t* from, uint8_t* to, size_t count) const {
    // The caller's rows may lie in the target's own memory.
    if (copiesBytes_) {
      if (count == 1) {
        *to = *from;
      } else {
        std::memmove(to, from, count);
      }
      return;
    }
    const uint32_t* const table = byteTable_;
    size_t i = 0;
    for (; i + 8 <= count; i += 8) {
      uint64_t eight, mapped = 0;
      std::memcpy(&eight, from + i, sizeof eight);
      for (uint32_t shift = 0; shift < 64; shift += 8)
        mapped |= uint64_t{table[eight >> shift & 0xFF]} << shift;
      std::memcpy(to + i, &mapped, sizeof mapped);
    }
    for (; i < count; ++i)
      to[i] = static_cast<uint8_t>(table[from[i]]);
  }

  // Values of the target for what columns x to x + count - 1 take from a source row.
  void GetSource(const uint8_t* from, int32_t x, int32_t count, uint32_t* pixels) {
    const uint32_t bits = job_.source->layout.bits;
    if (job_.columns.straight()) {
      LoadPixels(from, bits, job_.columns.SourcesOf(x).first, count, pixels);
      job_.map->Apply(count, pixels);
      return;
    }
    const auto size = static_cast<int32_t>(unstretched_.size());
    LoadPixels(from, bits, unstretchedFirst_, size, unstretched_.data());
    job_.map->Apply(size, unstretched_.data());
    for (int32_t i = 0; i < count; ++i) {
      const Span span = job_.columns.SourcesOf(x + i);
      uint32_t pixel = ~0u;
      for (int32_t at = span.first; at <= span.last; ++at) {
        pixel &= unstretched_[static_cast<size_t>(at - unstretchedFirst_)];
      }
      pixels[i] = pixel;
    }
  }

  const BlitJob& job_;
  const uint32_t bits_;
  const bool copies_;
  FillRow fill_ = nullptr;  // when all is filled alike
  Ink ink_{};
  bool copiesBytes_ = false, copiesTable_ = false;
  const uint32_t* byteTable_ = nullptr;
  uint32_t bytes_[256];
  int32_t unstretchedFirst_ = 0;
  std::vector<uint32_t> source_, met_, unstretched_, patternPixels_, targetPixels_;
  std::optional<PatternRows> pattern_;
};

}  // namespace

void Blit(const BlitJob& job) {
  const RECT area = {job.columns.first, job.rows.first, job.columns.first + job.columns.count,
                     job.rows.first + job.rows.count};
  BlitParts(job, &area, 1);
}

void BlitParts(const BlitJob& job, const RECT* parts, size_t count) {
  if (job.columns.count <= 0 || job.rows.count <= 0) return;
  if (job.operation.NeedsPattern() && job.brush->kind == Brush::Kind::kNull) return;
  Painter painter(job);
  const RECT area = {job.columns.first, job.rows.first, job.columns.first + job.columns.count,
                     job.rows.first + job.rows.count};
  for (; count > 0; --count, ++parts)
    ForEachSeen(job.clip, Common(area, *parts), [&](const RECT& r) { painter.Paint(r); });
}

}  // namespace headless
