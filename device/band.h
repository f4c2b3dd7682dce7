// Bands: finished rows gathered from the lowest up, as the device expects them, and handed over
// with one call of at most 64 KB.
#ifndef VNCORE_DEVICE_BAND_H
#define VNCORE_DEVICE_BAND_H

#include <cstring>

#include "device/band_table.h"
#include "device/paint_scratch.h"

namespace vn {

class Band {
 public:
  // For `rows` rows in all of `width` pixels at `bits` per pixel, of which the device skips the
  // first `skip`. Their left edge comes to device column `x`. Test it: false when memory failed.
  struct Form {
    int32_t bits;
    int32_t x;
    int32_t width;
    int32_t skip;
    uint32_t rows;
  };
  Band(const PaintJob& job, const Form& form, PaintScratch* scratch);
  explicit operator bool() const { return buffer_; }

  // What the rows are, before the first of them.
  void Describe(const BandTable& table);

  // Where the next row is to be written.
  uint8_t* Row() const { return next_; }
  uint32_t Stride() const { return stride_; }
  // Where the row behind the next `n` is to be written, and how many rows fit in front of a sending.
  uint8_t* RowAt(uint32_t n) const { return next_ + size_t{n} * stride_; }
  uint32_t Room() const { return capacity_ - count_; }
  // Writes the row before once more: it outlives its band.
  void RepeatRow() {
    if (next_ != last_) std::memcpy(next_, last_, stride_);
  }

  // The row at Row() stands complete and belongs to device row `y`, one above the row before it. A
  // full band goes out.
  void Commit(int32_t y) { CommitRows(1, y); }
  // The same of `rows` rows, at most Room(), of which the last belongs to device row `y`.
  void CommitRows(uint32_t rows, int32_t y);
  // Sends rows that lie elsewhere at Stride() from each other, at most Room() of them, between two
  // bands: the first one is the lowest, the last one belongs to device row `y`.
  void SendRows(const uint8_t* rows, uint32_t count, int32_t y);
  // Sends what remains.
  void Finish() {
    if (count_) SendBand();
  }

 private:
  void SendBand();

  const PaintJob& job_;
  Form form_;
  BitmapInfo256* info_ = nullptr;
  uint32_t usage_ = DIB_RGB_COLORS;
  uint32_t stride_ = 0;
  uint32_t capacity_ = 0;
  uint8_t* buffer_;
  uint8_t* next_ = nullptr;
  const uint8_t* last_ = nullptr;
  uint32_t count_ = 0;
  int32_t y_ = 0;
};

}  // namespace vn

#endif
