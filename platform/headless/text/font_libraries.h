// FreeType and fontconfig, taken into the process when the first text is drawn. The library is not
// linked with them: a program that draws no text does not load them, and one on a machine without
// them runs all the same.
#ifndef VNCORE_PLATFORM_HEADLESS_FONT_LIBRARIES_H
#define VNCORE_PLATFORM_HEADLESS_FONT_LIBRARIES_H

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_SYNTHESIS_H

namespace headless {

struct FontLibraries {
  decltype(&::FT_Init_FreeType) FT_Init_FreeType;
  decltype(&::FT_New_Face) FT_New_Face;
  decltype(&::FT_Request_Size) FT_Request_Size;
  decltype(&::FT_Set_Transform) FT_Set_Transform;
  decltype(&::FT_Get_Char_Index) FT_Get_Char_Index;
  decltype(&::FT_Load_Glyph) FT_Load_Glyph;
  decltype(&::FT_Render_Glyph) FT_Render_Glyph;
  decltype(&::FT_GlyphSlot_Embolden) FT_GlyphSlot_Embolden;
  decltype(&::FcInit) FcInit;
  decltype(&::FcPatternCreate) FcPatternCreate;
  decltype(&::FcPatternDestroy) FcPatternDestroy;
  decltype(&::FcPatternAddString) FcPatternAddString;
  decltype(&::FcPatternAddInteger) FcPatternAddInteger;
  decltype(&::FcPatternAddBool) FcPatternAddBool;
  decltype(&::FcPatternGetString) FcPatternGetString;
  decltype(&::FcPatternGetInteger) FcPatternGetInteger;
  decltype(&::FcPatternGetBool) FcPatternGetBool;
  decltype(&::FcPatternGetMatrix) FcPatternGetMatrix;
  decltype(&::FcWeightFromOpenType) FcWeightFromOpenType;
  decltype(&::FcConfigSubstitute) FcConfigSubstitute;
  decltype(&::FcDefaultSubstitute) FcDefaultSubstitute;
  decltype(&::FcFontMatch) FcFontMatch;
  decltype(&::FcStrCmpIgnoreCase) FcStrCmpIgnoreCase;

  FT_Library freeType;  // started, as fontconfig is
};

// Null where one of them cannot be had; asked once. They stay until the process ends.
const FontLibraries* LoadedFontLibraries();

}  // namespace headless

#endif
