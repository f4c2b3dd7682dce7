// The platform: DIB sections of all depths, what is read from them and copied between them.
#include "tests/cases/bitmaps.h"
#include "tests/cases/surfaces.h"

namespace vn::cases {

namespace {

void FoldBitmapObject(Case& test, HBITMAP bitmap) {
  BITMAP object = {};
  test.Fold("GetObjectA", GetObjectA(bitmap, sizeof object, &object) != 0);
  test.Fold("bmWidth", object.bmWidth);
  test.Fold("bmHeight", object.bmHeight);
  test.Fold("bmWidthBytes", object.bmWidthBytes);
  test.Fold("bmPlanes", object.bmPlanes);
  test.Fold("bmBitsPixel", object.bmBitsPixel);
  test.FoldHandle("bmBits", object.bmBits);
}

void FoldColorTable(Case& test, HDC context) {
  RGBQUAD colors[256] = {};
  const UINT count = GetDIBColorTable(context, 0, 256, colors);
  test.Fold("GetDIBColorTable", count);
  test.FoldBytes("colors", colors, count * sizeof colors[0]);
}

// Reads some lines back in the section's own depth or a true-colour one.
void ReadLines(Case& test, const Section& section) {
  const int32_t height = test.random.Chance(2) ? -section.height() : section.height();
  DibInfo info = DibOf(section.width(), height, test.OneOf({section.bits(), 24, 32}));
  const int32_t first = test.Pick(0, section.height() - 1);
  const int32_t lines = test.Pick(1, section.height() - first);
  const uint32_t stride = DibStride(section.width(), info.header.biBitCount);
  std::vector<uint8_t> pixels(stride * static_cast<uint32_t>(section.height()), 0xA5);
  test.Note("lines %d to %d%s, %d bits", first, first + lines, height < 0 ? ", top first" : "",
            info.header.biBitCount);
  const int count = GetDIBits(section.context(), section.bitmap(), static_cast<UINT>(first),
                              static_cast<UINT>(lines), pixels.data(), info.get(), DIB_RGB_COLORS);
  test.Fold("GetDIBits", count);
  const uint32_t used = static_cast<uint32_t>(section.width() * info.header.biBitCount) / 8;
  for (int32_t y = 0; y < count; ++y) {
    test.FoldBytes("line", &pixels[stride * static_cast<uint32_t>(y)], used);
  }
  if (info.header.biBitCount <= 8) {
    test.FoldBytes("colors", info.colors, sizeof(RGBQUAD) << info.header.biBitCount);
  }
}

// From section to section. A copy to a deeper section keeps colours; to a paletted one of another
// table it is a search, which has a family of its own.
void Copy(Case& test, const Section& source) {
  const int32_t bits = test.OneOf({source.bits() == 16 ? 24 : source.bits(), 24, 32});
  const int32_t targetHeight = test.Pick(1, 20), targetWidth = test.Pick(1, 40);
  Section target(test, targetWidth, targetHeight, bits > 8 ? bits : 24);
  const int32_t x = test.Pick(-5, 20), y = test.Pick(-5, 10);
  const int32_t width = test.Pick(1, 40), height = test.Pick(1, 20);
  const int32_t srcX = test.Pick(0, 10), srcY = test.Pick(0, 5);
  test.Note("%dx%d from %d,%d to %d,%d", width, height, srcX, srcY, x, y);
  test.Fold("BitBlt", BitBlt(target.context(), x, y, width, height, source.context(), srcX, srcY,
                             SRCCOPY) != 0);
  target.Fold(test);
}

void Run(Case& test) {
  const int32_t width = test.Pick(1, 40), height = test.Pick(1, 20);
  Section section(test, width, height, test.OneOf(kDepths));
  FoldBitmapObject(test, section.bitmap());
  FoldColorTable(test, section.context());
  for (int32_t i = test.Pick(1, 3); i > 0; --i) {
    if (test.random.Chance(2)) {
      ReadLines(test, section);
    } else {
      Copy(test, section);
    }
  }
  const int32_t x = test.Pick(0, width - 1), y = test.Pick(0, height - 1);
  test.Fold("GetPixel", GetPixel(section.context(), x, y));
}

const Registration registration({"sections", 2000, 0x2FC833F200841EBEu, Run});

}  // namespace

}  // namespace vn::cases
