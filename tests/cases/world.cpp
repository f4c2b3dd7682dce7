// Versions, screens and leak counts in both worlds.
#include "tests/cases/world.h"

#include <cstdio>
#include <cstring>

#include <vncore/vncore.h>

#ifdef _WIN32

namespace vn::cases {

World::World(bool win32s) {
  const DWORD version = GetVersion();
  if ((version >> 31 && (version & 0xFF) < 4) != win32s) {
    std::fprintf(stderr, "this Windows answers version %08lx\n", version);
    return;
  }
  ok_ = true;
}

World::~World() = default;

bool World::Provide(Screen screen) {
  HDC context = GetDC(nullptr);
  const int bits = GetDeviceCaps(context, BITSPIXEL);
  const bool palette = (GetDeviceCaps(context, RASTERCAPS) & RC_PALETTE) != 0 &&
                       GetDeviceCaps(context, SIZEPALETTE) == 256 &&
                       GetDeviceCaps(context, NUMRESERVED) == 20;
  ReleaseDC(nullptr, context);
  switch (screen) {
    case Screen::kAny:
      return true;
    case Screen::kPalette:
      return bits == 8 && palette;
    case Screen::kTrueColor:
      return bits == 32;
  }
  return false;
}

bool World::Balanced() { return true; }

}  // namespace vn::cases

#else

#include <vncore/platform/headless/headless.h>

namespace vn::cases {

namespace {
Headless_Counts counts;
}

World::World(bool win32s) {
  if (win32s) {
    Headless_SetVersion(HEADLESS_VERSION_WIN32S);
    if (!Headless_Restart()) return;
  }
  Vn_GetDisplayMode();  // the thread's settings exist before anything is counted
  Headless_GetCounts(&counts);
  ok_ = true;
}

World::~World() = default;

bool World::Provide(Screen screen) {
  const int32_t bits = screen == Screen::kPalette ? 8 : 32;
  const Headless_Display display = {1024, 768, bits, bits == 8, 20, DT_RASDISPLAY, 96};
  return Headless_SetDisplay(&display) == 1;
}

bool World::Balanced() {
  Headless_Counts now;
  Headless_GetCounts(&now);
  const bool balanced = std::memcmp(&now, &counts, sizeof now) == 0;
  counts = now;
  return balanced;
}

}  // namespace vn::cases

#endif
