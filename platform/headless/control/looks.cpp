// A look at pixels: the screen's, and those that a context draws on.
#include <cstring>

#include "platform/headless/devices/context.h"

namespace headless {
namespace {

Headless_Surface LookAt(const Surface& pixels) {
  Headless_Surface shown = {pixels.top,
                            pixels.width,
                            pixels.height,
                            static_cast<int32_t>(pixels.layout.bits),
                            static_cast<int32_t>(pixels.pitch),
                            {}};
  if (pixels.colors) {
    std::memcpy(shown.colors, pixels.colors->entries.data(), sizeof shown.colors);
  } else if (pixels.monochrome()) {
    shown.colors[1] = QuadOf(0xFFFFFF);
  }
  return shown;
}

}  // namespace
}  // namespace headless

using namespace headless;

void Headless_GetScreen(Headless_Surface* surface) {
  const std::lock_guard lock(GdiMutex());
  *surface = LookAt(Screen()->surface);
}

int32_t Headless_GetSurface(HDC context, Headless_Surface* surface) {
  const std::lock_guard lock(GdiMutex());
  const auto* found = Find<Context>(context);
  const Surface* target = found ? found->Target() : nullptr;
  if (!target) return 0;
  *surface = LookAt(*target);
  return 1;
}
