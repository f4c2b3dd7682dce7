// Calls into libjpeg, which reports errors by longjmp: see png_guard.h for the rules.
#ifndef VNCORE_TOOLS_JPEG_GUARD_H
#define VNCORE_TOOLS_JPEG_GUARD_H

#include <csetjmp>
#include <cstdio>
#include <type_traits>
// libjpeg's headers need <cstdio> before them.
#include <jerror.h>
#include <jpeglib.h>

namespace vn::tool {

struct JpegError {
  jpeg_error_mgr manager;  // first, so that libjpeg's pointer to it is a pointer to this
  std::jmp_buf back;
  char text[JMSG_LENGTH_MAX] = "";
};

// Gives up with a text, from a callback of ours.
[[noreturn]] inline void GiveUp(j_common_ptr jpeg, const char* text) {
  auto* error = reinterpret_cast<JpegError*>(jpeg->err);
  std::snprintf(error->text, sizeof error->text, "%s", text);
  std::longjmp(error->back, 1);
}

// What libjpeg itself gives up with.
[[noreturn]] inline void OnJpegError(j_common_ptr jpeg) {
  char text[JMSG_LENGTH_MAX];
  jpeg->err->format_message(jpeg, text);
  GiveUp(jpeg, text);
}

// libjpeg patches damaged data up and warns; here damage is an error. What is only unusual passes.
inline void OnJpegMessage(j_common_ptr jpeg, int level) {
  const int code = jpeg->err->msg_code;
  const bool damage =
      level < 0 && code != JWRN_ADOBE_XFORM && code != JWRN_JFIF_MAJOR && code != JWRN_BOGUS_ICC;
  if (damage) OnJpegError(jpeg);
}

// Points `jpeg`, which is not created yet, to `error`.
template <class Jpeg>
void ReportTo(JpegError* error, Jpeg* jpeg) {
  jpeg->err = jpeg_std_error(&error->manager);
  error->manager.error_exit = &OnJpegError;
  error->manager.emit_message = &OnJpegMessage;
}

// Runs `call`; false when libjpeg gave up in it. `call` captures references or pointers, and
// creates no object that has a destructor.
template <class Call>
bool GuardJpeg(JpegError& error, const Call& call) {
  static_assert(std::is_trivially_destructible_v<Call>);
  if (setjmp(error.back)) return false;
  call();
  return true;
}

}  // namespace vn::tool

#endif
