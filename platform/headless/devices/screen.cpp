// The screen: its device, its contexts and the controls that replace it and look at it.
#include "platform/headless/devices/context.h"
#include "platform/headless/devices/device.h"
#include "platform/headless/memory/free_memory.h"
#include "platform/headless/objects/static_colors.h"
#include "platform/headless/surfaces/device_colors.h"

namespace headless {
namespace {

bool Possible(const Headless_Display& d) {
  constexpr int32_t kLargest = 1 << 20;
  const bool depth = d.bitsPerPixel == 1 || d.bitsPerPixel == 4 || d.bitsPerPixel == 8 ||
                     d.bitsPerPixel == 16 || d.bitsPerPixel == 24 || d.bitsPerPixel == 32;
  const bool palette =
      !d.paletteDevice || (d.bitsPerPixel == 8 && d.reservedColors >= 0 &&
                           d.reservedColors <= kStaticColorCount && d.reservedColors % 2 == 0);
  return depth && palette && d.width >= 1 && d.height >= 1 && d.width <= kLargest &&
         d.height <= kLargest && d.dotsPerInch >= 1;
}

std::shared_ptr<Device>& CurrentScreen() {
  static auto* screen = new std::shared_ptr<Device>(
      MakeDevice({1024, 768, 24, 0, kStaticColorCount, DT_RASDISPLAY, 96}));
  return *screen;
}

}  // namespace

std::shared_ptr<ColorTable> Device::Colors() const {
  return palette ? palette->colors() : FixedColors(static_cast<uint32_t>(traits.bitsPerPixel));
}

std::shared_ptr<Device> MakeDevice(const Headless_Display& traits) {
  if (!Possible(traits)) return nullptr;
  auto device = std::make_shared<Device>();
  device->traits = traits;
  if (traits.paletteDevice) {
    device->palette = std::make_unique<SystemPalette>(traits.reservedColors);
  }
  const auto bits = static_cast<uint32_t>(traits.bitsPerPixel);
  const uint64_t stride = RowBytes(static_cast<uint64_t>(traits.width), bits);
  const uint64_t bytes = stride * static_cast<uint64_t>(traits.height);
  if (!FitsInMemory(bytes)) return nullptr;
  device->pixels.resize(static_cast<size_t>(bytes));
  device->surface = {device->pixels.data(), static_cast<ptrdiff_t>(stride),
                     traits.width,          traits.height,
                     LayoutOf(bits),        device->Colors()};
  return device;
}

const std::shared_ptr<Device>& Screen() { return CurrentScreen(); }

}  // namespace headless

using namespace headless;

int32_t Headless_SetDisplay(const Headless_Display* display) {
  return Enter<int32_t>(0, [&]() -> int32_t {
    std::shared_ptr<Device> made = MakeDevice(*display);
    if (!made) return 0;
    CloseContextsOf(*Screen());
    CurrentScreen() = std::move(made);
    return 1;
  });
}

void Headless_GetDisplay(Headless_Display* display) {
  const std::lock_guard lock(GdiMutex());
  *display = Screen()->traits;
}

HDC GetDC(HWND) {
  return Enter<HDC>(nullptr,
                    [] { return AddNew<HDC>(std::make_unique<Context>(OBJ_DC, Screen())); });
}

// 1 for a context of GetDC, 0 for any other and for one that is dead.
int ReleaseDC(HWND, HDC context) {
  return Enter<int>(0, [&] {
    const auto* found = Find<Context>(context);
    return found && found->type() == OBJ_DC && RemoveObject(context) ? 1 : 0;
  });
}
