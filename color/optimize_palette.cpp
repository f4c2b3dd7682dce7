// OptimizePalette: count, split, sort.
#include "color/optimize_palette.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "color/color_boxes.h"
#include "color/palettes.h"
#include "kernel/guards.h"
#include "kernel/row_view.h"

namespace vn {
namespace {

template <int Bits, uint32_t Order>
void CountColors(const uint8_t* row, uint32_t width, ColorHistogram* histogram) {
  for (uint32_t x = 0; x < width; ++x)
    histogram->Add(CellOf(ColorReader<Bits, Order>::Get(row, x)));
}

template <int Bits>
void CountIndexes(const uint8_t* row, uint32_t width, const uint32_t* cells,
                  ColorHistogram* histogram) {
  for (uint32_t x = 0; x < width; ++x)
    histogram->Add(cells[IndexReader<Bits>::Get(row, x)]);
}

// Counts all pixels of the bitmap.
void CountPicture(BitmapHandle* bitmap, uint8_t* rowBuffer, ColorHistogram* histogram) {
  uint32_t cells[256] = {};
  if (bitmap->BitsPerPixel <= 8) {
    RGBQUAD colors[256] = {};
    Vn_GetPaletteEntries(ActivePalette(*bitmap), 0, static_cast<uint32_t>(bitmap->ColorCount),
                         colors);
    std::transform(std::begin(colors), std::end(colors), cells,
                   [](const RGBQUAD& c) { return CellOf(ColorOf(c)); });
  }
  const BitmapLock lock(bitmap);
  RowView rows(bitmap, rowBuffer);
  const auto width = static_cast<uint32_t>(bitmap->Width);
  const auto height = static_cast<uint32_t>(bitmap->Height);
  WithDepth(bitmap->BitsPerPixel, [&](auto bits) {
    for (uint32_t row = 0; row < height; ++row) {
      if constexpr (bits <= 8) {
        CountIndexes<bits>(rows.Read(row), width, cells, histogram);
      } else if (bitmap->ColorOrder == ORDER_BGR) {
        CountColors<bits, ORDER_BGR>(rows.Read(row), width, histogram);
      } else {
        CountColors<bits, ORDER_RGB>(rows.Read(row), width, histogram);
      }
    }
  });
}

uint32_t SortKey(const RGBQUAD& c) {
  return static_cast<uint32_t>(c.rgbRed << 16 | c.rgbGreen << 8 | c.rgbBlue);
}

// An exchange sort by red, green, blue. It is not stable, and which of several equal colours comes
// first shows in the match table, so another sort would give other indexes.
void SortColors(RGBQUAD* colors, uint32_t count, uint32_t* order) {
  std::iota(order, order + count, 0u);
  for (uint32_t i = 0; i < count; ++i) {
    for (uint32_t j = i + 1; j < count; ++j) {
      if (SortKey(colors[i]) <= SortKey(colors[j])) continue;
      std::swap(colors[i], colors[j]);
      std::swap(order[i], order[j]);
    }
  }
}

BYTE Widened(uint32_t mean) { return static_cast<BYTE>(Widen5To8(mean)); }

RGBQUAD ColorOfBox(const ColorBox& box) {
  return {Widened(box.MeanBlue), Widened(box.MeanGreen), Widened(box.MeanRed), 0};
}

// Turns the counters of the listed colours into indexes plus 1.
void WriteMatches(const ColorHistogram& histogram, const ColorBox* boxes, uint32_t count,
                  const uint32_t* order) {
  for (uint32_t i = 0; i < count; ++i) {
    const ColorBox& box = boxes[order[i]];
    for (uint32_t k = box.First; k < box.First + box.Count; ++k)
      histogram.counts[histogram.list[k]] = i + 1;
  }
}

}  // namespace

VnStatus OptimizePalette(BitmapHandle* bitmap, RGBQUAD* colors, uint32_t count,
                         ScratchBuffer<uint32_t>* matchTable) {
  if (!(bitmap->Flags & FLAG_ALLOCATED) || !colors || count == 0) return ERR_INVALID_PARAMETER;
  if (matchTable) *matchTable = {};
  ScratchBuffer<uint32_t> order(count);
  if (!order) return ERR_NO_MEMORY;

  const auto own = static_cast<uint32_t>(bitmap->ColorCount);
  if (bitmap->BitsPerPixel <= 8 && own <= count) {
    std::fill_n(colors, count, RGBQUAD{});
    Vn_GetPaletteEntries(ActivePalette(*bitmap), 0, own, colors);
    SortColors(colors, own, order.data());
    return OK;
  }

  ScratchBuffer<uint32_t> counts(kMatchCells, Fill::kZero), list(kMatchCells);
  const ScratchBuffer<uint8_t> row(bitmap->BytesPerLine, Fill::kZero);
  const ScratchBuffer<ColorBox> boxes(count);
  if (!counts || !list || !row || !boxes) return ERR_NO_MEMORY;
  ColorHistogram histogram{counts.data(), list.data()};
  CountPicture(bitmap, row.data(), &histogram);
  const uint32_t made = SplitIntoBoxes(histogram, boxes.data(), count);

  std::fill_n(colors, count, RGBQUAD{});
  std::transform(boxes.data(), boxes.data() + made, colors, ColorOfBox);
  SortColors(colors, made, order.data());
  if (matchTable) {
    WriteMatches(histogram, boxes.data(), made, order.data());
    *matchTable = std::move(counts);
  }
  return OK;
}

}  // namespace vn
