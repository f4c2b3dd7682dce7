#include "platform/headless/text/font_libraries.h"

#include <dlfcn.h>

#include <memory>

namespace headless {
namespace {

template <class Function>
bool Bind(void* library, const char* name, Function*& function) {
  function = reinterpret_cast<Function*>(dlsym(library, name));
  return function != nullptr;
}

bool BindFreeType(FontLibraries& all) {
  void* const from = dlopen("libfreetype.so.6", RTLD_NOW | RTLD_LOCAL);
  return from && Bind(from, "FT_Init_FreeType", all.FT_Init_FreeType) &&
         Bind(from, "FT_New_Face", all.FT_New_Face) &&
         Bind(from, "FT_Request_Size", all.FT_Request_Size) &&
         Bind(from, "FT_Set_Transform", all.FT_Set_Transform) &&
         Bind(from, "FT_Get_Char_Index", all.FT_Get_Char_Index) &&
         Bind(from, "FT_Load_Glyph", all.FT_Load_Glyph) &&
         Bind(from, "FT_Render_Glyph", all.FT_Render_Glyph) &&
         Bind(from, "FT_GlyphSlot_Embolden", all.FT_GlyphSlot_Embolden);
}

bool BindFontconfig(FontLibraries& all) {
  void* const from = dlopen("libfontconfig.so.1", RTLD_NOW | RTLD_LOCAL);
  return from && Bind(from, "FcInit", all.FcInit) &&
         Bind(from, "FcPatternCreate", all.FcPatternCreate) &&
         Bind(from, "FcPatternDestroy", all.FcPatternDestroy) &&
         Bind(from, "FcPatternAddString", all.FcPatternAddString) &&
         Bind(from, "FcPatternAddInteger", all.FcPatternAddInteger) &&
         Bind(from, "FcPatternAddBool", all.FcPatternAddBool) &&
         Bind(from, "FcPatternGetString", all.FcPatternGetString) &&
         Bind(from, "FcPatternGetInteger", all.FcPatternGetInteger) &&
         Bind(from, "FcPatternGetBool", all.FcPatternGetBool) &&
         Bind(from, "FcPatternGetMatrix", all.FcPatternGetMatrix) &&
         Bind(from, "FcWeightFromOpenType", all.FcWeightFromOpenType) &&
         Bind(from, "FcConfigSubstitute", all.FcConfigSubstitute) &&
         Bind(from, "FcDefaultSubstitute", all.FcDefaultSubstitute) &&
         Bind(from, "FcFontMatch", all.FcFontMatch) &&
         Bind(from, "FcStrCmpIgnoreCase", all.FcStrCmpIgnoreCase);
}

const FontLibraries* Load() {
  auto all = std::make_unique<FontLibraries>();
  if (!BindFreeType(*all) || !BindFontconfig(*all) || !all->FcInit() ||
      all->FT_Init_FreeType(&all->freeType) != 0) {
    return nullptr;
  }
  return all.release();
}

}  // namespace

const FontLibraries* LoadedFontLibraries() {
  static const FontLibraries* const all = Load();
  return all;
}

}  // namespace headless
