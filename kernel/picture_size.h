// The sizes of pictures that can have pixels.
#ifndef VNCORE_KERNEL_PICTURE_SIZE_H
#define VNCORE_KERNEL_PICTURE_SIZE_H

#include <cstdint>

namespace vn {

// The sizes in a record wrap in 32 bits. A row loop over such a record would leave its storage, so
// one that does not pass here never gets any: width and height fit a signed word, the bits of a row
// and the bytes of all rows an unsigned one.
constexpr bool SizeFits(int32_t width, int32_t height, int32_t bitsPerPixel) {
  if (width < 0 || height < 0 || bitsPerPixel < 0) return false;
  const uint64_t rowBits = static_cast<uint64_t>(width) * static_cast<uint32_t>(bitsPerPixel);
  if (rowBits > UINT32_MAX - 31) return false;
  return (rowBits + 31) / 32 * 4 * static_cast<uint32_t>(height) <= UINT32_MAX;
}

}  // namespace vn

#endif
