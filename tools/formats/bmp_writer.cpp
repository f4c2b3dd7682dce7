#include "tools/formats/bmp_writer.h"

#include <algorithm>
#include <cstring>

#include <vncore/vncore.h>
#include "tools/formats/bmp_header.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

constexpr size_t kBandBytes = 65536;

int32_t DotsPerMetre(int32_t perInch) {
  const int64_t rounded = (int64_t{perInch} * 10000 + 127) / 254;
  return static_cast<int32_t>(std::clamp<int64_t>(rounded, 0, INT32_MAX));
}

}  // namespace

BmpWriter::BmpWriter(std::unique_ptr<OutputFile> file, const PictureInfo& info)
    : file_(std::move(file)),
      usedBits_(int64_t{info.width} * info.bits),
      stride_(StrideOf(static_cast<uint32_t>(info.width), static_cast<uint32_t>(info.bits))),
      headBytes_(kBmpFileHeaderBytes + kBmpInfoHeaderBytes +
                 static_cast<uint32_t>(info.colors.size() * sizeof(RGBQUAD))),
      band_(std::max<size_t>(kBandBytes / stride_, 1) * stride_),
      linesLeft_(info.height) {
  WriteHead(info);
}

void BmpWriter::WriteHead(const PictureInfo& info) {
  const int64_t image = int64_t{stride_} * info.height;
  if (headBytes_ + image > UINT32_MAX) {
    throw Failure("cannot write " + file_->Path() + ": a BMP file holds at most 4 GiB");
  }
  const uint32_t start[] = {static_cast<uint32_t>(headBytes_ + image), 0, headBytes_};
  BITMAPINFOHEADER header{};
  header.biSize = kBmpInfoHeaderBytes;
  header.biWidth = info.width;
  header.biHeight = info.height;
  header.biPlanes = 1;
  header.biBitCount = static_cast<WORD>(info.bits);
  header.biSizeImage = static_cast<DWORD>(image);
  header.biXPelsPerMeter = DotsPerMetre(info.xDotsPerInch);
  header.biYPelsPerMeter = DotsPerMetre(info.yDotsPerInch);
  Write("BM", 2);
  Write(start, sizeof start);
  Write(&header, sizeof header);
  for (RGBQUAD color : info.colors) {
    color.rgbReserved = 0;
    Write(&color, sizeof color);
  }
}

void BmpWriter::WriteRow(const uint8_t* row) {
  uint8_t* const line = band_.data() + band_.size() - (bandLines_ + 1) * stride_;
  const auto whole = static_cast<size_t>(usedBits_ / 8);
  std::memcpy(line, row, whole);
  // What lies behind the last pixel is nothing of the picture's.
  std::memset(line + whole, 0, stride_ - whole);
  if (usedBits_ % 8) line[whole] = static_cast<uint8_t>(row[whole] & 0xFF00u >> usedBits_ % 8);
  if (++bandLines_ * stride_ == band_.size()) Flush();
}

void BmpWriter::Flush() {
  if (bandLines_ == 0) return;
  linesLeft_ -= static_cast<int64_t>(bandLines_);
  const size_t bytes = bandLines_ * stride_;
  if (file_->Seek(headBytes_ + linesLeft_ * stride_, SEEK_SET) < 0) Fail();
  Write(band_.data() + band_.size() - bytes, bytes);
  bandLines_ = 0;
}

void BmpWriter::Finish() {
  Flush();
  file_->Commit();
}

void BmpWriter::Write(const void* bytes, size_t count) {
  if (!file_->Write(bytes, count)) Fail();
}

void BmpWriter::Fail() const {
  throw Failure("cannot write " + file_->Path() + ": " + file_->ErrorText());
}

}  // namespace vn::tool
