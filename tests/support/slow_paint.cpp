#include "tests/support/slow_paint.h"

#include <algorithm>

#include "tests/support/slow_dither.h"

namespace vn::test {
namespace {

using Line = std::vector<uint32_t>;

struct Box {
  int64_t left, top, right, bottom;
  bool Empty() const { return right <= left || bottom <= top; }
  Box And(const Box& b) const {
    return {std::max(left, b.left), std::max(top, b.top), std::min(right, b.right),
            std::min(bottom, b.bottom)};
  }
};
Box BoxOf(const RECT& r) { return {r.left, r.top, r.right, r.bottom}; }

HPALETTE ActivePalette(const BitmapHandle& bitmap) {
  return bitmap.Flags & FLAG_FIXED_PALETTE ? bitmap.PaintPalette : bitmap.Palette;
}

int32_t SlowDeviceBits(int32_t rawBits) {
  return rawBits >= 16 ? 24 : rawBits >= 8 ? 8 : rawBits >= 4 ? 4 : 1;
}

int32_t SlowKind(BitmapHandle* bitmap, uint32_t mode, int32_t deviceBits) {
  const bool dither = mode & MODE_DITHER, fixed = mode & MODE_FIXED_PALETTE;
  const int32_t bits = bitmap->BitsPerPixel;
  if (bits == 16 || bits == 32) return dither && deviceBits <= 8 ? PAINT_DITHER : PAINT_EXPAND;
  if (bits == 24) return dither && deviceBits <= 8 ? PAINT_DITHER : PAINT_DIRECT;
  if (bits == 1) return dither && fixed && deviceBits == 8 ? PAINT_DITHER : PAINT_DIRECT;
  if (!dither || deviceBits == 24 || (bits != 4 && bits != 8)) return PAINT_DIRECT;
  if (deviceBits == 1 || (bits == 8 && deviceBits == 4)) return PAINT_DITHER;
  const bool equal =
      Vn_CompareHandleToPalette(ActivePalette(*bitmap), Vn_IntGetFixedPalette(bits), 1 << bits);
  if (bits == 4 && deviceBits == 8) return fixed ? PAINT_DITHER : PAINT_DIRECT;
  if (bits == 8 && !fixed) return PAINT_DIRECT;
  return equal ? PAINT_DIRECT : PAINT_DITHER;
}

// The work of one paint. Lines count from the top of the picture, work rows from its bottom.
class Worker {
 public:
  Worker(const SlowPaint& paint, SlowPicture* result)
      : paint_(paint),
        result_(*result),
        bitmap_(*paint.bitmap),
        width_(bitmap_.Width),
        height_(bitmap_.Height),
        bits_(bitmap_.BitsPerPixel),
        deviceBits_(SlowDeviceBits(paint.rawBits)),
        lines_(SeenRows(paint.bitmap)) {}

  void Run() {
    result_.kind = SlowKind(paint_.bitmap, paint_.mode, deviceBits_);
    const Box whole = {0, 0, width_, height_};
    const Box source = paint_.source ? BoxOf(*paint_.source) : whole;
    const Box clip = paint_.sourceClip ? BoxOf(*paint_.sourceClip).And(source) : source;
    d_ = BoxOf(paint_.destination);
    k_ = paint_.destinationClip ? d_.And(BoxOf(*paint_.destinationClip)) : d_;
    if (clip.And(whole).Empty() || k_.Empty()) return;
    s_ = Lines(source);
    c_ = Lines(clip.And(whole));
    const bool same =
        d_.right - d_.left == s_.right - s_.left && d_.bottom - d_.top == s_.bottom - s_.top;
    if (same ? !MapShift() : !MapScale()) return;
    PaintPlain(same);
    if (result_.status != OK) result_.lines.clear();
  }

 private:
  Box Lines(const Box& b) const {
    if (bitmap_.ViewOrigin != VIEW_BOTTOM_FIRST) return b;
    return {b.left, height_ - b.bottom, b.right, height_ - b.top};
  }

  bool MapShift() {
    const int64_t dx = d_.left - s_.left, dy = d_.top - s_.top;
    const Box box = k_.And({c_.left + dx, c_.top + dy, c_.right + dx, c_.bottom + dy});
    Place(box);
    for (int64_t y = box.top; y < box.bottom; ++y)
      lineOf_.push_back(y - dy);
    for (int64_t x = box.left; x < box.right; ++x)
      columnOf_.push_back(x - dx);
    return !box.Empty();
  }

  bool MapScale() {
    sw_ = s_.right - s_.left, sh_ = s_.bottom - s_.top;
    dw_ = d_.right - d_.left, dh_ = d_.bottom - d_.top;
    const int64_t left = std::max((c_.left - s_.left) * dw_ + d_.left * sw_, k_.left * sw_);
    const int64_t right = std::min((c_.right - s_.left) * dw_ + d_.left * sw_, k_.right * sw_);
    const int64_t top = std::max((c_.top - s_.bottom) * dh_ + d_.bottom * sh_, k_.top * sh_);
    const int64_t bottom =
        std::min((c_.bottom - s_.bottom) * dh_ + d_.bottom * sh_, k_.bottom * sh_);
    const Box box = {left / sw_, top / sh_, right / sw_, bottom / sh_};
    Place(box);
    if (box.Empty()) return false;
    e_ = left - d_.left * sw_;
    f_ = d_.bottom * sh_ - bottom;
    for (int64_t y = box.top; y < box.bottom; ++y) {
      lineOf_.push_back(s_.bottom - 1 - (f_ + (box.bottom - 1 - y) * sh_) / dh_);
    }
    for (int64_t i = 0; i < box.right - box.left; ++i)
      columnOf_.push_back(ColumnOf(i));
    return true;
  }

  int64_t ColumnOf(int64_t i) const { return s_.left + (e_ + i * sw_) / dw_; }

  void Place(const Box& box) {
    box_ = box;
    result_.x = static_cast<int32_t>(box.left);
    result_.y = static_cast<int32_t>(box.top);
  }

  uint32_t Pixel(int64_t line, int64_t column) const {
    return PixelBits(lines_.at(line), column, bits_);
  }

  void SetTable(bool own) {
    result_.indexes = result_.bits <= 8 && (paint_.mode & MODE_DEVICE_INDEXES) != 0;
    if (result_.bits > 8 || result_.indexes) return;
    const RGBQUAD* fixed = Vn_IntGetFixedPalette(result_.bits);
    result_.colors = own ? PaletteOf(paint_.bitmap) : Colors(fixed, fixed + (1 << result_.bits));
  }

  void PaintPlain(bool same) {
    const int32_t kind = result_.kind;
    result_.bits = kind == PAINT_DITHER ? deviceBits_ : kind == PAINT_EXPAND ? 24 : bits_;
    const bool hasLoop = (deviceBits_ == 8 || bits_ != 1) && deviceBits_ <= 8;
    if (kind == PAINT_DITHER && !hasLoop) {
      result_.status = ERR_INVALID_PARAMETER;
      return;
    }
    SetTable(kind != PAINT_DITHER);
    // The first byte's column is a 16-bit word at 1:1.
    const int64_t perByte = bits_ < 8 ? 8 / bits_ : 1;
    const int64_t start = columnOf_[0] / perByte * perByte;
    const int64_t wrapped = same && bits_ < 8 ? start - start % 65536 : 0;
    SlowRun dither = DitherRun();
    result_.lines.resize(lineOf_.size());
    for (size_t i = lineOf_.size(); i-- > 0;) {
      Line line;
      for (const int64_t column : columnOf_)
        line.push_back(Pixel(lineOf_[i], column - wrapped));
      if (kind == PAINT_DITHER) {
        const int64_t y = same ? lineOf_[i] : box_.top + static_cast<int64_t>(i) - d_.top;
        dither.patternX = static_cast<size_t>(same ? columnOf_[0] : box_.left - d_.left);
        dither.patternY = static_cast<size_t>(y) - dither.line;
        line = dither.Line(ColorsOf(line));
      } else if (kind == PAINT_EXPAND) {
        for (uint32_t& pixel : line)
          pixel = Expanded(pixel);
      }
      result_.lines[i] = line;
    }
  }

  // By the fixed palette of the device.
  SlowRun DitherRun() const {
    const bool ordered = paint_.mode & MODE_ORDERED_DITHER;
    const bool dots = deviceBits_ == 1 && (paint_.mode & MODE_CLUSTERED_MATRIX);
    const Way way = deviceBits_ == 1   ? Way::kFixed2
                    : deviceBits_ == 4 ? Way::kFixed16
                                       : Way::kFixed256;
    SlowRun run{ordered ? dots ? DITHER_CLUSTERED : DITHER_ORDERED : DITHER_FLOYD_STEINBERG, way,
                deviceBits_, Colors(256)};
    if (deviceBits_ <= 8) {
      std::copy_n(Vn_IntGetFixedPalette(deviceBits_), 1 << deviceBits_, run.target.begin());
    }
    return run;
  }

  std::vector<SlowColor> ColorsOf(const Line& line) const {
    Bytes row((line.size() * static_cast<size_t>(bits_) + 7) / 8);
    for (size_t i = 0; i < line.size(); ++i)
      SetPixelBits(&row, i, bits_, line[i]);
    const Colors table = PaletteOf(paint_.bitmap);
    std::vector<SlowColor> colors;
    for (size_t i = 0; i < line.size(); ++i)
      colors.push_back(SlowPixel(row, i, bits_, bitmap_.ColorOrder, table.data()));
    return colors;
  }

  uint32_t Expanded(uint32_t pixel) const {
    if (bits_ == 32) return pixel >> 8;
    const uint32_t word = pixel >> 8 | (pixel & 255) << 8;
    const auto widen = [](uint32_t field) { return field % 32 * 8 + field % 32 / 4; };
    return widen(word) << 16 | widen(word >> 5) << 8 | widen(word >> 10);
  }

  const SlowPaint& paint_;
  SlowPicture& result_;
  const BitmapHandle& bitmap_;
  int64_t width_, height_;
  int32_t bits_, deviceBits_;
  std::vector<Bytes> lines_;
  Box s_{}, c_{}, d_{}, k_{};  // source and its clip in lines; destination and its clip
  Box box_{};                  // device pixels that are written
  int64_t sw_ = 0, sh_ = 0, dw_ = 0, dh_ = 0;
  int64_t e_ = 0, f_ = 0;  // start fractions from the left and from the bottom
  std::vector<int64_t> lineOf_, columnOf_;
};

}  // namespace

SlowPicture PaintSlowly(const SlowPaint& paint) {
  SlowPicture picture;
  Worker(paint, &picture).Run();
  return picture;
}

}  // namespace vn::test
