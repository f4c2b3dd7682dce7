#include "tools/formats/bmp_reader.h"

#include <cstring>

#include "tools/formats/samples.h"
#include "tools/terminal/failure.h"

namespace vn::tool {

BmpReader::BmpReader(std::unique_ptr<InputFile> file, const ReadOptions& options)
    : file_(std::move(file)), header_(*file_), background_(options.background) {
  if (header_.runs) {
    runs_ = std::make_unique<BmpRuns>(*file_, header_.info.width, header_.bits);
  } else if (header_.bits == 16 || header_.bits == 32) {
    deep_.resize((static_cast<size_t>(header_.info.width) * header_.bits + 31) / 32 * 4);
  }
}

void BmpReader::ReadRow(uint8_t* row) {
  ++delivered_;
  if (runs_) return runs_->Next(row);
  const auto width = static_cast<uint32_t>(header_.info.width);
  uint8_t* const to = deep_.empty() ? row : deep_.data();
  const size_t bytes = deep_.empty() ? StrideOf(width, header_.bits) : deep_.size();
  if (!file_->Read(to, bytes)) throw Failure(file_->Path() + ": " + file_->ErrorText());
  if (!deep_.empty()) ShowFields(row);
}

void BmpReader::ShowFields(uint8_t* row) const {
  const size_t bytes = header_.bits / 8;
  const auto width = static_cast<size_t>(header_.info.width);
  for (size_t x = 0; x < width; ++x) {
    uint32_t pixel = 0;
    std::memcpy(&pixel, deep_.data() + x * bytes, bytes);
    Rgb color{static_cast<int32_t>(header_.red.Of(pixel)),
              static_cast<int32_t>(header_.green.Of(pixel)),
              static_cast<int32_t>(header_.blue.Of(pixel))};
    if (header_.opacity.width) {
      const uint32_t alpha = header_.opacity.Of(pixel);
      const auto lay = [alpha](int32_t over, int32_t under) -> int32_t {
        return Lay(static_cast<uint32_t>(over), alpha, under);
      };
      color = {lay(color.red, background_.red), lay(color.green, background_.green),
               lay(color.blue, background_.blue)};
    }
    PutColor<24, ORDER_BGR>(row, x, color);
  }
}

}  // namespace vn::tool
