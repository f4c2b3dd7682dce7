// A row laid into a wider row of one colour.
#include "geometry/shear_row.h"

#include <cstring>

#include "color/color_match.h"
#include "kernel/pixel_format.h"

namespace vn {
namespace {

// Copies `count` bits of `source` to bit `at` of `target`.
void InsertBits(const uint8_t* source, size_t count, uint8_t* target, size_t at) {
  if (count == 0) return;
  target += at / 8;
  const auto shift = static_cast<unsigned>(at % 8);
  const size_t end = shift + count;   // the bit behind the last one
  const size_t last = (end - 1) / 8;  // the byte of the last bit
  const size_t sourceBytes = (count + 7) / 8;
  const uint8_t keepFirst = static_cast<uint8_t>(~(0xFFu >> shift)), first = target[0];
  const uint8_t keepLast = static_cast<uint8_t>(0xFFu >> ((end - 1) % 8 + 1)),
                behind = target[last];
  if (shift == 0) {
    std::memcpy(target, source, sourceBytes);
  } else {
    target[0] = static_cast<uint8_t>(source[0] >> shift);
    for (size_t i = 1; i < sourceBytes; ++i)
      target[i] = static_cast<uint8_t>(source[i - 1] << (8 - shift) | source[i] >> shift);
    if (last == sourceBytes) {
      target[last] = static_cast<uint8_t>(source[last - 1] << (8 - shift));
    }
  }
  target[0] = static_cast<uint8_t>((target[0] & ~keepFirst) | (first & keepFirst));
  target[last] = static_cast<uint8_t>((target[last] & ~keepLast) | (behind & keepLast));
}

}  // namespace

void InsertPixels(int32_t bits, const uint8_t* source, uint32_t width, uint8_t* target,
                  uint32_t offset) {
  if (bits < 8) {
    const auto unit = static_cast<size_t>(bits);
    InsertBits(source, width * unit, target, offset * unit);
  } else {
    const auto unit = static_cast<size_t>(bits) / 8;
    std::memcpy(target + offset * unit, source, width * unit);
  }
}

ShearRow::ShearRow(BitmapHandle* target, COLORREF fillColor, uint32_t width)
    : bits_(target->BitsPerPixel),
      width_(width),
      stride_(target->BytesPerLine),
      fill_(stride_, Fill::kZero) {
  if (!fill_) return;
  const auto pixels = static_cast<uint32_t>(target->Width);
  FillRowColor(target, fillColor, fill_.data(), pixels);
  // What lies behind the last pixel in its byte is 0, as the rest of the row's end.
  const auto used = size_t{pixels} * static_cast<uint32_t>(bits_);
  if (used % 8) fill_[used / 8] &= static_cast<uint8_t>(~(0xFFu >> used % 8));
}

void ShearRow::WriteFill(uint8_t* row) const { std::memcpy(row, fill_.data(), stride_); }

void ShearRow::Write(const uint8_t* source, uint32_t offset, uint8_t* row) const {
  if (bits_ < 8) {
    WriteFill(row);
  } else {
    const auto unit = static_cast<size_t>(bits_) / 8;
    const size_t left = offset * unit, right = left + width_ * unit;
    std::memcpy(row, fill_.data(), left);
    std::memcpy(row + right, fill_.data() + right, stride_ - right);
  }
  InsertPixels(bits_, source, width_, row, offset);
}

}  // namespace vn
