// Surfaces, DIBs and palettes of the platform's families.
#include "tests/cases/surfaces.h"

#include <cstdio>

namespace vn::cases {

Dib::Dib(Case& test, int32_t width, int32_t height, int32_t bits, bool topFirst, bool indexes)
    : info_(DibOf(width, topFirst ? -height : height, bits)),
      height_(height),
      indexes_(indexes && bits <= 8) {
  test.Note("DIB %dx%d, %d bits%s%s", width, height, bits, topFirst ? ", top first" : "",
            indexes_ ? ", indexes" : "");
  if (bits <= 8) {
    for (int i = 0; i < 1 << bits; ++i) {
      if (indexes_) {
        info_.indexes[i] = static_cast<WORD>(test.Pick(0, 255));
      } else {
        test.random.Fill(&info_.colors[i], 3);
      }
    }
  }
  pixels_.resize(DibStride(width, bits) * static_cast<uint32_t>(height));
  test.random.Fill(pixels_.data(), pixels_.size());
}

Section::Section(Case& test, int32_t width, int32_t height, int32_t bits)
    : width_(width), height_(height), bits_(bits) {
  Dib source(test, width, height, bits, test.random.Chance(2), false);
  context_ = CreateCompatibleDC(nullptr);
  void* pixels = nullptr;
  bitmap_ = CreateDIBSection(context_, source.info(), DIB_RGB_COLORS, &pixels, nullptr, 0);
  pixels_ = static_cast<uint8_t*>(pixels);
  test.FoldHandle("section", bitmap_);
  test.random.Fill(pixels_, DibStride(width, bits) * static_cast<uint32_t>(height));
  before_ = SelectObject(context_, bitmap_);
  test.FoldHandle("selected", before_);
}

Section::~Section() {
  SelectObject(context_, before_);
  DeleteObject(bitmap_);
  DeleteDC(context_);
}

void Section::Fold(Case& test) const {
  const auto bits = static_cast<uint32_t>(width_ * bits_);
  std::vector<uint8_t> row((bits + 7) / 8);
  for (int32_t y = 0; y < height_; ++y) {
    const uint8_t* from = pixels_ + DibStride(width_, bits_) * static_cast<uint32_t>(y);
    row.assign(from, from + row.size());
    if (bits % 8) row.back() &= static_cast<uint8_t>(0xFF00 >> bits % 8);
    char name[24];
    std::snprintf(name, sizeof name, "row %d", y);
    test.FoldBytes(name, row.data(), row.size());
  }
}

void RandomClip(Case& test, const Section& target) {
  if (test.random.Chance(3)) return;
  HRGN clip = CreateRectRgn(0, 0, 0, 0);
  for (int32_t i = test.Pick(1, 3); i > 0; --i) {
    const int32_t left = test.Pick(-5, target.width()), top = test.Pick(-5, target.height());
    const int32_t right = test.Pick(-5, 50), bottom = test.Pick(-5, 30);
    HRGN part = CreateRectRgn(left, top, right, bottom);
    test.Fold("CombineRgn", CombineRgn(clip, clip, part, test.OneOf({RGN_OR, RGN_XOR})));
    DeleteObject(part);
  }
  test.Fold("SelectClipRgn", SelectClipRgn(target.context(), clip));
  DeleteObject(clip);
}

RandomPaletteScope::RandomPaletteScope(Case& test, HDC context, int32_t count) : context_(context) {
  struct {
    WORD version, count;
    PALETTEENTRY entries[256];
  } log = {0x300, static_cast<WORD>(count), {}};
  for (int i = 0; i < log.count; ++i)
    test.random.Fill(&log.entries[i], 3);
  palette_ = CreatePalette(reinterpret_cast<const LOGPALETTE*>(&log));
  before_ = SelectPalette(context_, palette_, FALSE);
  test.FoldHandle("palette", palette_);
}

RandomPaletteScope::~RandomPaletteScope() {
  SelectPalette(context_, before_, FALSE);
  DeleteObject(palette_);
}

}  // namespace vn::cases
