// The region of one colour.
#include <vncore/vncore.h>
#include "kernel/guards.h"
#include "kernel/pixel_format.h"
#include "kernel/row_view.h"
#include "kernel/scratch_buffer.h"
#include "region/band_builder.h"
#include "region/region_store.h"

namespace vn {
namespace {

bool Same(Rgb a, Rgb b) { return a.red == b.red && a.green == b.green && a.blue == b.blue; }

// Adds the runs of pixels that `wanted` names.
template <class Wanted>
bool AddRuns(BandBuilder* built, int32_t y, int32_t width, Wanted wanted) {
  for (int32_t x = 0; x < width; ++x) {
    if (!wanted(static_cast<size_t>(x))) continue;
    const int32_t left = x;
    do {
      ++x;
    } while (x < width && wanted(static_cast<size_t>(x)));
    if (!built->AddRun(left, x, y)) return false;
  }
  built->CloseRow();
  return true;
}

// The pixels of exactly one colour, or all others. Test it: it is empty when memory failed.
class ColorScan {
 public:
  ColorScan(BitmapHandle* bitmap, Rgb color, bool others)
      : bitmap_(bitmap),
        color_(color),
        others_(others),
        buffer_(bitmap->BytesPerLine, Fill::kZero) {}

  explicit operator bool() const { return buffer_ && built_; }

  // The record, or null when memory failed. The bitmap is locked, its colour table in colour form.
  RegionRecord* Run() {
    for (size_t i = 0; i < 256; ++i)
      selects_[i] = Same(ColorOf(bitmap_->DibColors[i]), color_) != others_;
    bool added = true;
    RowView rows(bitmap_, buffer_.data());
    WithDepth(bitmap_->BitsPerPixel, [&](auto depth) {
      for (int32_t y = 0; added && y < bitmap_->Height; ++y)
        added = AddRow<depth>(rows.Read(static_cast<uint32_t>(y)), y);
    });
    return added ? built_.Finish() : nullptr;
  }

 private:
  template <int Bits>
  bool AddRow(const uint8_t* row, int32_t y) {
    if constexpr (Bits <= 8) {
      return AddRuns(&built_, y, bitmap_->Width,
                     [&](size_t x) { return selects_[IndexReader<Bits>::Get(row, x)]; });
    } else if (bitmap_->ColorOrder == ORDER_RGB) {
      return AddColors(y, PixelReader<Bits, ORDER_RGB>{row, nullptr});
    } else {
      return AddColors(y, PixelReader<Bits, ORDER_BGR>{row, nullptr});
    }
  }

  template <class Reader>
  bool AddColors(int32_t y, Reader read) {
    const Rgb color = color_;
    const bool others = others_;
    return AddRuns(&built_, y, bitmap_->Width,
                   [=](size_t x) { return Same(read(x), color) != others; });
  }

  BitmapHandle* bitmap_;
  Rgb color_;
  bool others_;
  bool selects_[256]{};  // indexes of up to 8 bits
  ScratchBuffer<uint8_t> buffer_;
  BandBuilder built_;
};

// The colour table is left in index form, whichever it was in before.
RegionRecord* RecordOfColor(BitmapHandle* bitmap, COLORREF color, bool others) {
  ColorScan scan(bitmap, ColorOf(color), others);
  if (!scan) return nullptr;
  const BitmapLock lock(bitmap);
  const bool paletted = bitmap->BitsPerPixel <= 8;
  if (paletted) Vn_CreatePaletteColors(bitmap);
  RegionRecord* record = scan.Run();
  if (paletted) Vn_CreatePaletteIndexes(bitmap);
  return record;
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_SetBitmapRgnColor(BitmapHandle* bitmap, COLORREF color, uint32_t combine) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_NO_BITMAP;
  // Within the bitmap, all other pixels are the inverted region.
  const bool inverted = combine == REGION_COMBINE_REPLACE_INVERTED;
  RegionRecord* record = vn::RecordOfColor(bitmap, color, inverted);
  if (!record) return ERR_NO_MEMORY;
  if (combine > REGION_COMBINE_REPLACE_INVERTED) {
    vn::FreeRegionRecord(record);
    return ERR_INVALID_PARAMETER;
  }
  if (inverted) combine = REGION_COMBINE_REPLACE;
  return vn::InstallRecord(bitmap, record, combine);
}
