#include "platform/headless/drawing/dib_runs.h"

#include <algorithm>

namespace headless {
namespace {

class RunDecoder {
 public:
  RunDecoder(const DibFormat& format, const uint8_t* codes, size_t bytes)
      : format_(format),
        at_(codes),
        end_(codes + bytes),
        bits_(format.layout.bits),
        y_(format.height - 1) {
    decoded_.bits.resize(static_cast<size_t>(format.bytes()));
  }

  DecodedRuns Decode() {
    while (end_ - at_ >= 2 && Step()) {
    }
    EndRun();
    std::reverse(decoded_.reached.begin(), decoded_.reached.end());
    return std::move(decoded_);
  }

 private:
  // One code; false behind the last.
  bool Step() {
    const uint8_t count = *at_++, data = *at_++;
    if (count) {
      for (uint32_t i = 0; i < count; ++i)
        Put(bits_ == 8 ? data : i % 2 ? data & 15u : data >> 4u);
      return true;
    }
    if (data > 2) return Copy(data);
    EndRun();
    if (data == 1) return false;
    if (data == 0) {
      x_ = 0;
      --y_;
    } else {
      if (end_ - at_ < 2) return false;
      x_ = std::min(x_ + at_[0], format_.width);
      y_ -= at_[1];
      at_ += 2;
    }
    first_ = x_;
    return y_ >= 0;
  }

  bool Copy(uint32_t count) {
    const uint32_t used = bits_ == 8 ? count : (count + 1) / 2;
    const uint32_t padded = (used + 1) / 2 * 2;
    if (static_cast<size_t>(end_ - at_) < padded) return false;
    for (uint32_t i = 0; i < count; ++i)
      Put(bits_ == 8 ? at_[i] : i % 2 ? at_[i / 2] & 15u : at_[i / 2] >> 4u);
    at_ += padded;
    return true;
  }

  void Put(uint32_t index) {
    if (x_ >= format_.width) return;
    uint8_t* row =
        decoded_.bits.data() + static_cast<size_t>(format_.height - 1 - y_) * format_.stride;
    if (bits_ == 8) {
      row[x_] = static_cast<uint8_t>(index);
    } else {
      uint8_t& byte = row[x_ / 2];
      byte = static_cast<uint8_t>(x_ % 2 ? (byte & 0xF0u) | index : (byte & 0x0Fu) | index << 4);
    }
    ++x_;
  }

  void EndRun() {
    if (y_ >= 0 && x_ > first_) decoded_.reached.push_back({first_, y_, x_, y_ + 1});
    first_ = x_;
  }

  const DibFormat& format_;
  const uint8_t* at_;
  const uint8_t* const end_;
  const uint32_t bits_;
  int32_t x_ = 0, first_ = 0, y_;  // y counts from the top line down
  DecodedRuns decoded_;
};

}  // namespace

DecodedRuns DecodeRuns(const DibFormat& format, const uint8_t* codes, size_t bytes) {
  return RunDecoder(format, codes, bytes).Decode();
}

}  // namespace headless
