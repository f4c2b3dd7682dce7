// The pixels of a PNG file as its IDAT chunks hold them: filtered and deflated.
//
// Pictures differ: noise of a sensor leaves no repetitions to look for, drawings and screens are full
// of them. So both ways are tried on samples of the rows, and what follows goes by the one that pays.
#ifndef VNCORE_TOOLS_PNG_DATA_H
#define VNCORE_TOOLS_PNG_DATA_H

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace vn::tool {

// How zlib is to work.
struct DeflateWay {
  int level, strategy;
  bool operator==(const DeflateWay&) const = default;
};

class PngData {
 public:
  // Takes the bytes of a chunk.
  class Chunks {
   public:
    virtual void WriteData(const uint8_t* bytes, size_t count) = 0;

   protected:
    ~Chunks() = default;
  };

  // Rows are 24-bit pixels, blue first, or `rowBytes` bytes of indexes or grays, which are not
  // filtered. `level` is zlib's for all rows, 0 to 9; without one it is chosen. `chunks` must outlive
  // this.
  PngData(size_t rowBytes, bool colors, std::optional<int32_t> level, Chunks* chunks);
  PngData(const PngData&) = delete;
  PngData& operator=(const PngData&) = delete;
  ~PngData() { deflateEnd(&stream_); }

  void WriteRow(const uint8_t* row);
  // Behind the last row.
  void Finish() { Deflate(Z_FINISH); }

 private:
  void TakeColors(const uint8_t* row);
  void AppendFiltered();
  void ChooseWay();
  void TakeWay(const DeflateWay& way);
  void Deflate(int flush);
  void EmitChunk();

  const size_t rowBytes_;
  const bool colors_;
  Chunks* const chunks_;
  z_stream stream_{};
  DeflateWay way_;
  bool choose_;
  std::vector<uint8_t> row_, above_;  // red first, behind a black pixel
  std::vector<uint8_t> group_;        // rows as they are deflated, each behind its filter's number
  int32_t groups_ = 0;                // until the next sample is taken
  int32_t apart_ = 1;                 // groups between the last sample and that one
  std::vector<uint8_t> chunk_;
};

}  // namespace vn::tool

#endif
