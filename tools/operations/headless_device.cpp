#include "tools/operations/headless_device.h"

#include <vncore/platform/headless/headless.h>
#include "device/realized_palette.h"
#include "kernel/guards.h"
#include "tools/formats/surface_picture.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

constexpr int32_t kReservedColors = 20;  // the usual palette display keeps these for itself
constexpr int32_t kDotsPerInch = 96;
// With little memory, pictures beyond this lie in temporary files, whatever made them.
constexpr uint64_t kLargestBlock = 4 << 20;

}  // namespace

void ClaimWin32s() {
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

void HeadlessDevice::Paint(BitmapHandle* bitmap, const RECT* source) {
  const ScreenDC screen;
  const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), bitmap));
  const RECT all = {0, 0, width_, height_};
  const VnStatus painted =
      Vn_PaintDC(screen.get(), bitmap, source, nullptr, &all, nullptr, SRCCOPY);
  if (painted != OK) throw Failure(StatusText(painted));
}

void HeadlessDevice::PaintEffect(BitmapHandle* bitmap, const RECT* source, uint32_t effect,
                                 BitmapHandle* before) {
  const ScreenDC screen;
  const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), bitmap));
  const RECT all = {0, 0, width_, height_};
  VnStatus painted = OK;
  if (before->Flags & FLAG_ALLOCATED) {
    // By colours, since the palette in force is the other picture's.
    const DisplayModeScope colors(MODE_DEVICE_INDEXES, 0);
    painted = Vn_PaintDC(screen.get(), before, nullptr, nullptr, &all, nullptr, SRCCOPY);
  }
  if (painted == OK) {
    painted =
        Vn_PaintDCEffect(screen.get(), bitmap, source, nullptr, &all, nullptr, SRCCOPY, effect);
  }
  // What the callback stopped, it tells of itself.
  if (painted != OK && painted != kStopped) throw Failure(StatusText(painted));
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
