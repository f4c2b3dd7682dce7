#include "tools/operations/headless_device.h"

#include <utility>

#include <vncore/platform/headless/headless.h>
#include "device/realized_palette.h"
#include "kernel/guards.h"
#include "kernel/rects.h"
#include "tools/formats/surface_picture.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/status_listener.h"

namespace vn::tool {
namespace {

constexpr int32_t kReservedColors = 20;  // the usual palette display keeps these for itself
constexpr int32_t kDotsPerInch = 96;
// With little memory, pictures beyond this lie in temporary files, whatever made them.
constexpr uint64_t kLargestBlock = 4 << 20;

void Require(VnStatus painted) {
  if (painted != OK) throw Failure(StatusText(painted));
}

VnStatus PaintPlain(HDC screen, const RECT& area, const Painting& picture) {
  return Vn_PaintDC(screen, picture.bitmap, &picture.source, nullptr, &picture.destination, &area,
                    SRCCOPY);
}

void BlackenAround(HDC screen, const RECT& area, const RECT& kept) {
  const auto blacken = [&](LONG left, LONG top, LONG right, LONG bottom) {
    if (left < right && top < bottom)
      PatBlt(screen, left, top, right - left, bottom - top, BLACKNESS);
  };
  blacken(area.left, area.top, area.right, kept.top);
  blacken(area.left, kept.bottom, area.right, area.bottom);
  blacken(area.left, kept.top, kept.left, kept.bottom);
  blacken(kept.right, kept.top, area.right, kept.bottom);
}

// What of `area` the region's bounds take up when the bitmap is laid over the destination, or all of
// it.
RECT RegionBounds(const Painting& picture, const RECT& area) {
  if (!Vn_BitmapHasRgn(picture.bitmap)) return area;
  const RECT& to = picture.destination;
  const auto side = [](LONG low, LONG high) { return static_cast<int32_t>(high - low); };
  const RegionTransform onto = {VIEW_TOP_FIRST,
                                side(to.left, to.right),
                                picture.bitmap->Width,
                                side(to.top, to.bottom),
                                picture.bitmap->Height,
                                static_cast<int32_t>(to.left),
                                static_cast<int32_t>(to.top)};
  RECT bounds{};
  Require(Vn_GetBitmapRgnBounds(picture.bitmap, &onto, &bounds));
  IntersectRects(&bounds, bounds, area);
  return bounds;
}

}  // namespace

void ClaimWin32s() {
  static bool claimed = false;
  if (std::exchange(claimed, true)) return;
  Headless_SetLargestBlock(kLargestBlock);
  Headless_SetVersion(HEADLESS_VERSION_WIN32S);
  if (!Headless_Restart()) throw Failure("the library cannot be started again");
}

HeadlessDevice::HeadlessDevice(int32_t width, int32_t height, int32_t bits)
    : width_(width), height_(height) {
  const Headless_Display display = {width,           height,        bits,        bits == 8,
                                    kReservedColors, DT_RASDISPLAY, kDotsPerInch};
  if (!Headless_SetDisplay(&display)) {
    throw Failure("there is not enough memory for a device of " + std::to_string(width) + "x" +
                  std::to_string(height));
  }
}

void HeadlessDevice::Paint(const Painting& picture) {
  const ScreenDC screen;
  BlackenAround(screen.get(), Area(), picture.destination);
  const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), picture.bitmap));
  Require(PaintPlain(screen.get(), Area(), picture));
}

bool HeadlessDevice::PaintEffect(const Painting& picture, uint32_t effect, const Painting* before) {
  const ScreenDC screen;
  const RECT area = Area();
  const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), picture.bitmap));
  if (before) {
    // By colours, since the palette in force is the other picture's.
    const DisplayModeScope colors(MODE_DEVICE_INDEXES, 0);
    Require(PaintPlain(screen.get(), area, *before));
  }
  BlackenAround(screen.get(), area, picture.destination);
  const auto paint = Vn_BitmapHasRgn(picture.bitmap) ? &Vn_PaintRgnDCEffect : &Vn_PaintDCEffect;
  const RECT clip = RegionBounds(picture, area);
  const VnStatus painted = paint(screen.get(), picture.bitmap, &picture.source, nullptr,
                                 &picture.destination, &clip, SRCCOPY, effect);
  if (painted == kStopped) return false;
  Require(painted);
  return true;
}

void HeadlessDevice::Blacken(const Painting& picture) {
  const ScreenDC screen;
  const RECT area = Area();
  Require(Vn_PaintRgnDC(screen.get(), picture.bitmap, &picture.source, nullptr,
                        &picture.destination, &area, BLACKNESS));
}

PictureInfo HeadlessDevice::Info() const {
  Headless_Surface surface;
  Headless_GetScreen(&surface);
  return SurfaceInfo(surface);
}

void HeadlessDevice::WriteTo(PictureSink& sink) const {
  Headless_Surface surface;
  Headless_GetScreen(&surface);
  WriteSurface(surface, sink);
}

}  // namespace vn::tool
