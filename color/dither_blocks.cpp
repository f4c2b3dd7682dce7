// Reading of source pixels and writing of indexes, per format.
#include "color/dither_blocks.h"

#include <cstring>

#include "color/swizzle_24_32.h"
#include "kernel/pixel_format.h"

namespace vn {
namespace {

template <int Bits>
void ReadIndexed(const uint8_t* source, size_t count, const RGBQUAD* colors, RGBQUAD* pixels) {
  for (size_t x = 0; x < count; ++x)
    pixels[x] = colors[IndexReader<Bits>::Get(source, x)];
}

template <uint32_t Order>
void ReadWords(const uint8_t* source, size_t count, const RGBQUAD*, RGBQUAD* pixels) {
  for (size_t x = 0; x < count; ++x) {
    const Rgb c = ColorReader<16, Order>::Get(source, x);
    pixels[x] = {static_cast<BYTE>(c.blue), static_cast<BYTE>(c.green), static_cast<BYTE>(c.red),
                 0};
  }
}

template <int Bits, uint32_t Order>
void ReadBytes(const uint8_t* source, size_t count, const RGBQUAD*, RGBQUAD* pixels) {
  auto* bytes = reinterpret_cast<uint8_t*>(pixels);
  std::memcpy(bytes, source, count * (Bits / 8));
  if constexpr (Bits == 24) {
    Widen24To32(bytes, count, Order != ORDER_BGR);
  } else if (Order != ORDER_BGR) {
    SwapRedBlue32(bytes, count);
  }
}

template <int Bits>
void WriteIndexes(const uint8_t* indexes, size_t count, uint8_t* target) {
  if constexpr (Bits == 8) {
    std::memcpy(target, indexes, count);
  } else {
    PixelWriter<Bits> writer(target);
    for (size_t x = 0; x < count; ++x)
      writer.Put(indexes[x] & ((1u << Bits) - 1));
    writer.Finish();
  }
}

}  // namespace

ReadPixelsProc SelectReadPixels(int32_t bits, uint32_t order) {
  const bool blueFirst = order == ORDER_BGR;
  switch (bits) {
    case 1:
      return ReadIndexed<1>;
    case 4:
      return ReadIndexed<4>;
    case 8:
      return ReadIndexed<8>;
    case 16:
      return blueFirst ? ReadWords<ORDER_BGR> : ReadWords<ORDER_RGB>;
    case 24:
      return blueFirst ? ReadBytes<24, ORDER_BGR> : ReadBytes<24, ORDER_RGB>;
    default:
      return blueFirst ? ReadBytes<32, ORDER_BGR> : ReadBytes<32, ORDER_RGB>;
  }
}

WriteIndexesProc SelectWriteIndexes(int32_t bits) {
  switch (bits) {
    case 1:
      return WriteIndexes<1>;
    case 4:
      return WriteIndexes<4>;
    default:
      return WriteIndexes<8>;
  }
}

}  // namespace vn
