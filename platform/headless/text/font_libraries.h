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

// What is called of them.
#define VNCORE_FREETYPE_CALLS(CALL) \
  CALL(FT_Init_FreeType)            \
  CALL(FT_New_Face)                 \
  CALL(FT_Done_Face)                \
  CALL(FT_Request_Size)             \
  CALL(FT_Set_Transform)            \
  CALL(FT_Get_Char_Index)           \
  CALL(FT_Load_Glyph)               \
  CALL(FT_Render_Glyph)             \
  CALL(FT_GlyphSlot_Embolden)
#define VNCORE_FONTCONFIG_CALLS(CALL) \
  CALL(FcInit)                        \
  CALL(FcPatternCreate)               \
  CALL(FcPatternDestroy)              \
  CALL(FcPatternAddString)            \
  CALL(FcPatternAddInteger)           \
  CALL(FcPatternAddBool)              \
  CALL(FcPatternGetString)            \
  CALL(FcPatternGetInteger)           \
  CALL(FcPatternGetBool)              \
  CALL(FcPatternGetMatrix)            \
  CALL(FcWeightFromOpenType)          \
  CALL(FcConfigSubstitute)            \
  CALL(FcDefaultSubstitute)           \
  CALL(FcFontMatch)                   \
  CALL(FcStrCmpIgnoreCase)

struct FontLibraries {
#define VNCORE_POINTER(name) decltype(&::name) name;
  VNCORE_FREETYPE_CALLS(VNCORE_POINTER)
  VNCORE_FONTCONFIG_CALLS(VNCORE_POINTER)
#undef VNCORE_POINTER

  FT_Library freeType;  // started, as fontconfig is
};

// Null where one of them cannot be had; asked once. They stay until the process ends.
const FontLibraries* LoadedFontLibraries();

}  // namespace headless

#endif
