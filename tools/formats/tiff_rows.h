// The rows of a TIFF file in their order, however the file is laid out: strips or tiles, samples
// side by side or in planes. At most a band of rows is held: a row, a part of a strip, or a part of
// a row of tiles.
#ifndef VNCORE_TOOLS_TIFF_ROWS_H
#define VNCORE_TOOLS_TIFF_ROWS_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "tools/formats/tiff_input.h"

namespace vn::tool {

struct TiffShape {
  uint32_t width, height;
  uint16_t bits;     // of a sample
  uint16_t samples;  // of a pixel
  bool planes;       // each sample in a plane of its own
  bool tiled;
};

class TiffRows {
 public:
  TiffRows(const TiffRows&) = delete;
  TiffRows& operator=(const TiffRows&) = delete;
  virtual ~TiffRows() = default;

  // The next row, which stays until the next call. Throws Failure.
  const uint8_t* Next();

 protected:
  // `blockRows`: rows of a strip or tile, beyond which no band goes.
  TiffRows(const TiffInput& input, const TiffShape& shape, uint64_t rowBytes, uint32_t blockRows);

  const TiffInput& input_;
  const TiffShape shape_;
  const size_t rowBytes_;
  const uint32_t blockRows_;

 private:
  // Reads `count` rows from `first` on into `band`.
  virtual void Load(uint32_t first, uint32_t count, uint8_t* band) = 0;

  uint32_t row_ = 0;
  uint32_t bandFirst_ = 0, bandCount_ = 0;
  uint32_t bandRows_;
  std::vector<uint32_t> band_;
};

// Rows as they stand in the file, samples side by side. Planes have 8 or 16 bits a sample.
std::unique_ptr<TiffRows> MakePlainRows(const TiffInput& input, const TiffShape& shape);
// Rows of 32-bit pixels for TIFFGetR and its like, colours multiplied by their alpha, of whatever
// libtiff can convert.
std::unique_ptr<TiffRows> MakeRgbaRows(const TiffInput& input, const TiffShape& shape);

}  // namespace vn::tool

#endif
