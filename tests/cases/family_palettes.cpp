// Palettes: objects, the palettes of bitmaps and both forms of their tables, dead handles.
#include "tests/cases/bitmaps.h"

namespace vn::cases {

namespace {

// A palette object of random size and colours, or none.
HPALETTE RandomPalette(Case& test) {
  switch (test.Pick(0, 5)) {
    case 0:
      return Vn_CreateFixedPalette(static_cast<uint32_t>(test.Pick(0, 10)));
    case 1:
      return Vn_CreateGrayPalette(static_cast<uint32_t>(test.Pick(0, 8)));
    case 2:
      return nullptr;
    default: {
      const auto count = static_cast<uint32_t>(test.Pick(2, 256));
      return Vn_CreatePalette(RandomColors(test, count).data(), count);
    }
  }
}

void ObjectCase(Case& test) {
  HPALETTE palette = RandomPalette(test);
  test.FoldHandle("palette", palette);
  test.Fold("Vn_GetPaletteSize", Vn_GetPaletteSize(palette));
  for (int32_t i = test.Pick(0, 4); i > 0; --i) {
    const auto first = static_cast<uint32_t>(test.Pick(0, 255));
    const auto count = static_cast<uint32_t>(test.Pick(0, 256 - static_cast<int32_t>(first)));
    std::vector<RGBQUAD> colors = RandomColors(test, 256);
    if (test.random.Chance(2)) {
      test.Fold("Vn_SetPaletteEntries", Vn_SetPaletteEntries(palette, first, count, colors.data()));
    } else {
      test.Fold("Vn_GetPaletteEntries", Vn_GetPaletteEntries(palette, first, count, colors.data()));
      test.FoldBytes("colors", colors.data(), colors.size() * sizeof(RGBQUAD));
    }
  }
  RGBQUAD fixed[256] = {};
  const uint32_t bits = test.OneOf({0u, 1u, 4u, 8u, 2u});
  test.Fold("Vn_GetFixedPalette", Vn_GetFixedPalette(fixed, bits));
  test.Fold("Vn_CompareHandleToPalette", Vn_CompareHandleToPalette(palette, fixed, 256));
  HPALETTE copy = Vn_DupPalette(palette);
  FoldPalette(test, "copy", copy);
  if (copy) DeleteObject(copy);
  if (palette) {
    for (int i = 0; i < 8; ++i) {
      const auto color = static_cast<COLORREF>(test.random.Next() & 0xFFFFFF);
      test.Fold("GetNearestPaletteIndex", GetNearestPaletteIndex(palette, color));
    }
    DeleteObject(palette);
    // The handle is dead from here on.
    test.Fold("dead size", Vn_GetPaletteSize(palette));
    test.Fold("dead entries", Vn_GetPaletteEntries(palette, 0, 256, fixed));
    test.Fold("dead set", Vn_SetPaletteEntries(palette, 0, 2, fixed));
    test.Fold("dead delete", DeleteObject(palette) != 0);
  }
}

void BitmapCase(Case& test) {
  Shape shape = RandomShape(test, 9, 4);
  if (test.random.Chance(2)) shape.bits = test.OneOf({0, 1, 4, 8});
  Bitmap bitmap;
  const std::vector<RGBQUAD> colors = RandomColors(test, 256);
  test.Fold(
      "Vn_CreateBitmap",
      Vn_CreateBitmap(bitmap, shape.storage, shape.width, shape.height, shape.bits, shape.order,
                      test.random.Chance(2) ? nullptr : colors.data(), shape.origin));
  FoldRecord(test, bitmap);
  for (int32_t i = test.Pick(1, 5); i > 0; --i) {
    RGBQUAD table[256] = {};
    int32_t first, count;
    switch (test.Pick(0, 4)) {
      case 0:
        first = test.Pick(-1, 4);
        count = test.Pick(0, 20);
        test.Fold("Vn_PutBitmapColors", Vn_PutBitmapColors(bitmap, first, count, colors.data()));
        break;
      case 1:
        Vn_GetFixedPalette(table, bitmap->BitsPerPixel);
        test.Fold("Vn_PutBitmapColors", Vn_PutBitmapColors(bitmap, 0, bitmap->ColorCount, table));
        break;
      case 2:
        first = test.Pick(0, 20);
        count = test.Pick(0, 236);
        test.Fold("Vn_GetBitmapColors", Vn_GetBitmapColors(bitmap, first, count, table));
        test.FoldBytes("table", table, sizeof table);
        break;
      case 3:
        test.Fold("Vn_CreatePaletteColors", Vn_CreatePaletteColors(bitmap));
        // Only where Palette is the active one: the next change of colours forgets the other.
        if (bitmap->BitsPerPixel <= 8 && !(bitmap->Flags & FLAG_FIXED_PALETTE) &&
            test.random.Chance(2)) {
          test.Fold("Vn_CreateBitmapTruePalette", Vn_CreateBitmapTruePalette(bitmap));
        }
        break;
      case 4:
        test.Fold("Vn_CreatePaletteIndexes", Vn_CreatePaletteIndexes(bitmap));
        break;
    }
    test.Fold("Vn_IsGrayScaleBitmap", Vn_IsGrayScaleBitmap(bitmap));
    FoldRecord(test, bitmap);
  }
}

void Run(Case& test) {
  if (test.random.Chance(2)) {
    ObjectCase(test);
  } else {
    BitmapCase(test);
  }
}

const Registration registration({"palettes", 3000, 0xA87513544A619C56u, Run});

}  // namespace

}  // namespace vn::cases
