// Pixel formats: bit order within a byte, channel order, component widths, the gray rule. Stated
// here once; every loop over pixels is a template over these readers and writers.
//
//   1 bit    leftmost pixel in the high bit of a byte
//   4 bits   left pixel in the high nibble
//   8 bits   one byte
//   16 bits  little-endian word of three 5-bit fields, top bit unused
//   24 bits  three bytes; 32 bits the same and a fourth that carries nothing
#ifndef VNCORE_KERNEL_PIXEL_FORMAT_H
#define VNCORE_KERNEL_PIXEL_FORMAT_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include <vncore/vn_bitmap.h>

namespace vn {

static_assert(std::endian::native == std::endian::little, "rows hold little-endian words");

// Channels 0 to 255, in words so that arithmetic on them needs no widening.
struct Rgb {
  int32_t red, green, blue;
};

inline constexpr Rgb ColorOf(const RGBQUAD& entry) {
  return {entry.rgbRed, entry.rgbGreen, entry.rgbBlue};
}
inline constexpr Rgb ColorOf(COLORREF color) {
  return {static_cast<int32_t>(color & 0xFF), static_cast<int32_t>(color >> 8 & 0xFF),
          static_cast<int32_t>(color >> 16 & 0xFF)};
}

inline constexpr uint32_t GrayOf(uint32_t red, uint32_t green, uint32_t blue) {
  return (2 * red + 5 * green + blue + 4) >> 3;
}
inline constexpr uint32_t GrayOf(Rgb c) {
  return GrayOf(static_cast<uint32_t>(c.red), static_cast<uint32_t>(c.green),
                static_cast<uint32_t>(c.blue));
}

inline constexpr uint32_t Widen5To8(uint32_t field) { return field << 3 | field >> 2; }
inline constexpr uint32_t Narrow8To5(uint32_t channel) { return channel >> 3; }

// Index of a colour's cell in match tables and histograms: 5 bits each, red on top.
inline constexpr uint32_t CellOf(Rgb c) {
  return static_cast<uint32_t>((c.red >> 3) << 10 | (c.green >> 3) << 5 | c.blue >> 3);
}
inline constexpr uint32_t kMatchCells = 32768;

// Bytes from row to row, in wrapping 32-bit arithmetic.
inline constexpr uint32_t StrideOf(uint32_t width, uint32_t bits) {
  return (bits * width + 31) / 32 * 4;
}

// Entries of a full palette of up to 8 bits.
inline constexpr uint32_t FullColorCount(uint32_t bits) { return 1u << bits; }

inline uint16_t LoadWord(const uint8_t* at) {
  uint16_t word;
  std::memcpy(&word, at, sizeof word);
  return word;
}
inline void StoreWord(uint8_t* at, uint32_t word) {
  const auto low = static_cast<uint16_t>(word);
  std::memcpy(at, &low, sizeof low);
}

// Palette indexes of a row, by pixel number.
template <int Bits>
struct IndexReader;

template <>
struct IndexReader<1> {
  static uint32_t Get(const uint8_t* row, size_t x) { return row[x >> 3] >> (~x & 7) & 1; }
};
template <>
struct IndexReader<4> {
  static uint32_t Get(const uint8_t* row, size_t x) { return row[x >> 1] >> (~x & 1) * 4 & 15; }
};
template <>
struct IndexReader<8> {
  static uint32_t Get(const uint8_t* row, size_t x) { return row[x]; }
};

// Colours of a row of 16 bits or more, by pixel number.
template <int Bits, uint32_t Order>
struct ColorReader {
  static_assert(Bits == 24 || Bits == 32);
  static Rgb Get(const uint8_t* row, size_t x) {
    const uint8_t* p = row + x * (Bits / 8);
    if constexpr (Order == ORDER_BGR) return {p[2], p[1], p[0]};
    return {p[0], p[1], p[2]};
  }
};
template <uint32_t Order>
struct ColorReader<16, Order> {
  static Rgb Get(const uint8_t* row, size_t x) {
    const uint32_t word = LoadWord(row + 2 * x);
    const auto low = static_cast<int32_t>(Widen5To8(word & 31));
    const auto middle = static_cast<int32_t>(Widen5To8(word >> 5 & 31));
    const auto high = static_cast<int32_t>(Widen5To8(word >> 10 & 31));
    if constexpr (Order == ORDER_BGR) return {high, middle, low};
    return {low, middle, high};
  }
};

// One reader for every format, bound to a row: reader(x) is the colour of pixel x. Paletted rows
// need their colour table.
template <int Bits, uint32_t Order = ORDER_BGR>
struct PixelReader {
  const uint8_t* row;
  const RGBQUAD* colors;
  Rgb operator()(size_t x) const {
    if constexpr (Bits <= 8) {
      return ColorOf(colors[IndexReader<Bits>::Get(row, x)]);
    } else {
      return ColorReader<Bits, Order>::Get(row, x);
    }
  }
};

// Writes indexes of 1, 4 or 8 bits from the first pixel on. Whole bytes are stored at once; the
// last byte, when the row ends within it, keeps its other bits. Bytes are written only after all
// their pixels were given, so a row can be packed over its own wider source.
template <int Bits>
class PixelWriter {
 public:
  explicit PixelWriter(uint8_t* row) : at_(row) {}
  void Put(uint32_t value) {
    pending_ = pending_ << Bits | value;
    used_ += Bits;
    if (used_ == 8) {
      *at_++ = static_cast<uint8_t>(pending_);
      pending_ = 0;
      used_ = 0;
    }
  }
  // Merges a last partial byte. Must follow the last Put.
  void Finish() {
    if (!used_) return;
    const uint32_t keep = 0xFFu >> used_;
    *at_ = static_cast<uint8_t>((*at_ & keep) | pending_ << (8 - used_));
    used_ = 0;
  }

 private:
  uint8_t* at_;
  uint32_t pending_ = 0;
  uint32_t used_ = 0;
};
template <>
class PixelWriter<8> {
 public:
  explicit PixelWriter(uint8_t* row) : at_(row) {}
  void Put(uint32_t value) { *at_++ = static_cast<uint8_t>(value); }
  void Finish() {}

 private:
  uint8_t* at_;
};

// Replaces pixel `x` alone, for rows that are written backward or here and there.
template <int Bits>
inline void PutIndex(uint8_t* row, size_t x, uint32_t value) {
  if constexpr (Bits == 8) {
    row[x] = static_cast<uint8_t>(value);
  } else {
    constexpr size_t kPerByte = 8 / Bits;
    const auto shift = static_cast<unsigned>((~x & (kPerByte - 1)) * Bits);
    const uint32_t mask = ((1u << Bits) - 1) << shift;
    uint8_t& byte = row[x / kPerByte];
    byte = static_cast<uint8_t>((byte & ~mask) | value << shift);
  }
}

// Writes the colour of pixel `x` at 16 bits or more; the fourth byte of 32 bits becomes 0.
template <int Bits, uint32_t Order>
inline void PutColor(uint8_t* row, size_t x, Rgb c) {
  if constexpr (Order == ORDER_RGB) std::swap(c.red, c.blue);
  if constexpr (Bits == 16) {
    StoreWord(row + 2 * x,
              static_cast<uint32_t>(c.red >> 3 << 10 | c.green >> 3 << 5 | c.blue >> 3));
  } else {
    uint8_t* p = row + x * (Bits / 8);
    p[0] = static_cast<uint8_t>(c.blue);
    p[1] = static_cast<uint8_t>(c.green);
    p[2] = static_cast<uint8_t>(c.red);
    if constexpr (Bits == 32) p[3] = 0;
  }
}

template <int N>
using DepthTag = std::integral_constant<int, N>;

// Calls `use` with the depth as a type, so that loops are chosen once per row or paint. Returns
// false, without a call, for any other number.
template <class Use>
inline bool WithDepth(int32_t bits, Use&& use) {
  switch (bits) {
    case 1:
      use(DepthTag<1>{});
      return true;
    case 4:
      use(DepthTag<4>{});
      return true;
    case 8:
      use(DepthTag<8>{});
      return true;
    case 16:
      use(DepthTag<16>{});
      return true;
    case 24:
      use(DepthTag<24>{});
      return true;
    case 32:
      use(DepthTag<32>{});
      return true;
    default:
      return false;
  }
}

}  // namespace vn

#endif
