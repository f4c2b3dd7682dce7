// Vn_ConvertBuffer: one row, in place, between any two of the seven pixel formats. The arguments
// choose a loop, and the loop is a template of the two formats.
#include <algorithm>
#include <cstring>

#include "color/color_match.h"
#include "color/color_search.h"
#include "color/fixed_palettes.h"
#include "color/gray_rows.h"
#include "color/swizzle_24_32.h"
#include "kernel/pixel_format.h"

namespace vn {
namespace {

template <uint32_t Order>
using OrderTag = std::integral_constant<uint32_t, Order>;

template <class Use>
void WithOrder(uint32_t order, Use&& use) {
  if (order == ORDER_BGR) {
    use(OrderTag<ORDER_BGR>{});
  } else {
    use(OrderTag<ORDER_RGB>{});
  }
}

// A copied block of 24 bits is read at 32: loops take words in whole, and the spreading is cheap.
template <int Bits>
inline constexpr int kReadAs = Bits == 24 ? 32 : Bits;

// Calls `convert(source, target, pixels)` for blocks of the row, `source` being a copy of the
// block. So a loop reads and writes without regard to what overlaps; only the order of the blocks
// counts, and it is such that nothing is overwritten before it was copied. Blocks start at whole
// bytes.
constexpr size_t kBlockPixels = 256;
template <int SrcBits, int DstBits, class Convert>
void InBlocks(uint8_t* row, size_t width, Convert&& convert) {
  alignas(32) uint8_t source[kBlockPixels * kReadAs<SrcBits> / 8];
  const size_t blocks = (width + kBlockPixels - 1) / kBlockPixels;
  for (size_t k = 0; k < blocks; ++k) {
    const size_t first = (DstBits > SrcBits ? blocks - 1 - k : k) * kBlockPixels;
    const size_t pixels = std::min(kBlockPixels, width - first);
    std::memcpy(source, row + first * SrcBits / 8, (pixels * SrcBits + 7) / 8);
    if constexpr (SrcBits == 24) Widen24To32(source, pixels, false);
    convert(static_cast<const uint8_t*>(source), row + first * DstBits / 8, pixels);
  }
}

// Indexes or grays to indexes or grays. The bits of a last byte beyond the row stay.
template <int SrcBits, int DstBits>
void MapIndexes(uint8_t* row, size_t width, const uint8_t* map) {
  if constexpr (SrcBits == 8 && DstBits == 8) {
    for (size_t x = 0; x < width; ++x)
      row[x] = map[row[x]];
  } else {
    InBlocks<SrcBits, DstBits>(row, width,
                               [map](const uint8_t* source, uint8_t* target, size_t pixels) {
                                 PixelWriter<DstBits> writer(target);
                                 for (size_t x = 0; x < pixels; ++x)
                                   writer.Put(map[IndexReader<SrcBits>::Get(source, x)]);
                                 writer.Finish();
                               });
  }
}

// The pixels of a table's entries, ready to be stored at `Bits`.
template <int Bits, uint32_t Order>
uint32_t PackColor(const RGBQUAD& entry) {
  const uint32_t red = entry.rgbRed, green = entry.rgbGreen, blue = entry.rgbBlue;
  const uint32_t high = Order == ORDER_BGR ? red : blue, low = Order == ORDER_BGR ? blue : red;
  if constexpr (Bits == 16) return high >> 3 << 10 | green >> 3 << 5 | low >> 3;
  return high << 16 | green << 8 | low;
}

template <int SrcBits, int DstBits, uint32_t Order>
void ExpandIndexes(uint8_t* row, size_t width, const RGBQUAD* colors) {
  constexpr size_t kBytes = DstBits / 8;
  InBlocks<SrcBits, DstBits>(
      row, width, [colors](const uint8_t* source, uint8_t* target, size_t pixels) {
        const auto pixelOf = [&](size_t x) {
          return PackColor<DstBits, Order>(colors[IndexReader<SrcBits>::Get(source, x)]);
        };
        // A word of four bytes is one store where three are two; the next pixel mends the fourth.
        for (size_t x = 0; x + 1 < pixels; ++x) {
          const uint32_t pixel = pixelOf(x);
          std::memcpy(target + x * kBytes, &pixel, DstBits == 16 ? 2 : 4);
        }
        const uint32_t last = pixelOf(pixels - 1);
        std::memcpy(target + (pixels - 1) * kBytes, &last, kBytes);
      });
}

template <int SrcBits>
void ColorsToGray(uint8_t* row, size_t width, uint32_t order) {
  InBlocks<SrcBits, 8>(row, width,
                       [grays = SelectGrayRow(kReadAs<SrcBits>, order)](
                           const uint8_t* source, uint8_t* target, size_t pixels) {
                         grays(source, target, pixels, nullptr);
                       });
}

template <int SrcBits, uint32_t Order, int DstBits, class Search>
void ColorsToIndexes(uint8_t* row, size_t width, Search&& search) {
  InBlocks<SrcBits, DstBits>(
      row, width, [&](const uint8_t* source, uint8_t* target, size_t pixels) {
        PixelWriter<DstBits> writer(target);
        for (size_t x = 0; x < pixels; ++x) {
          writer.Put(search.Find(ColorReader<kReadAs<SrcBits>, Order>::Get(source, x)));
        }
        writer.Finish();
      });
}

// Between 16 bits and wider, by words of 32 bits, blue lowest: arithmetic that vectorises. An
// exchange of the channels is the same in both directions, so one order of the source stands for
// both.
template <int SrcBits, bool Swap>
void NarrowTo16(uint8_t* row, size_t width) {
  InBlocks<SrcBits, 16>(row, width, [](const uint8_t* source, uint8_t* target, size_t pixels) {
    for (size_t x = 0; x < pixels; ++x) {
      PutColor<16, Swap ? ORDER_RGB : ORDER_BGR>(target, x,
                                                 ColorReader<32, ORDER_BGR>::Get(source, x));
    }
  });
}

template <int DstBits, bool Swap>
void WidenFrom16(uint8_t* row, size_t width) {
  InBlocks<16, DstBits>(row, width, [](const uint8_t* source, uint8_t* target, size_t pixels) {
    uint32_t words[kBlockPixels];
    for (size_t x = 0; x < pixels; ++x) {
      const uint32_t w = LoadWord(source + 2 * x);
      const uint32_t low = w & 0x1F, high = w >> 10 & 0x1F;
      // Each field in the top five bits of its byte, and its own top bits repeated below them.
      const uint32_t tops = (Swap ? low : high) << 19 | (w & 0x3E0) << 6 | (Swap ? high : low) << 3;
      words[x] = tops | (tops >> 5 & 0x070707);
    }
    auto* bytes = reinterpret_cast<uint8_t*>(words);
    if constexpr (DstBits == 24) Narrow32To24(bytes, pixels, false);
    std::memcpy(target, bytes, pixels * DstBits / 8);
  });
}

// Exchanges the outer fields of 16-bit pixels and clears the top bit.
void SwapRedBlue16(uint8_t* row, size_t width) {
  for (size_t x = 0; x < width; ++x) {
    const uint32_t w = LoadWord(row + 2 * x);
    StoreWord(row + 2 * x, (w & 0x1F) << 10 | (w & 0x3E0) | (w >> 10 & 0x1F));
  }
}

template <int SrcBits, int DstBits>
void ConvertColors(uint8_t* row, size_t width, bool swap) {
  if constexpr (SrcBits == DstBits) {
    if (!swap) return;
    if constexpr (SrcBits == 16) SwapRedBlue16(row, width);
    if constexpr (SrcBits == 24) SwapRedBlue24(row, width);
    if constexpr (SrcBits == 32) SwapRedBlue32(row, width);
  } else if constexpr (SrcBits == 24 && DstBits == 32) {
    Widen24To32(row, width, swap);
  } else if constexpr (SrcBits == 32 && DstBits == 24) {
    Narrow32To24(row, width, swap);
  } else if constexpr (DstBits == 16) {
    swap ? NarrowTo16<SrcBits, true>(row, width) : NarrowTo16<SrcBits, false>(row, width);
  } else {
    swap ? WidenFrom16<DstBits, true>(row, width) : WidenFrom16<DstBits, false>(row, width);
  }
}

// One side of a conversion: how its pixels are stored, and what their values mean.
struct Format {
  uint32_t code;          // the depth code, BPP_GRAY included
  uint32_t order;         // above 8 bits
  const RGBQUAD* colors;  // at 1, 4 and 8 bits: never null

  bool IsGray() const { return code == BPP_GRAY; }
  bool IsColor() const { return code > 8; }
  int32_t StoredBits() const { return IsGray() ? 8 : static_cast<int32_t>(code); }
};

bool IsDepthCode(uint32_t code) {
  return code == BPP_GRAY || WithDepth(static_cast<int32_t>(code), [](auto) {});
}

// Settles one side. False when the arguments name no format.
bool MakeFormat(uint32_t code, uint32_t order, const RGBQUAD* colors, Format* format) {
  if (!IsDepthCode(code)) return false;
  *format = {code, order, nullptr};
  if (format->IsColor()) return order == ORDER_RGB || order == ORDER_BGR;
  if (!format->IsGray()) format->colors = colors ? colors : Vn_IntGetFixedPalette(code);
  return true;
}

// From indexes or grays to indexes or grays.
void ConvertByMap(uint8_t* row, size_t width, const Format& from, const Format& to) {
  const uint32_t fromCount = FullColorCount(static_cast<uint32_t>(from.StoredBits()));
  const uint32_t toCount = FullColorCount(static_cast<uint32_t>(to.StoredBits()));
  if (from.code == to.code &&
      (from.IsGray() || std::memcmp(from.colors, to.colors, fromCount * sizeof(RGBQUAD)) == 0)) {
    return;
  }
  uint8_t map[256];
  BuildColorMap(from.colors, fromCount, to.colors, toCount, map);
  WithDepth(from.StoredBits(), [&](auto src) {
    WithDepth(to.StoredBits(), [&](auto dst) {
      if constexpr (src <= 8 && dst <= 8) MapIndexes<src, dst>(row, width, map);
    });
  });
}

// From indexes or grays to colours: a gray is an index into a gray ramp.
void ConvertByTable(uint8_t* row, size_t width, const Format& from, const Format& to) {
  const RGBQUAD* colors = from.IsGray() ? GrayRamp256.data() : from.colors;
  WithDepth(from.StoredBits(), [&](auto src) {
    WithDepth(to.StoredBits(), [&](auto dst) {
      WithOrder(to.order, [&](auto order) {
        if constexpr (src <= 8 && dst > 8) ExpandIndexes<src, dst, order>(row, width, colors);
      });
    });
  });
}

void ConvertColorRow(uint8_t* row, size_t width, const Format& from, const Format& to) {
  WithDepth(from.StoredBits(), [&](auto src) {
    if constexpr (src > 8) {
      WithDepth(to.StoredBits(), [&](auto dst) {
        if constexpr (dst > 8) {
          ConvertColors<src, dst>(row, width, from.order != to.order);
        } else {
          if (to.IsGray()) return ColorsToGray<src>(row, width, from.order);
          WithOrder(from.order, [&](auto order) {
            if constexpr (dst == 1) {
              ColorsToIndexes<src, order, dst>(row, width, PairSearch(to.colors));
            } else {
              ColorsToIndexes<src, order, dst>(row, width,
                                               ColorSearch(to.colors, FullColorCount(dst), width));
            }
          });
        }
      });
    }
  });
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_ConvertBuffer(void* buffer, uint32_t width, uint32_t srcBits, uint32_t dstBits,
                                  uint32_t srcOrder, uint32_t dstOrder, const RGBQUAD* srcColors,
                                  const RGBQUAD* dstColors) {
  vn::Format from, to;
  if (!buffer || width == 0 || !vn::MakeFormat(srcBits, srcOrder, srcColors, &from) ||
      !vn::MakeFormat(dstBits, dstOrder, dstColors, &to)) {
    return ERR_INVALID_PARAMETER;
  }
  if (static_cast<int32_t>(width) < 1) return OK;
  auto* row = static_cast<uint8_t*>(buffer);
  if (from.IsColor()) {
    vn::ConvertColorRow(row, width, from, to);
  } else if (to.IsColor()) {
    vn::ConvertByTable(row, width, from, to);
  } else {
    vn::ConvertByMap(row, width, from, to);
  }
  return OK;
}

uint32_t VN_CALL Vn_CalcConvertSize(uint32_t srcWidth, uint32_t srcBits, uint32_t dstWidth,
                                    uint32_t dstBits) {
  if (srcBits == 0) srcBits = 8;
  if (dstBits == 0) dstBits = 8;
  // The mixed term is a row of the new width that has not changed its depth yet.
  return std::max({vn::StrideOf(dstWidth, srcBits), vn::StrideOf(dstWidth, dstBits),
                   vn::StrideOf(srcWidth, srcBits)});
}
