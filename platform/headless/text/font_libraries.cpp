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

#define VNCORE_BIND(name) &&Bind(from, #name, all.name)

bool BindFreeType(FontLibraries& all) {
  void* const from = dlopen("libfreetype.so.6", RTLD_NOW | RTLD_LOCAL);
  return from VNCORE_FREETYPE_CALLS(VNCORE_BIND);
}

bool BindFontconfig(FontLibraries& all) {
  void* const from = dlopen("libfontconfig.so.1", RTLD_NOW | RTLD_LOCAL);
  return from VNCORE_FONTCONFIG_CALLS(VNCORE_BIND);
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
