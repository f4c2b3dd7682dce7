#include "device/dib_layout.h"

#include "kernel/pixel_format.h"
#include "kernel/platform_objects.h"

namespace vn {
namespace {

// Dots per inch and pixels per metre, rounded, in 32-bit arithmetic that wraps.
int32_t PerMetre(int32_t perInch) {
  return static_cast<int32_t>(static_cast<uint32_t>(perInch) * 10000u + 127u) / 254;
}
int32_t PerInch(int32_t perMetre) {
  return static_cast<int32_t>(254u * static_cast<uint32_t>(perMetre) + 5000u) / 10000;
}

}  // namespace

uint32_t DibRowSize(uint32_t width, uint32_t height, uint32_t bits) {
  return ((bits * width + 31) >> 3 & ~3u) * height;
}

uint32_t DibColorCount(const BITMAPINFOHEADER& header) {
  if (header.biSize == kCoreHeaderBytes) {
    // The depth of a short header lies where a long one has the upper half of its height.
    const uint32_t bits = static_cast<uint32_t>(header.biHeight) >> 16;
    return bits == 24 || bits > 31 ? 0 : 1u << bits;
  }
  if (header.biClrUsed) return header.biClrUsed;
  const uint32_t bits = header.biBitCount;
  return bits == 1 || bits == 4 || bits == 8 ? FullColorCount(bits) : 0;
}

uint64_t DibColorBytes(const BITMAPINFOHEADER& header) {
  return uint64_t{DibColorCount(header)} * (header.biSize == kCoreHeaderBytes ? 3 : 4);
}

uint64_t DibPixelOffset(const BITMAPINFOHEADER& header) {
  return header.biSize + DibColorBytes(header);
}

void FillDibHeader(BITMAPINFOHEADER* header, int32_t width, int32_t height, int32_t bits) {
  *header = {};
  header->biSize = kInfoHeaderBytes;
  header->biWidth = width;
  header->biHeight = height;
  header->biPlanes = 1;
  header->biBitCount = bits <= 1 ? 1 : bits <= 4 ? 4 : bits <= 8 ? 8 : 24;
  header->biSizeImage =
      DibRowSize(static_cast<uint32_t>(width), static_cast<uint32_t>(height), header->biBitCount);
}

void StoreResolution(const BitmapHandle& bitmap, BITMAPINFOHEADER* header) {
  header->biXPelsPerMeter = PerMetre(bitmap.XResolution);
  header->biYPelsPerMeter = PerMetre(bitmap.YResolution);
}

void DibResolution::ReplaceZeros() {
  if (x && y) return;
  const ScreenDC screen;
  if (!x) x = GetDeviceCaps(screen.get(), HORZRES);
  if (!y) y = GetDeviceCaps(screen.get(), VERTRES);
}

void DibResolution::Apply(BitmapHandle* bitmap) const {
  bitmap->XResolution = PerInch(x);
  bitmap->YResolution = PerInch(y);
}

void CopyDibColors(const uint8_t* from, uint32_t entryBytes, uint32_t count, RGBQUAD* to) {
  for (uint32_t i = 0; i < count; ++i, from += entryBytes)
    to[i] = {from[0], from[1], from[2], 0};
}

}  // namespace vn
