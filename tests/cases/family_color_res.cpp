// Changes of depth and palette: in place, apart and through the row callback, with stops.
#include <algorithm>

#include "tests/cases/bitmaps.h"

namespace vn::cases {

namespace {

struct RowFold {
  Case* test;
  int32_t stopAt;  // row, or negative
  int32_t rows = 0;
};

VnStatus VN_CALL FoldRow(BitmapHandle* target, uint8_t* bytes, uint32_t rows, UINT_PTR data) {
  auto* fold = reinterpret_cast<RowFold*>(data);
  const auto used = static_cast<size_t>(target->Width) * static_cast<size_t>(target->BitsPerPixel);
  fold->test->Fold("rows", rows);
  fold->test->FoldBytes("row", bytes, used / 8);
  return fold->rows++ == fold->stopAt ? -1234 : 0 + OK;
}

uint32_t RandomFlags(Case& test, uint32_t bits) {
  uint32_t choice = bits > 8 ? test.OneOf({0u, 4u}) : test.OneOf({0u, 1u, 2u, 0x10u, 0x30u});
  if (test.random.Chance(40)) choice = static_cast<uint32_t>(test.Pick(0, 7));
  return choice | static_cast<uint32_t>(test.Pick(0, 8)) << 16;
}

// Colours of a soft picture, so that boxes differ.
void FillSoftly(Case& test, BitmapHandle* bitmap) {
  std::vector<uint8_t> row(bitmap->BytesPerLine);
  const int32_t state = Vn_LockBitmap(bitmap);
  auto level = static_cast<uint8_t>(test.Pick(0, 255));
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    for (uint8_t& byte : row)
      byte = level = static_cast<uint8_t>(level + test.Pick(-9, 10));
    Vn_PutBitmapRow(bitmap, row.data(), y, bitmap->BytesPerLine);
  }
  Vn_UnlockBitmap(bitmap, state);
}

// The rows behind a stop are as the storage came, which differs by its kind.
void FoldResult(Case& test, BitmapHandle* bitmap, bool whole) {
  FoldRecord(test, bitmap);
  if (!(bitmap->Flags & FLAG_ALLOCATED)) return;
  if (whole) FoldPixels(test, bitmap);
  FoldPalette(test, "Palette", bitmap->Palette);
  FoldPalette(test, "PaintPalette", bitmap->PaintPalette);
}

void Run(Case& test) {
  Bitmap bitmap(test, RandomShape(test, 48, 20));
  if (!test.random.Chance(3)) FillSoftly(test, bitmap);
  const uint32_t bits = test.OneOf({1u, 4u, 8u, 16u, 24u, 32u});
  const uint32_t flags = RandomFlags(test, bits);
  std::vector<RGBQUAD> colors = RandomColors(test, 256);
  for (RGBQUAD& color : colors)
    color.rgbReserved &= 2;  // what both bits set gives is not settled
  if (flags & 0x10) {
    for (RGBQUAD& color : colors)
      color.rgbReserved = 0;
  }
  const bool withColors = (flags & 0x10) || test.random.Chance(3);
  const auto count = static_cast<uint32_t>(test.random.Chance(3) ? test.Pick(1, 256) : 0);
  uint32_t* table = test.random.Chance(30) ? Vn_CreateUserMatchTable(colors.data(), 16) : nullptr;
  uint32_t* const before = Vn_SetUserMatchTable(table);
  // The table's answers must lie within the palette.
  const uint32_t wanted = table ? 0 : count;

  Bitmap apart;
  BitmapHandle* const targets[] = {bitmap.get(), apart.get(), nullptr};
  const int32_t where = test.Pick(0, 2);
  RowFold fold{&test, test.random.Chance(10) ? test.Pick(0, 10) : -1};
  test.Note("to %u bits, flags %X, %u colours%s, target %d", bits, flags, wanted,
            withColors ? " given" : "", where);
  const int32_t stopAt = test.random.Chance(10) ? test.Pick(0, 8) : -1;
  {
    const ProgressScope progress(test, stopAt);
    test.Fold(
        "Vn_ColorResBitmap",
        Vn_ColorResBitmap(bitmap, targets[where], bits, flags, withColors ? colors.data() : nullptr,
                          wanted, where == 2 || fold.stopAt >= 0 ? FoldRow : nullptr,
                          reinterpret_cast<UINT_PTR>(&fold)));
  }
  Vn_SetUserMatchTable(before);
  Vn_FreeUserMatchTable(table);
  FoldResult(test, bitmap, stopAt < 0 || where != 0);
  if (where == 1) FoldResult(test, apart, stopAt < 0);
}

const Registration registration({"color-res", 3000, 0xE57574C790F8A407u, Run});

}  // namespace

}  // namespace vn::cases
