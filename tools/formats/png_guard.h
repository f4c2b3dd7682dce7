// Calls into libpng, which reports errors by longjmp.
//
// A jump over a frame that holds an object with a destructor is undefined behaviour. So every call
// goes through GuardPng: between its setjmp and libpng lie only the frame of a callable without
// destructor, libpng's own frames and our callbacks, which hold plain data. The error handler
// leaves the text in a PngError, and the caller throws after GuardPng has returned.
#ifndef VNCORE_TOOLS_PNG_GUARD_H
#define VNCORE_TOOLS_PNG_GUARD_H

#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <type_traits>

namespace vn::tool {

struct PngError {
  char text[160] = "";
};

// libpng's error and warning handlers. `png_get_error_ptr` is a PngError.
[[noreturn]] inline void OnPngError(png_structp png, png_const_charp text) {
  auto* error = static_cast<PngError*>(png_get_error_ptr(png));
  std::snprintf(error->text, sizeof error->text, "%s", text);
  png_longjmp(png, 1);
}
inline void OnPngWarning(png_structp, png_const_charp) {}

// Runs `call`; false when libpng gave up in it. `call` captures references or pointers, and creates
// no object that has a destructor.
template <class Call>
bool GuardPng(png_structp png, const Call& call) {
  static_assert(std::is_trivially_destructible_v<Call>);
  if (setjmp(png_jmpbuf(png))) return false;
  call();
  return true;
}

}  // namespace vn::tool

#endif
