// Rows of one pixel format turned into another, the way chosen once.
#ifndef VNCORE_COLOR_ROW_CONVERTER_H
#define VNCORE_COLOR_ROW_CONVERTER_H

#include <optional>

#include "color/color_rows.h"
#include "color/color_search.h"
#include "color/gray_rows.h"

namespace vn {

// One side of a conversion: how its pixels are stored, and what their values mean.
struct RowFormat {
  uint32_t code;          // the depth code, BPP_GRAY included
  uint32_t order;         // above 8 bits
  const RGBQUAD* colors;  // at 1, 4 and 8 bits: a full table; null for the fixed palette

  bool IsGray() const { return code == BPP_GRAY; }
  bool IsColor() const { return code > 8; }
  int32_t StoredBits() const { return IsGray() ? 8 : static_cast<int32_t>(code); }
};

class RowConverter {
 public:
  // False when a side names no format, as for Vn_ConvertBuffer. The tables stay the caller's and
  // stay as they are. `expected`: roughly how many pixels will come.
  bool Prepare(RowFormat from, RowFormat to, size_t expected);

  // Between rows that are apart. Bits of a last byte behind the last pixel keep what they held.
  void Convert(const uint8_t* source, uint8_t* target, size_t width) {
    loop_(this, source, target, width);
  }
  // Over the row itself, which is large enough for either format.
  void ConvertInPlace(uint8_t* row, size_t width);

 private:
  static constexpr size_t kMostCopied = 4096;

  using Loop = void (*)(RowConverter* self, const uint8_t* source, uint8_t* target, size_t width);

  static void Keep(RowConverter* self, const uint8_t* source, uint8_t* target, size_t width);
  static void Colors(RowConverter* self, const uint8_t* source, uint8_t* target, size_t width);
  static void Grays(RowConverter* self, const uint8_t* source, uint8_t* target, size_t width);
  template <int From, int To>
  static void Map(RowConverter* self, const uint8_t* source, uint8_t* target, size_t width);
  template <int From, uint32_t Order, int To>
  static void Search(RowConverter* self, const uint8_t* source, uint8_t* target, size_t width);
  // Pixels `first` to `end` - 1 of a row, by way of a copy: at most kMostCopied.
  void ConvertCopied(uint8_t* row, size_t first, size_t end);
  bool KeepsPixels() const;
  void PrepareMap();
  void PrepareSearch(size_t expected);

  RowFormat from_, to_;
  Loop loop_ = nullptr;
  ColorRow colorRow_ = nullptr;
  GrayRow grayRow_ = nullptr;
  uint8_t map_[256];
  std::optional<PairSearch> pair_;     // to 1 bit
  std::optional<ColorSearch> search_;  // to 4 and 8
};

}  // namespace vn

#endif
