#include "device/band.h"

#include <algorithm>

namespace vn {
namespace {

constexpr uint32_t kBandBytes = 65536;

}  // namespace

Band::Band(const PaintJob& job, const Form& form, PaintScratch* scratch) : job_(job), form_(form) {
  const uint64_t stride =
      (static_cast<uint64_t>(form.bits) * static_cast<uint64_t>(form.width) + 31) / 32 * 4;
  // A row above the limit goes out alone.
  const uint64_t rows = std::min<uint64_t>(std::max<uint64_t>(kBandBytes / stride, 1), form.rows);
  // One row more than is sent: loops that write whole words may run over a row's end.
  buffer_ = scratch->Zeroed<uint8_t>(PaintSlot::kBand, (rows + 1) * stride);
  if (!buffer_) return;
  stride_ = static_cast<uint32_t>(stride);
  capacity_ = static_cast<uint32_t>(rows);
  next_ = buffer_;
  last_ = next_;
}

void Band::Describe(const BandTable& table) {
  info_ = &table.info();
  usage_ = table.usage();
  info_->header.biWidth = form_.width;
  info_->header.biBitCount = static_cast<WORD>(form_.bits);
}

void Band::CommitRows(uint32_t rows, int32_t y) {
  next_ += size_t{rows} * stride_;
  last_ = next_ - stride_;
  y_ = y;
  count_ += rows;
  if (count_ == capacity_) SendBand();
}

void Band::SendRows(const uint8_t* rows, uint32_t count, int32_t y) {
  info_->header.biHeight = static_cast<LONG>(count);
  info_->header.biSizeImage = count * stride_;
  const int width = form_.width - form_.skip;
  const int height = static_cast<int>(count);
  StretchDIBits(job_.hDC, form_.x, y, width, height, form_.skip, 0, width, height, rows,
                info_->Info(), usage_, job_.rasterOp);
}

void Band::SendBand() {
  SendRows(buffer_, count_, y_);
  count_ = 0;
  next_ = buffer_;
}

}  // namespace vn
