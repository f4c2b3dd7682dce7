// What tests of painting share: modes, tables, rectangles, a screen, and a watch over device calls.
#ifndef VNCORE_TESTS_SUPPORT_PAINTING_H
#define VNCORE_TESTS_SUPPORT_PAINTING_H

#include <vector>

#include "kernel/vncore.h"
#include "tests/support/headless_control.h"

namespace vn::test {

inline constexpr uint32_t kDefaultMode = MODE_DEVICE_INDEXES | MODE_DITHER;
inline constexpr RGBQUAD kBlack = {0, 0, 0, 0}, kWhite = {255, 255, 255, 0};
inline constexpr RGBQUAD kBlackWhite[2] = {kBlack, kWhite};
inline constexpr RGBQUAD kWhiteBlack[2] = {kWhite, kBlack};
inline constexpr RGBQUAD kRedBlue[2] = {{0, 0, 255, 0}, {255, 0, 0, 0}};

inline RECT RectOf(int32_t left, int32_t top, int32_t right, int32_t bottom) {
  return {left, top, right, bottom};
}

#ifndef _WIN32

// A screen whose palette, if it is a palette device, can be set whole.
inline Headless_Display Screen(int32_t bits) {
  Headless_Display display = DisplayOf(bits);
  display.width = 96;
  display.height = 64;
  display.reservedColors = 0;
  return display;
}

// Every device call of a paint, held to what the renderers promise.
class BandWatch {
 public:
  BandWatch() { Headless_ObserveStretch(&Observe, this); }
  BandWatch(const BandWatch&) = delete;
  BandWatch& operator=(const BandWatch&) = delete;
  ~BandWatch() { Headless_ObserveStretch(nullptr, nullptr); }

  struct Band {
    Headless_StretchCall call;
    BITMAPINFOHEADER header;
  };
  std::vector<Band> bands;

  int32_t Rows() const {
    int32_t rows = 0;
    for (const Band& band : bands)
      rows += band.call.height;
    return rows;
  }

 private:
  static void Observe(void* data, const Headless_StretchCall* call) {
    const BITMAPINFOHEADER& header = call->info->bmiHeader;
    static_cast<BandWatch*>(data)->bands.push_back({*call, header});
    EXPECT_EQ(call->width, call->srcWidth);
    EXPECT_EQ(call->height, call->srcHeight);
    EXPECT_EQ(call->srcY, 0);
    EXPECT_EQ(header.biSize, 40u);
    EXPECT_EQ(header.biPlanes, 1);
    EXPECT_EQ(header.biCompression, static_cast<DWORD>(BI_RGB));
    EXPECT_EQ(header.biWidth, call->srcX + call->width);
    EXPECT_EQ(header.biHeight, call->height);
    const auto bits = static_cast<int64_t>(header.biBitCount) * header.biWidth;
    const int64_t bytes = (bits + 31) / 32 * 4 * header.biHeight;
    EXPECT_EQ(static_cast<int64_t>(header.biSizeImage), bytes);
    EXPECT_TRUE(bytes <= 65536 || header.biHeight == 1) << bytes << " bytes in a band";
    EXPECT_EQ(header.biClrUsed, header.biBitCount <= 8 ? 1u << header.biBitCount : 0u);
  }
};

#endif

}  // namespace vn::test

#endif
