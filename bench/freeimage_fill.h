// FreeImage's fill of a whole image, without its header, which declares Win32's types for itself.
#ifndef VNCORE_BENCH_FREEIMAGE_FILL_H
#define VNCORE_BENCH_FREEIMAGE_FILL_H

#include <cstdint>

namespace vn::bench {

class FreeImageFill {
 public:
  FreeImageFill(int32_t width, int32_t height, int32_t bits);
  FreeImageFill(const FreeImageFill&) = delete;
  FreeImageFill& operator=(const FreeImageFill&) = delete;
  ~FreeImageFill();

  // Red in the low byte; at 8 bits its index is red.
  void Fill(uint32_t color);
  const uint8_t* Row(int32_t row) const;

 private:
  void* image_;
};

}  // namespace vn::bench

#endif
