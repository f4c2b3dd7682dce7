#include "tests/cases/foreign_dib.h"

#include <cstring>

namespace vn::cases {
namespace {

constexpr uint32_t kMasks16[][3] = {{0xF800, 0x07E0, 0x001F},
                                    {0x7C00, 0x03E0, 0x001F},
                                    {0x001F, 0x07E0, 0xF800},
                                    {0xF00, 0xF0, 0xF}};
constexpr uint32_t kMasks32[][3] = {{0xFF0000, 0xFF00, 0xFF},
                                    {0xFF, 0xFF00, 0xFF0000},
                                    {0xFF000000, 0xFF0000, 0xFF00},
                                    {0x3FF00000, 0xFFC00, 0x3FF}};

}  // namespace

ForeignDib::ForeignDib(Case& test) : width_(test.Pick(1, 40)), height_(test.Pick(1, 20)) {
  DrawKind(test);
  PutHeader(test);
  PutTable(test);
  pixelOffset_ = bytes_.size();
  if (compression_ == kRuns8 || compression_ == kRuns4) {
    PutRuns(test);
    const auto codes = static_cast<uint32_t>(bytes_.size() - pixelOffset_);
    std::memcpy(bytes_.data() + 20, &codes, sizeof codes);  // biSizeImage
  } else {
    const auto stride = static_cast<size_t>((width_ * bits_ + 31) / 32 * 4);
    bytes_.resize(pixelOffset_ + stride * static_cast<size_t>(height_));
    test.random.Fill(bytes_.data() + pixelOffset_, bytes_.size() - pixelOffset_);
  }
  test.Note("DIB %dx%d%s, %d bits, header %u, compression %u, %u colours", width_, height_,
            topDown_ ? " top first" : "", bits_, headerBytes_, compression_, colorsUsed_);
}

HGLOBAL ForeignDib::NewBlock(WORD planes) const {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes_.size());
  auto* const at = static_cast<uint8_t*>(GlobalLock(block));
  std::memcpy(at, bytes_.data(), bytes_.size());
  std::memcpy(at + PlanesAt(), &planes, sizeof planes);
  GlobalUnlock(block);
  return block;
}

void ForeignDib::DrawKind(Case& test) {
  headerBytes_ = test.OneOf({12u, 40u, 40u, 40u, 56u, 64u, 108u, 124u});
  if (core()) {
    bits_ = test.OneOf({1, 4, 8, 24});
    return;
  }
  bits_ = test.OneOf({1, 4, 8, 16, 24, 32});
  if (test.random.Chance(3)) {
    compression_ = bits_ == 8 ? kRuns8 : bits_ == 4 ? kRuns4 : bits_ % 16 == 0 ? kFields : 0;
  }
  topDown_ = (compression_ == 0 || compression_ == kFields) && test.random.Chance(4);
  if (bits_ > 8) {
    if (compression_ == 0 && test.random.Chance(3)) colorsUsed_ = test.OneOf({1u, 7u, 256u});
  } else if (!test.random.Chance(3)) {
    const int32_t full = 1 << bits_;
    colorsUsed_ =
        static_cast<uint32_t>(test.random.Chance(4) ? full + test.Pick(0, 3) : test.Pick(1, full));
  }
}

void ForeignDib::PutHeader(Case& test) {
  Put(headerBytes_, 4);
  const int word = core() ? 2 : 4;
  Put(static_cast<uint32_t>(width_), word);
  Put(static_cast<uint32_t>(topDown_ ? -height_ : height_), word);
  Put(1, 2);
  Put(static_cast<uint32_t>(bits_), 2);
  if (core()) return;
  Put(compression_, 4);
  Put(0, 4);
  for (int i = 0; i < 2; ++i)
    Put(test.OneOf({0u, 2835u, 5906u, 11811u}), 4);
  Put(colorsUsed_, 4);
  Put(0, 4);
  if (compression_ == kFields) {
    const auto& masks = (bits_ == 16 ? kMasks16 : kMasks32)[test.Pick(0, 3)];
    for (const uint32_t mask : masks)
      Put(mask, 4);
  }
  while (bytes_.size() < headerBytes_)
    Put(static_cast<uint32_t>(test.Pick(0, 255)), 1);
}

void ForeignDib::PutTable(Case& test) {
  const uint32_t full = bits_ <= 8 ? 1u << bits_ : 0;
  const uint32_t count = colorsUsed_ ? colorsUsed_ : full;
  for (uint32_t i = 0; i < count; ++i) {
    Put(static_cast<uint32_t>(test.random.Next()), 3);
    if (!core()) Put(static_cast<uint32_t>(test.Pick(0, 255)), 1);
  }
}

// Runs, pixels as they stand, moves and ends of lines, some of them beyond the picture's edges. The
// half of a byte that an odd count leaves over is 0: Wine draws that pixel too.
void ForeignDib::PutRuns(Case& test) {
  for (int32_t left = height_ * 3; left > 0; --left) {
    const int32_t kind = test.Pick(0, 9);
    if (kind < 4) {
      const int32_t count = test.Pick(1, width_ + 2);
      const int32_t value = test.Pick(0, 255);
      Put(static_cast<uint32_t>(count), 1);
      Put(static_cast<uint32_t>(bits_ == 4 && count % 2 ? value & 0xF0 : value), 1);
    } else if (kind < 6) {
      const int32_t count = test.Pick(3, 12);
      Put(0, 1);
      Put(static_cast<uint32_t>(count), 1);
      const int32_t bytes = bits_ == 8 ? count : (count + 1) / 2;
      for (int32_t i = 0; i < (bytes + 1) / 2 * 2; ++i)
        Put(static_cast<uint32_t>(test.Pick(0, 255)), 1);
      if (bits_ == 4 && count % 2) bytes_[bytes_.size() - (bytes % 2 ? 2 : 1)] &= 0xF0;
    } else if (kind == 6) {
      Put(0x200, 2);
      Put(static_cast<uint32_t>(test.Pick(0, width_ / 2)), 1);
      Put(static_cast<uint32_t>(test.Pick(0, 2)), 1);
    } else {
      Put(0, 2);
    }
  }
  Put(0x100, 2);
}

void ForeignDib::Put(uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i, value >>= 8)
    bytes_.push_back(static_cast<uint8_t>(value));
}

}  // namespace vn::cases
