#include "tools/formats/bmp_runs.h"

#include <algorithm>
#include <cstring>

#include "kernel/pixel_format.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

constexpr size_t kBufferBytes = 65536;
enum Command : uint8_t { kLineEnd = 0, kPictureEnd = 1, kMove = 2 };

}  // namespace

BmpRuns::BmpRuns(InputFile& file, int32_t width, uint32_t bits)
    : file_(file), bits_(bits), line_(static_cast<size_t>(width)), buffer_(kBufferBytes) {}

uint8_t BmpRuns::Byte() {
  if (used_ == filled_) {
    filled_ = file_.ReadSome(buffer_.data(), buffer_.size());
    used_ = 0;
    if (filled_ == 0) throw Failure(file_.Path() + ": " + file_.ErrorText());
  }
  return buffer_[used_++];
}

void BmpRuns::Repeat(uint32_t count) {
  const uint8_t value = Byte();
  const uint8_t first = bits_ == 4 ? value >> 4 : value, second = bits_ == 4 ? value & 15 : value;
  for (uint32_t i = 0; i < count; ++i)
    Put(i % 2 ? second : first);
}

void BmpRuns::Copy(uint32_t count) {
  const uint32_t bytes = bits_ == 4 ? (count + 1) / 2 : count;
  for (uint32_t i = 0; i < bytes; ++i) {
    const uint8_t value = Byte();
    if (bits_ == 8) {
      Put(value);
      continue;
    }
    Put(value >> 4);
    if (2 * i + 1 < count) Put(value & 15);
  }
  if (bytes % 2) Byte();
}

bool BmpRuns::Move() {
  const uint8_t right = Byte(), up = Byte();
  x_ = std::min(x_ + right, line_.size());
  if (up == 0) return false;
  blank_ = up - 1u;
  return true;
}

void BmpRuns::DecodeLine() {
  for (;;) {
    if (const uint8_t count = Byte()) {
      Repeat(count);
      continue;
    }
    switch (const uint8_t command = Byte()) {
      case kLineEnd:
        x_ = 0;
        return;
      case kPictureEnd:
        ended_ = true;
        return;
      case kMove:
        if (Move()) return;
        break;
      default:
        Copy(command);
    }
  }
}

void BmpRuns::Store(uint8_t* row) const {
  if (bits_ == 8) {
    std::memcpy(row, line_.data(), line_.size());
    return;
  }
  PixelWriter<4> writer(row);
  for (const uint8_t index : line_)
    writer.Put(index);
  writer.Finish();
}

void BmpRuns::Next(uint8_t* row) {
  std::fill(line_.begin(), line_.end(), uint8_t{0});
  if (blank_ > 0) {
    --blank_;
  } else if (!ended_) {
    DecodeLine();
  }
  Store(row);
}

}  // namespace vn::tool
