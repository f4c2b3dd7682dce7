// Every vector form beside its plain one: over short widths, at all alignments, and with rows that
// begin and end beside pages that may not be touched.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "color/color_rows.h"
#include "color/color_search.h"
#include "color/dither_blocks.h"
#include "color/gray_rows.h"
#include "color/ordered_rows.h"
#include "compose/combine_rows.h"
#include "compose/pixel_pattern.h"
#include "compose/underlay_rows.h"
#include "device/bit_rows.h"
#include "geometry/blend_rows.h"
#include "geometry/mirror_row.h"
#include "geometry/pick_pixels.h"
#include "geometry/row_cells.h"
#include "geometry/row_scaler.h"
#include "geometry/row_spans.h"
#include "geometry/transpose.h"
#include "kernel/vector.h"
#include "tests/support/bitmaps.h"
#include "tests/support/guarded_pages.h"
#include "tests/support/random.h"

namespace vn::test {
namespace {

// Work on rows of `width` pixels, and the bytes that it reads and writes, to the last one.
struct Form {
  const char* name;
  size_t (*sourceBytes)(size_t width);
  size_t (*targetBytes)(size_t width);
  void (*run)(const uint8_t* source, uint8_t* target, size_t width);
};

constexpr size_t kRows = 40;  // of blocks
template <int Bits, size_t Rows = 1>
size_t Block(size_t width) {
  return (width * Bits + 7) / 8 * Rows;
}
template <int Bits>
size_t Transposed(size_t width) {
  return Block<Bits>(kRows) * width;
}
template <uint32_t Bytes, uint32_t Percent>
size_t Resized(size_t width) {
  return std::max<size_t>(width * Percent / 100, 1) * Bytes;
}
template <int Bits, uint32_t Percent>
size_t ResizedPacked(size_t width) {
  return Block<Bits>(Resized<1, Percent>(width));
}
template <uint32_t Percent>
ResampleAxis AxisOf(size_t width) {
  return {static_cast<uint32_t>(width), static_cast<uint32_t>(Resized<1, Percent>(width))};
}

template <int Bits>
void Mirror(const uint8_t* source, uint8_t* target, size_t width) {
  std::copy_n(source, Block<Bits>(width), target);
  MirrorWork(Bits)(target, target, {width, Block<Bits>(width)});
}
template <int Bits>
void MirrorApart(const uint8_t* source, uint8_t* target, size_t width) {
  std::copy_n(source, Block<Bits, 2>(width), target);
  MirrorWork(Bits)(target, target + Block<Bits>(width), {width, Block<Bits>(width)});
}
void Exchange(const uint8_t* source, uint8_t* target, size_t width) {
  std::copy_n(source, 2 * width, target);
  ExchangeWork()(target, target + width, {width, width});
}
template <int Bits>
void TransposeAll(const uint8_t* source, uint8_t* target, size_t width) {
  TransposerOf(Bits)(source, static_cast<ptrdiff_t>(Block<Bits>(width)), target,
                     static_cast<ptrdiff_t>(Block<Bits>(kRows)), kRows, width);
}
// Down all the rows, and the columns backward.
template <int Bits>
void Pick(const uint8_t* source, uint8_t* target, size_t width) {
  const auto pixels = static_cast<int32_t>(width);
  const int32_t down = static_cast<int32_t>(kRows * 16384 - 1) / std::max(pixels, 1);
  PickerOf(Bits)(
      {source, static_cast<ptrdiff_t>(Block<Bits>(width)), pixels * 16384 - 1, 0, -16300, down},
      target, 0, width);
}
template <int Bits, uint32_t Percent>
void Scale(const uint8_t* source, uint8_t* target, size_t width) {
  const ResampleAxis axis = AxisOf<Percent>(width);
  // Packed rows may begin within a byte.
  const uint32_t first = Bits < 8 ? width % 3 : 0;
  if (width <= first) return;
  const Stepper across = Stepper::Dividing(axis.oldSize - first, axis.newSize);
  const auto bytes = static_cast<uint32_t>(Block<Bits>(axis.newSize));
  RowScaler({Bits, across, first, axis.oldSize, axis.newSize, bytes, Percent > 100}, 99)
      .Scale(source, target);
}
template <uint32_t Channels, uint32_t Percent>
void Resample(const uint8_t* source, uint8_t* target, size_t width) {
  if (!width) return;
  if (Percent > 100) {
    RowSpans(AxisOf<Percent>(width), Channels).Interpolate(source, target);
  } else {
    RowCells(AxisOf<Percent>(width), Channels).Average(source, target);
  }
}
void Blend(const uint8_t* source, uint8_t* target, size_t width) {
  RowBlend{width}(source, source + width, 3, 7, target);
}
void Average(const uint8_t* source, uint8_t* target, size_t width) {
  RowAverage average(width, 3);
  for (const size_t row : {0, 1, 0})
    average.Add(source + row * width, row == 0);
  average.Add(source + width, false);
  average.Write(2, target);
}
template <int Bits>
void Fill(const uint8_t* source, uint8_t* target, size_t width) {
  if (width) PixelPattern(source, Bits / 8, 0).Write(target, Block<Bits>(width));
}
size_t Stretch(size_t width) { return width * 30; }
void Stream(const uint8_t* source, uint8_t* target, size_t width) {
  if (width) PixelPattern(source, 3, 1 << 30).Write(target, Stretch(width));
}
template <int Bits>
void Grays(const uint8_t* source, uint8_t* target, size_t width) {
  SelectGrayRow(Bits, width % 2 ? ORDER_BGR : ORDER_RGB)(source, target, width, nullptr);
}
// Both orders.
template <int From, int To>
void Convert(const uint8_t* source, uint8_t* target, size_t width) {
  RGBQUAD colors[256];
  for (uint32_t i = 0; i < 256; ++i) {
    const uint32_t word = i * 0x9E3779B1;
    std::memcpy(&colors[i], &word, sizeof word);
  }
  SelectColorRow(From, To, width % 2)(source, target, width, colors);
}
template <int From, int To>
void Ordered(const uint8_t* source, uint8_t* target, size_t width) {
  constexpr uint8_t kThresholds[] = {0, 100, 252, 7, 128, 64, 30, 200};
  OrderedRows(From, width % 2, nullptr, To).Dither(source, 0, kThresholds, target, width);
}
template <int Bits>
void Indexes(const uint8_t* source, uint8_t* target, size_t width) {
  SelectWriteIndexes(Bits)(source, width, target);
}
void Nearest(const uint8_t* source, uint8_t* target, size_t width) {
  if (!width) return;
  const auto* const colors = reinterpret_cast<const RGBQUAD*>(source);
  const auto count = static_cast<uint32_t>(width);
  *target = static_cast<uint8_t>(NearestEntry(colors, count, {9, 99, 199}, NearestForm()));
  ColorSearch search(colors, std::min(count, 256u), 999);
  for (int32_t i = 0; i < 64; ++i)
    *target = static_cast<uint8_t>(*target * 5 + search.Find({i * 3, 255 - i * 4, i * i & 255}));
}
// Ones of blocks of columns, and which of them are enough; what is written behind them is cut off.
template <uint32_t Columns, uint32_t Remainder>
void Blocks(const uint8_t* source, uint8_t* target, size_t width) {
  Bytes row(source, source + Block<1>(width)), values(width + kBlockSlack);
  row.resize(width * (Columns + 1) / 8 + 2 + kWindowSlack);
  std::copy_n(source, Block<1>(width), row.end() - static_cast<ptrdiff_t>(Block<1>(width)) - 8);
  Stepper step{Columns, Remainder, 7, 3};
  uint32_t column = Remainder ? 5 : 0;
  const auto blocks = static_cast<uint32_t>(width);
  const auto valueOf = [](uint32_t ones, uint32_t columns) {
    return static_cast<uint8_t>(ones * 3 + columns);
  };
  if (const BitBlocks vectors(step, column, blocks, true, valueOf); vectors) {
    vectors.Write(row.data(), values.data());
  } else {
    for (size_t i = 0; i < width; ++i) {
      const uint32_t columns = step.Advance();
      values[i] = valueOf(CountBits(row.data(), column, columns), columns);
      column += columns;
    }
  }
  std::copy_n(values.data(), width, target);
}
void Votes(const uint8_t* source, uint8_t* target, size_t width) {
  std::vector<uint16_t> counts(width + 40);
  for (size_t i = 0; i < width; ++i)
    counts[i] = source[i] & 15;
  WriteVotes(counts.data(), 7, static_cast<uint32_t>(Block<1>(width)), target);
}
// A line of a picture that is large enough for answers by cell.
void Cells(const uint8_t* source, uint8_t* target, size_t width) {
  if (!width) return;
  Colors colors(200);
  Random(9).Fill(&colors[0].rgbBlue, colors.size() * sizeof(RGBQUAD));
  for (RGBQUAD& color : colors)
    color.rgbReserved = 0;
  BitmapHandle picture{};
  Vn_InitBitmap(&picture, static_cast<int32_t>(width), 1 << 20, 24);
  picture.DitherMethod = DITHER_NONE;
  if (Vn_StartDithering(&picture, colors.data(), 200) != OK) return;
  Vn_DitherLine(&picture, source, target);
  Vn_StopDithering(&picture);
}
void Shade(const uint8_t* source, uint8_t* target, size_t width) {
  VNCORE_VECTOR_FORM(ShadePlain, ShadeAvx2)(target, source, width);
}
// All tables and operations one after the other, with the source's pixels `Shift` bits off.
template <int Bits, uint32_t Shift>
void Combine(const uint8_t* source, uint8_t* target, size_t width) {
  if (!width) return;
  const CombineSpan span = {target, source,        0,   0, Block<Bits>(width), 1, true,
                            true,   0xFF >> Shift, 0xFF};
  for (uint8_t code = 0; code < kCombineCodes; ++code) {
    if (code == kTableDestination) continue;
    const bool inverted = code % 2;
    CombineRows(ChooseCombineLoop({code, true, true, inverted, false, inverted}, Bits, Shift),
                span);
  }
}

#define VNCORE_AT_DEPTH(bits)                                                           \
  {"mirror " #bits, Block<bits>, Block<bits>, Mirror<bits>},                            \
      {"mirror apart " #bits, Block<bits, 2>, Block<bits, 2>, MirrorApart<bits>},       \
      {"transpose " #bits, Block<bits, kRows>, Transposed<bits>, TransposeAll<bits>}, { \
    "pick " #bits, Block<bits, kRows>, Block<bits>, Pick<bits>                          \
  }
#define VNCORE_AT_BYTES(bits)                                                       \
  VNCORE_AT_DEPTH(bits),                                                            \
      {"scale up " #bits, Block<bits>, Resized<bits / 8, 230>, Scale<bits, 230>},   \
      {"scale down " #bits, Block<bits>, Resized<bits / 8, 37>, Scale<bits, 37>}, { \
    "fill " #bits, Block<bits>, Block<bits>, Fill<bits>                             \
  }

#define VNCORE_CONVERT_TO(bits)                                      \
  {"gray to " #bits, Block<8>, Block<bits>, Convert<0, bits>},       \
      {"8 to " #bits, Block<8>, Block<bits>, Convert<8, bits>},      \
      {"16 to " #bits, Block<16>, Block<bits>, Convert<16, bits>},   \
      {"24 to " #bits, Block<24>, Block<bits>, Convert<24, bits>}, { \
    "32 to " #bits, Block<32>, Block<bits>, Convert<32, bits>        \
  }

const Form kForms[] = {
    VNCORE_AT_DEPTH(1),
    VNCORE_AT_DEPTH(4),
    {"scale up 1", Block<1>, ResizedPacked<1, 230>, Scale<1, 230>},
    {"scale down 1", Block<1>, ResizedPacked<1, 37>, Scale<1, 37>},
    {"scale up 4", Block<4>, ResizedPacked<4, 230>, Scale<4, 230>},
    {"scale down 4", Block<4>, ResizedPacked<4, 37>, Scale<4, 37>},
    VNCORE_AT_BYTES(8),
    VNCORE_AT_BYTES(16),
    VNCORE_AT_BYTES(24),
    VNCORE_AT_BYTES(32),
    {"exchange", Block<8, 2>, Block<8, 2>, Exchange},
    {"spans 1", Block<8>, Resized<1, 230>, Resample<1, 230>},
    {"spans 3", Block<24>, Resized<3, 230>, Resample<3, 230>},
    {"small cells 1", Block<8>, Resized<1, 37>, Resample<1, 37>},
    {"large cells 1", Block<8>, Resized<1, 7>, Resample<1, 7>},
    {"small cells 3", Block<24>, Resized<3, 37>, Resample<3, 37>},
    {"large cells 3", Block<24>, Resized<3, 7>, Resample<3, 7>},
    {"blend", Block<8, 2>, Block<8>, Blend},
    {"average", Block<8, 2>, Block<8>, Average},
    {"grays 24", Block<24>, Block<8>, Grays<24>},
    {"grays 32", Block<32>, Block<8>, Grays<32>},
    VNCORE_CONVERT_TO(16),
    VNCORE_CONVERT_TO(24),
    VNCORE_CONVERT_TO(32),
    {"ordered 32 to 1", Block<32>, Block<1>, Ordered<32, 1>},
    {"ordered 32 to 4", Block<32>, Block<4>, Ordered<32, 4>},
    {"ordered 32 to 8", Block<32>, Block<8>, Ordered<32, 8>},
    {"ordered 24 to 4", Block<24>, Block<4>, Ordered<24, 4>},
    {"ordered 24 to 8", Block<24>, Block<8>, Ordered<24, 8>},
    {"indexes 1", Block<8>, Block<1>, Indexes<1>},
    {"indexes 4", Block<8>, Block<4>, Indexes<4>},
    {"nearest", Block<32>, Block<1>, Nearest},
    {"cells", Block<24>, Block<8>, Cells},
    {"blocks of 2", Block<1>, Block<8>, Blocks<2, 0>},
    {"blocks of 4", Block<1>, Block<8>, Blocks<4, 0>},
    {"blocks of 8", Block<1>, Block<8>, Blocks<8, 0>},
    {"blocks of 3 and 4", Block<1>, Block<8>, Blocks<3, 2>},
    {"blocks of 56 and 57", Block<1>, Block<8>, Blocks<56, 6>},
    {"votes", Block<8>, Block<1>, Votes},
    {"stream", Block<24>, Stretch, Stream},
    {"shade", Block<8>, Block<24>, Shade},
    {"combine 4", Block<4>, Block<4>, Combine<4, 0>},
    {"combine 16", Block<16>, Block<16>, Combine<16, 0>},
    {"combine 24", Block<24>, Block<24>, Combine<24, 0>},
    {"combine shifted", [](size_t width) { return Block<4>(width) + 1; }, Block<4>, Combine<4, 4>},
};

TEST(VectorForms, EqualThePlainOnesAndKeepToTheirRows) {
  const GuardedPages from(1 << 16), to(1 << 16);
  Random random(71);
  random.Fill(from.begin(), static_cast<size_t>(from.end() - from.begin()));
  const VectorLevel before = ActiveVectorLevel();
  for (const Form& form : kForms) {
    for (size_t width = 0; width <= 300; ++width) {
      const size_t bytes = form.sourceBytes(width), made = form.targetBytes(width);
      // 16-bit pixels lie at even addresses, as in every bitmap.
      const uint8_t* const sources[] = {from.begin(), from.end() - bytes,
                                        from.end() - bytes - width * 2 % 64};
      uint8_t* const targets[] = {to.begin(), to.end() - made, to.end() - made - width * 2 % 62};
      for (size_t place = 0; place < 3; ++place) {
        uint8_t* const low = std::max(targets[place] - 64, to.begin());
        uint8_t* const high = std::min(targets[place] + made + 64, to.end());
        Bytes results[2];
        for (const VectorLevel level : {VectorLevel::kNone, VectorLevel::kAvx2}) {
          SetVectorLevel(level);
          std::fill(low, high, uint8_t{0x5A});
          form.run(sources[place], targets[place], width);
          results[level == VectorLevel::kAvx2].assign(low, high);
        }
        ASSERT_EQ(results[0], results[1]) << form.name << ", " << width << " at place " << place;
      }
    }
  }
  SetVectorLevel(before);
}

}  // namespace
}  // namespace vn::test
