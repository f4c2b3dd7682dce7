// Colour: palettes, conversion of rows, match tables, dithering, colour resolution, gray, colour
// spaces, halftones.
#include <utility>

#include "fuzz/calls.h"
#include "kernel/picture_size.h"

namespace vn::fuzz {

namespace {

void MakePalette(World& world, Input& input) {
  const RGBQUAD* const colors = world.Colors(input);
  const auto count = static_cast<uint32_t>(input.Number());
  world.Keep(Vn_CreatePalette(colors, count));
}

// Entries are written up to 256, whatever the count.
void ReadPalette(World& world, Input& input) {
  RGBQUAD colors[256];
  const HPALETTE palette = world.Palette(input);
  const auto first = static_cast<uint32_t>(input.Number());
  const auto count = static_cast<uint32_t>(input.Number());
  Vn_GetPaletteEntries(palette, first, count, colors);
}

void ReadBitmapColors(World& world, Input& input) {
  RGBQUAD colors[256];
  BitmapHandle* const bitmap = world.Bitmap(input);
  const auto first = static_cast<uint32_t>(input.Number());
  const auto count = static_cast<uint32_t>(input.Number());
  Vn_GetBitmapColors(bitmap, first, count, colors);
}

void FixedPalette(World&, Input& input) {
  RGBQUAD colors[256];
  const auto bits = static_cast<uint32_t>(input.Number());
  Vn_GetFixedPalette(colors, bits);
  Vn_IntGetFixedPalette(bits);
}

void Convert(World& world, Input& input) {
  const auto width = static_cast<uint32_t>(input.Between(0, 300));
  const auto from = static_cast<uint32_t>(input.Number());
  const auto to = static_cast<uint32_t>(input.Number());
  const uint32_t bytes = Vn_CalcConvertSize(width, from, width, to);
  if (bytes > 1 << 20) return;
  const auto buffer = Buffer(input, bytes);
  const uint32_t order = input.Below(3), otherOrder = input.Below(3);
  RGBQUAD table[256];
  input.Fill(table, sizeof table);
  const RGBQUAD* const source = input.Flag() ? world.Colors(input) : nullptr;
  const RGBQUAD* const target = input.Flag() ? table : nullptr;
  Vn_ConvertBuffer(buffer.get(), width, from, to, order, otherOrder, source, target);
}

// 32768 searches: of sixteen tables that are asked for one is made.
void MatchTable(World& world, Input& input) {
  const RGBQUAD* const colors = input.Flag() ? world.Colors(input) : nullptr;
  const uint32_t count = colors ? input.Below(256) + 1 : 0;
  if (colors && input.Below(16) != 15) return;
  uint32_t* const table = Vn_CreateUserMatchTable(colors, count);
  world.Keep(table);
  Vn_SetUserMatchTable(table);
}

void Dither(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  const RGBQUAD* const colors = input.Flag() ? world.Colors(input) : nullptr;
  const auto count = static_cast<uint32_t>(input.Number());
  // Rows of so many pixels are the caller's to answer for.
  if (bitmap->BytesPerLine > 1 << 18 || !SizeFits(bitmap->Width, 1, bitmap->BitsPerPixel)) return;
  if (Vn_StartDithering(bitmap, colors, count) == OK) {
    const auto width = static_cast<uint32_t>(bitmap->Width);
    const uint32_t bits = count <= 2 ? 1 : count <= 16 ? 4 : 8;
    for (uint32_t rows = input.Below(6); rows > 0; --rows) {
      const auto source = Buffer(input, bitmap->BytesPerLine);
      const auto target = Buffer(input, (width * bits + 7) / 8);
      Vn_DitherLine(bitmap, source.get(), target.get());
    }
  }
  Vn_StopDithering(bitmap);
}

VnStatus VN_CALL CountRows(BitmapHandle*, uint8_t*, uint32_t, UINT_PTR left) {
  return (*reinterpret_cast<uint32_t*>(left))-- == 0 ? 5 : OK;
}

void ColorResolution(World& world, Input& input) {
  BitmapHandle* const source = world.Bitmap(input);
  BitmapHandle* target = nullptr;
  const uint8_t kind = input.Byte();
  if (kind & 1) target = kind & 2 ? source : world.Fresh();
  const auto bits = static_cast<uint32_t>(input.Number());
  uint32_t flags = input.Below(64) | RES_DITHER_METHOD(input.Below(10));
  if (kind & 4) flags = static_cast<uint32_t>(input.Number());
  const RGBQUAD* const colors = kind & 8 ? world.Colors(input) : nullptr;
  if (!colors && (flags & 63) == RES_USER_PALETTE) return;
  const auto count = static_cast<uint32_t>(input.Number());
  uint32_t rows = input.Byte();
  Vn_ColorResBitmap(source, target, bits, flags, colors, count, kind & 16 ? &CountRows : nullptr,
                    reinterpret_cast<UINT_PTR>(&rows));
}

void ColorSpace(World&, Input& input) {
  const int32_t count = input.Between(-1, 200);
  const auto from = static_cast<uint32_t>(input.Number());
  const auto to = static_cast<uint32_t>(input.Number());
  const auto bytes = [count](uint32_t space) {
    const size_t pixel = space == SPACE_YUV || space == SPACE_YIQ ? 6 : space == SPACE_CMYK ? 4 : 3;
    return count < 0 ? 0 : pixel * static_cast<size_t>(count);
  };
  const auto source = Buffer(input, bytes(from)), target = Buffer(input, bytes(to));
  Vn_ConvertColorSpace(source.get(), target.get(), count, from, to);
}

const Call kCalls[] = {
    &MakePalette,
    &ReadPalette,
    &ReadBitmapColors,
    &FixedPalette,
    &Convert,
    &MatchTable,
    &Dither,
    &ColorResolution,
    &ColorSpace,
    &Decoded<&Vn_GetPaletteSize>,
    &Decoded<&Vn_CreateSystemPalette>,
    &Decoded<&Vn_CreateGrayPalette>,
    &Decoded<&Vn_DupPalette>,
    &Decoded<&Vn_CreateFixedPalette>,
    // The palette that is not in force goes out of the record, and is the caller's to delete.
    [](World& world, Input& input) {
      BitmapHandle* const bitmap = world.Bitmap(input);
      const bool fixed = bitmap->Flags & FLAG_FIXED_PALETTE;
      world.Keep(std::exchange(fixed ? bitmap->Palette : bitmap->PaintPalette, nullptr));
      const int32_t first = input.Number(), count = input.Number();
      Vn_PutBitmapColors(bitmap, first, count, world.Colors(input));
    },
    &Decoded<&Vn_CreatePaletteIndexes>,
    &Decoded<&Vn_CreatePaletteColors>,
    &Decoded<&Vn_CreateBitmapTruePalette>,
    &Decoded<&Vn_IsGrayScaleBitmap>,
    &Decoded<&Vn_GrayScaleBitmap>,
    &Decoded<&Vn_HalfToneBitmap>,
    &Decoded<&Vn_HalfToneBitmapExt>,
    &Decoded<&Vn_CalcConvertSize>,
    // The colours hold 256 entries; what counts more is the caller's to answer for.
    [](World& world, Input& input) {
      const HPALETTE palette = world.Palette(input);
      const auto first = static_cast<uint32_t>(input.Number());
      Vn_SetPaletteEntries(palette, first, input.Below(256) + 1, world.Colors(input));
    },
    [](World& world, Input& input) {
      const HPALETTE palette = world.Palette(input);
      const auto count = static_cast<uint32_t>(input.Number());
      Vn_CompareHandleToPalette(palette, world.Colors(input), count);
    },
    // An earlier paint palette is the caller's to delete, and the mark the caller's to set.
    [](World& world, Input& input) {
      BitmapHandle* const bitmap = world.Bitmap(input);
      world.Keep(bitmap->PaintPalette);
      bitmap->PaintPalette = nullptr;
      if (Vn_CreateBitmapFixedPalette(bitmap)) bitmap->Flags |= FLAG_FIXED_PALETTE;
    },
    &Decoded<&Vn_DefaultDithering>,
    // One byte for each value of a byte.
    [](World&, Input& input) {
      if (Vn_Get1BitOnTable()[input.Byte()] > 8) std::abort();
    },
};

}  // namespace

}  // namespace vn::fuzz

VN_FUZZ_TARGET(vn::fuzz::kCalls)
