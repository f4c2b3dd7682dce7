#include "tools/headless_device.h"

#include <cstring>

#include "kernel/platform_objects.h"
#include "platform/headless/headless.h"
#include "tools/failure.h"
#include "tools/interrupt.h"

namespace vn::tool {
namespace {

// A palette selected and realised in a context, for as long as it is painted on.
class RealizedPalette {
 public:
  RealizedPalette(HDC context, HPALETTE palette) : context_(context), palette_(palette) {
    if (!palette_) return;
    before_ = SelectPalette(context_, palette_.get(), FALSE);
    RealizePalette(context_);
  }
  RealizedPalette(const RealizedPalette&) = delete;
  RealizedPalette& operator=(const RealizedPalette&) = delete;
  ~RealizedPalette() {
    if (before_) SelectPalette(context_, before_, FALSE);
  }

 private:
  HDC context_;
  OwnedObject<HPALETTE> palette_;
  HPALETTE before_ = {};
};

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

PictureInfo HeadlessDevice::Info() const {
  Headless_Surface surface;
  Headless_GetScreen(&surface);
  PictureInfo info;
  info.width = surface.width;
  info.height = surface.height;
  info.bits = surface.bitsPerPixel <= 8 ? surface.bitsPerPixel : 24;
  if (info.bits <= 8) info.colors.assign(surface.colors, surface.colors + (1 << info.bits));
  return info;
}

void HeadlessDevice::WriteTo(PictureSink& sink) const {
  Headless_Surface surface;
  Headless_GetScreen(&surface);
  const auto width = static_cast<uint32_t>(surface.width);
  const bool widen = surface.bitsPerPixel == 16;
  std::vector<uint8_t> wide(widen ? StrideOf(width, 24) : 0);
  for (int32_t y = 0; y < surface.height; ++y) {
    ThrowIfInterrupted();
    const uint8_t* row = surface.bits + static_cast<size_t>(y) * surface.stride;
    if (widen) {
      std::memcpy(wide.data(), row, size_t{width} * 2);
      Vn_ConvertBuffer(wide.data(), width, 16, 24, ORDER_BGR, ORDER_BGR, nullptr, nullptr);
      row = wide.data();
    }
    sink.WriteRow(row);
  }
}

}  // namespace vn::tool
