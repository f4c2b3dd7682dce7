// Paints of a 1-bit page as gray and by vote beside Leptonica's scale-to-gray of the same factor,
// which makes its result.
#include <leptonica/allheaders.h>

#include "bench/beside_peer.h"
#include "bench/painting.h"
#include "kernel/pixel_format.h"

namespace vn::bench {
namespace {

constexpr int32_t kWidth = 2400, kHeight = 3504;  // A4 at 300 dots per inch, nearly

PIX* PixOf(BitmapHandle* picture) {
  PIX* const pix = pixCreate(picture->Width, picture->Height, 1);
  const BitmapLock lock(picture);
  for (int32_t y = 0; y < picture->Height; ++y) {
    const uint8_t* const row = picture->Bits + static_cast<size_t>(y) * picture->BytesPerLine;
    for (int32_t x = 0; x < picture->Width; ++x)
      pixSetPixel(pix, x, y, IndexReader<1>::Get(row, static_cast<size_t>(x)));
  }
  return pix;
}

// To `percent` of the page, gray on a palette device and votes on one of 1 bit, beside what `scale`
// makes of it.
void Beside(benchmark::State& state, uint32_t mode, int32_t percent, PIX* (*scale)(PIX*)) {
  const int32_t width = kWidth * percent / 100, height = kHeight * percent / 100;
  Picture picture(kWidth, kHeight, 1);
  Painting painting(picture, width, height, mode == MODE_BITONAL_VOTE ? 1 : 8, mode, 0);
  PIX* const page = PixOf(picture);
  const auto peer = [&] {
    PIX* made = scale(page);
    if (!made) std::abort();
    pixDestroy(&made);
  };
  const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
  BesidePeer(
      state, static_cast<double>(pixels), [&] { painting.Paint(); }, peer,
      pixels + size_t{picture->BytesPerLine} * kHeight);
  PIX* last = page;
  pixDestroy(&last);
}

struct Case {
  const char* name;
  uint32_t mode;
  int32_t percent;
  PIX* (*scale)(PIX*);
};
constexpr Case kCases[] = {
    {"Paint/gray/100/Leptonica", MODE_BITONAL_GRAY, 100,
     [](PIX* page) { return pixConvert1To8(nullptr, page, 0, 255); }},
    {"Paint/gray/50/Leptonica", MODE_BITONAL_GRAY, 50, pixScaleToGray2},
    {"Paint/gray/25/Leptonica", MODE_BITONAL_GRAY, 25, pixScaleToGray4},
    {"Paint/gray/40/Leptonica", MODE_BITONAL_GRAY, 40,
     [](PIX* page) { return pixScaleToGray(page, 0.4f); }},
    {"Paint/gray/200/Leptonica", MODE_BITONAL_GRAY, 200,
     [](PIX* page) {
       PIX* gray = pixConvert1To8(nullptr, page, 0, 255);
       PIX* const twice = pixScaleGray2xLI(gray);
       pixDestroy(&gray);
       return twice;
     }},
    {"Paint/vote/50/Leptonica", MODE_BITONAL_VOTE, 50, pixScaleToGray2},
    {"Paint/vote/25/Leptonica", MODE_BITONAL_VOTE, 25, pixScaleToGray4},
    {"Paint/vote/40/Leptonica", MODE_BITONAL_VOTE, 40,
     [](PIX* page) { return pixScaleToGray(page, 0.4f); }},
};

const bool registered = [] {
  for (const Case& c : kCases) {
    benchmark::RegisterBenchmark(c.name, Beside, c.mode, c.percent, c.scale)
        ->UseManualTime()
        ->Iterations(15)
        ->Unit(benchmark::kMillisecond);
  }
  return true;
}();

}  // namespace
}  // namespace vn::bench
