// The description of a DIB, with room for a full table.
#ifndef VNCORE_TESTS_SUPPORT_DIB_INFO_H
#define VNCORE_TESTS_SUPPORT_DIB_INFO_H

#include <cstdint>

#include <vncore/platform/win32.h>

namespace vn::test {

// Of a table either form.
struct DibInfo {
  BITMAPINFOHEADER header;
  union {
    RGBQUAD colors[256];
    WORD indexes[512];
  };
  BITMAPINFO* get() { return reinterpret_cast<BITMAPINFO*>(this); }
};

inline DibInfo DibOf(int32_t width, int32_t height, int32_t bits) {
  DibInfo info{};
  info.header.biSize = sizeof info.header;
  info.header.biWidth = width;
  info.header.biHeight = height;
  info.header.biPlanes = 1;
  info.header.biBitCount = static_cast<WORD>(bits);
  return info;
}

}  // namespace vn::test

#endif
