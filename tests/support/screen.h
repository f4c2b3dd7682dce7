// What a test's screen shows.
#ifndef VNCORE_TESTS_SUPPORT_SCREEN_H
#define VNCORE_TESTS_SUPPORT_SCREEN_H

#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {

// Small, and its palette can be set whole if it has one.
inline Headless_Display SmallScreen(int32_t bits) {
  return {160, 120, bits, bits == 8, 0, DT_RASDISPLAY, 96};
}

inline Bytes ScreenBytes() {
  Headless_Surface screen;
  Headless_GetScreen(&screen);
  return Bytes(screen.bits, screen.bits + ptrdiff_t{screen.stride} * screen.height);
}

// What `paint` leaves on a screen of one colour.
template <class Paint>
Bytes ShownBy(HDC screen, uint32_t ground, Paint paint) {
  PatBlt(screen, 0, 0, 4096, 4096, ground);
  paint();
  return ScreenBytes();
}

}  // namespace vn::test

#endif
