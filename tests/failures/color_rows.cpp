// The colour room's rows.
#include <cstring>

#include "tests/failures/failure_rows.h"

namespace vn::test {
namespace {

constexpr unsigned kPalettes = kMemory | kObjects;  // palettes that could not be made

// A run of each dithering method over one row.
VnStatus DitherByEachMethod(Scene& s) {
  s.bytes.assign(s.bitmap->BytesPerLine, 0x5A);
  Bytes row(40);
  for (uint32_t method = DITHER_NONE; method <= DITHER_CLUSTERED; ++method) {
    s.bitmap->DitherMethod = method;
    const VnStatus status = Vn_StartDithering(s.bitmap, s.colors.data(), 256);
    if (status == OK) Vn_DitherLine(s.bitmap, s.bytes.data(), row.data());
    s.bitmap->DitherMethod = DITHER_ORDERED;
    EXPECT_EQ(s.bitmap->DitherState != nullptr, status == OK);
    Vn_StopDithering(s.bitmap);
    if (status != OK) {
      s.bytes.clear();
      return status;
    }
  }
  s.bytes = row;
  return OK;
}

Call Reduce(OwnedBitmap Scene::*target, uint32_t flags) {
  return [=](Scene& s) {
    return Vn_ColorResBitmap(s.bitmap, s.*target, 4, flags, nullptr, 0, nullptr, 0);
  };
}

constexpr unsigned kAll = kRecord | kPixels | kAttachments;

// The colours of DibColors in their colour form.
void ColorForm(Scene& s) { Vn_CreatePaletteColors(s.bitmap); }

const AddRows colorRows({
    {"Vn_CreatePalette", [](Scene& s) { return s.Keep(Vn_CreatePalette(s.colors.data(), 9)); }},
    {"Vn_GetPaletteSize Vn_GetPaletteEntries", Done([](Scene& s) {
       s.bytes.resize(sizeof(RGBQUAD) * Vn_GetPaletteSize(s.bitmap->Palette));
       Vn_GetPaletteEntries(s.bitmap->Palette, 0, 16, reinterpret_cast<RGBQUAD*>(s.bytes.data()));
     })},
    {"Vn_SetPaletteEntries",
     [](Scene& s) {
       return Moved(static_cast<int32_t>(
                        Vn_SetPaletteEntries(s.bitmap->Palette, 1, 9, s.colors.data() + 70)),
                    9);
     }},
    {"Vn_CreateSystemPalette", [](Scene& s) { return s.Keep(Vn_CreateSystemPalette()); }},
    {"Vn_CreateGrayPalette", [](Scene& s) { return s.Keep(Vn_CreateGrayPalette(8)); }},
    {"Vn_CreateFixedPalette", [](Scene& s) { return s.Keep(Vn_CreateFixedPalette(8)); }},
    {"Vn_DupPalette", [](Scene& s) { return s.Keep(Vn_DupPalette(s.bitmap->Palette)); }},
    {"Vn_GetFixedPalette Vn_IntGetFixedPalette Vn_Get1BitOnTable Vn_CompareHandleToPalette",
     [](Scene& s) {
       s.bytes.assign(1, Vn_Get1BitOnTable()[77]);
       Vn_CompareHandleToPalette(s.bitmap->Palette, Vn_IntGetFixedPalette(4), 16);
       return Vn_GetFixedPalette(s.colors.data(), 8);
     }},
    {"Vn_CreateBitmap",
     [](Scene& s) {
       return Vn_CreateBitmap(s.result, s.kind.request, 4, 4, 8, 0, nullptr, VIEW_TOP_FIRST);
     },
     {.hides = kPalettes, .open = kResult}},
    {"Vn_GetBitmapColors",
     [](Scene& s) { return Vn_GetBitmapColors(s.bitmap, 1, 9, s.colors.data()); }},
    {"Vn_PutBitmapColors",
     [](Scene& s) { return Vn_PutBitmapColors(s.bitmap, 1, 9, s.colors.data() + 70); },
     {.hides = kPalettes}},
    {"Vn_CreatePaletteIndexes Vn_CreatePaletteColors Vn_IsGrayScaleBitmap",
     [](Scene& s) -> VnStatus {
       Vn_CreatePaletteIndexes(s.bitmap);
       Vn_IsGrayScaleBitmap(s.bitmap);
       return Vn_CreatePaletteColors(s.bitmap);
     }},
    {"Vn_CreateBitmapFixedPalette",
     [](Scene& s) -> VnStatus { return Vn_CreateBitmapFixedPalette(s.result); },
     {.hides = kPalettes, .prepare = [](Scene& s) { Vn_InitBitmap(s.result, 4, 4, 8); }}},
    {"Vn_CreateBitmapTruePalette",
     [](Scene& s) -> VnStatus { return Vn_CreateBitmapTruePalette(s.bitmap); },
     {.hides = kPalettes, .prepare = ColorForm}},

    {"Vn_ConvertBuffer Vn_CalcConvertSize",
     [](Scene& s) {
       s.bytes.assign(Vn_CalcConvertSize(40, 24, 40, 8), 0x5A);
       const VnStatus status = Vn_ConvertBuffer(s.bytes.data(), 40, 24, 8, ORDER_BGR, ORDER_BGR,
                                                nullptr, s.colors.data());
       if (status != OK) s.bytes.clear();
       return status;
     }},
    {"Vn_CreateUserMatchTable Vn_SetUserMatchTable Vn_FreeUserMatchTable",
     [](Scene& s) -> VnStatus {
       uint32_t* table = Vn_CreateUserMatchTable(s.colors.data(), 256);
       if (!table) return ERR_NO_MEMORY;
       Vn_SetUserMatchTable(Vn_SetUserMatchTable(table));
       return Vn_FreeUserMatchTable(table);
     }},
    {"Vn_StartDithering Vn_DitherLine Vn_StopDithering", DitherByEachMethod, {.bits = 24}},

    {"Vn_ColorResBitmap, to another",
     Reduce(&Scene::result, 0),
     {.bits = 24, .hides = kPalettes | kFiles, .stopSpoils = kResult}},
    {"Vn_ColorResBitmap, in place",
     Reduce(&Scene::bitmap, RES_DITHER_METHOD(DITHER_STUCKI)),
     {.bits = 24, .hides = kPalettes | kFiles, .stopSpoils = kAll}},
    {"Vn_ColorResBitmap, fixed palette",
     Reduce(&Scene::bitmap, RES_FIXED_PALETTE),
     {.bits = 24, .hides = kPalettes | kFiles, .stopSpoils = kAll}},
    {"Vn_GrayScaleBitmap",
     [](Scene& s) { return Vn_GrayScaleBitmap(s.bitmap); },
     {.hides = kPalettes | kFiles}},
    {"Vn_HalfToneBitmap",
     [](Scene& s) { return Vn_HalfToneBitmap(s.bitmap, HALFTONE_ORDERED); },
     {.bits = 24, .hides = kPalettes | kFiles}},
    {"Vn_HalfToneBitmapExt",
     [](Scene& s) { return Vn_HalfToneBitmapExt(s.bitmap, HALFTONE_CLUSTERED, 4500); },
     {.bits = 24, .hides = kPalettes | kFiles}},
    {"Vn_ConvertColorSpace",
     [](Scene& s) {
       s.bytes.assign(9, 0);
       return Vn_ConvertColorSpace("123456789", s.bytes.data(), 3, SPACE_BGR, SPACE_HSV);
     }},
});

}  // namespace
}  // namespace vn::test
