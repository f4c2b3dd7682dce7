// Versions, screens and leak counts in both worlds.
#include <cstdio>
#include <cstring>

#include <vncore/vncore.h>
#include "tests/cases/case.h"
#ifndef _WIN32
#include <vncore/platform/headless/headless.h>
#endif

namespace vn::cases {

#ifdef _WIN32

bool EnterWorld(bool win32s) {
  const DWORD version = GetVersion();
  const bool same = (version >> 31 && (version & 0xFF) < 4) == win32s;
  if (!same) std::fprintf(stderr, "this Windows answers version %08lx\n", version);
  return same;
}

bool Provide(Screen screen) {
  HDC context = GetDC(nullptr);
  const int bits = GetDeviceCaps(context, BITSPIXEL);
  const bool palette = (GetDeviceCaps(context, RASTERCAPS) & RC_PALETTE) != 0 &&
                       GetDeviceCaps(context, SIZEPALETTE) == 256 &&
                       GetDeviceCaps(context, NUMRESERVED) == 20;
  ReleaseDC(nullptr, context);
  return screen == Screen::kAny || (screen == Screen::kPalette ? bits == 8 && palette : bits == 32);
}

bool Balanced() { return true; }

#else

bool EnterWorld(bool win32s) {
  Headless_SetVersion(win32s ? HEADLESS_VERSION_WIN32S : HEADLESS_VERSION_WIN32);
  if (!Headless_Restart()) return false;
  Vn_GetDisplayMode();  // the thread's settings exist before anything is counted
  return true;
}

bool Provide(Screen screen) {
  const int32_t bits = screen == Screen::kPalette ? 8 : 32;
  const Headless_Display display = {1024, 768, bits, bits == 8, 20, DT_RASDISPLAY, 96};
  return Headless_SetDisplay(&display) == 1;
}

bool Balanced() {
  static Headless_Counts counts;
  Headless_Counts now;
  Headless_GetCounts(&now);
  const bool balanced = std::memcmp(&now, &counts, sizeof now) == 0;
  counts = now;
  return balanced;
}

#endif

}  // namespace vn::cases
