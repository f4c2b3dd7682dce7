// Records without storage, defaults, the status callback, the version.
#include <utility>

#include <vncore/vn_version.h>
#include "kernel/pixel_format.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

constexpr int32_t kResolution = 150;  // dots per inch, where the thread's default says nothing

// The registered sign in Windows-1252.
constexpr VersionRecord kVersion = {"VORNKIT\xAE DLL for Win32",
                                    0,
                                    VNCORE_VERSION_MAJOR,
                                    VNCORE_VERSION_MINOR,
                                    "Aug 22 1996",
                                    "16:40:36"};

bool IsDepth(int32_t bits) {
  return WithDepth(bits, [](auto) {});
}

void FillDibHeader(BitmapHandle* bitmap) {
  BITMAPINFOHEADER& header = bitmap->DibHeader;
  header.biSize = sizeof header;
  header.biWidth = bitmap->Width;
  header.biHeight = bitmap->Height;
  header.biPlanes = 1;
  header.biBitCount = static_cast<WORD>(bitmap->BitsPerPixel);
  header.biSizeImage = bitmap->DataSize;
  header.biClrUsed = static_cast<DWORD>(bitmap->ColorCount);
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_InitBitmap(BitmapHandle* bitmap, uint32_t width, uint32_t height,
                               int32_t bitsPerPixel) {
  const vn::ThreadSettings& settings = vn::CurrentThreadSettings();
  *bitmap = BitmapHandle{};
  if (!vn::IsDepth(bitsPerPixel)) return ERR_BITS_PER_PIXEL;
  bitmap->Width = static_cast<int32_t>(width);
  bitmap->Height = static_cast<int32_t>(height);
  bitmap->BitsPerPixel = bitsPerPixel;
  bitmap->BytesPerLine = vn::StrideOf(width, static_cast<uint32_t>(bitsPerPixel));
  bitmap->DataSize = height * bitmap->BytesPerLine;
  bitmap->ViewOrigin = VIEW_BOTTOM_FIRST;
  bitmap->DitherMethod = settings.DefaultDithering;
  if (bitsPerPixel <= 8) {
    bitmap->ColorOrder = ORDER_RGB;
    bitmap->ColorCount = 1 << bitsPerPixel;
  } else {
    bitmap->ColorOrder = ORDER_BGR;
  }
  const auto orUsual = [](int32_t value) { return value > 0 ? value : vn::kResolution; };
  bitmap->XResolution = orUsual(settings.DefaultXResolution);
  bitmap->YResolution = orUsual(settings.DefaultYResolution);
  vn::FillDibHeader(bitmap);
  return OK;
}

VnStatus VN_CALL Vn_VersionInfo(VersionRecord* info) {
  *info = vn::kVersion;
  return OK;
}

VnStatusCallBack VN_CALL Vn_SetStatusCallBack(VnStatusCallBack callback) {
  return std::exchange(vn::CurrentThreadSettings().StatusCallBack, callback);
}
VnStatusCallBack VN_CALL Vn_GetStatusCallBack(void) {
  return vn::CurrentThreadSettings().StatusCallBack;
}

VnStatus VN_CALL Vn_DefaultDithering(uint32_t method) {
  constexpr uint32_t kLastMethod = 8;
  if (method > kLastMethod) return ERR_INVALID_PARAMETER;
  vn::CurrentThreadSettings().DefaultDithering = method;
  return OK;
}

int32_t VN_CALL Vn_SetDefaultXResolution(int32_t dotsPerInch) {
  return std::exchange(vn::CurrentThreadSettings().DefaultXResolution, dotsPerInch);
}
int32_t VN_CALL Vn_SetDefaultYResolution(int32_t dotsPerInch) {
  return std::exchange(vn::CurrentThreadSettings().DefaultYResolution, dotsPerInch);
}
int32_t VN_CALL Vn_GetDefaultXResolution(void) {
  return vn::CurrentThreadSettings().DefaultXResolution;
}
int32_t VN_CALL Vn_GetDefaultYResolution(void) {
  return vn::CurrentThreadSettings().DefaultYResolution;
}
