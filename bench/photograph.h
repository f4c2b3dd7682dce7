// The 12-megapixel picture that colour reduction is measured on.
#ifndef VNCORE_BENCH_PHOTOGRAPH_H
#define VNCORE_BENCH_PHOTOGRAPH_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vn::bench {

// 24-bit pixels without gaps between rows, the bottom row first, blue first.
struct Photograph {
  uint32_t width = 0, height = 0;
  std::vector<uint8_t> pixels;

  size_t RowBytes() const { return size_t{width} * 3; }
  double Pixels() const { return double{1} * width * height; }
  // Writes it as a binary PPM file; false when that failed.
  bool WritePpm(const std::string& path) const;
};

// The binary PPM file that the environment variable VNCORE_BENCH_PHOTO names, or else a made one of
// 4000 by 3000: sky and ground with slow changes of light, shaded balls, and sensor noise. Made or
// read once; a file that cannot be read ends the program with a message.
const Photograph& ThePhotograph();

}  // namespace vn::bench

#endif
