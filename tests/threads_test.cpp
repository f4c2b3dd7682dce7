// Threads that work at the same time, each with bitmaps of its own, come to what one comes to alone.
#include <thread>

#include "tests/support/bitmaps.h"
#include "tests/support/dib_info.h"

namespace vn::test {
namespace {

// FNV-1a.
void Mix(uint64_t* sum, const void* bytes, size_t count) {
  for (size_t i = 0; i < count; ++i)
    *sum = (*sum ^ static_cast<const uint8_t*>(bytes)[i]) * 0x100000001B3u;
}
void MixPixels(uint64_t* sum, BitmapHandle* bitmap) {
  const Bytes pixels = ReadAll(bitmap);
  Mix(sum, pixels.data(), pixels.size());
}

// Paints on a surface in memory, 8 bits deep, and reads it back.
void MixPaint(uint64_t* sum, BitmapHandle* bitmap) {
  const HDC context = CreateCompatibleDC(nullptr);
  DibInfo info = DibOf(50, 40, 8);
  EXPECT_EQ(Vn_GetFixedPalette(info.colors, 8), OK);
  void* bits = nullptr;
  const HBITMAP surface = CreateDIBSection(context, info.get(), DIB_RGB_COLORS, &bits, nullptr, 0);
  const HGDIOBJ before = SelectObject(context, surface);
  const RECT where = {0, 0, 50, 40};
  EXPECT_EQ(Vn_PaintDC(context, bitmap, nullptr, nullptr, &where, nullptr, SRCCOPY), OK);
  Mix(sum, bits, 52 * 40);
  SelectObject(context, before);
  DeleteObject(surface);
  DeleteDC(context);
}

uint64_t Work() {
  Random random(7);
  uint64_t sum = 0xCBF29CE484222325u;
  for (const int32_t bits : kDepths) {
    RandomBitmap bitmap(random, 61, 47, bits);
    SelectEllipse(bitmap, {5, 4, 50, 40});
    EXPECT_EQ(Vn_FillBitmap(bitmap, RGB(200, 90, 30)), OK);
    MixPaint(&sum, bitmap);
    for (const uint32_t flags : {RES_OPTIMIZED_PALETTE | RES_DITHER_METHOD(DITHER_STUCKI),
                                 RES_FIXED_PALETTE | RES_DITHER_METHOD(DITHER_ORDERED)}) {
      Bitmap reduced;
      EXPECT_EQ(Vn_ColorResBitmap(bitmap, reduced, 4, flags, nullptr, 0, nullptr, 0), OK);
      MixPixels(&sum, reduced);
    }
    EXPECT_EQ(Vn_SizeBitmap(bitmap, 90, 31), OK);
    EXPECT_EQ(Vn_HalfToneBitmapExt(bitmap, HALFTONE_CLUSTERED, 3000), OK);
    uint32_t area = 0;
    EXPECT_EQ(Vn_GetBitmapRgnArea(bitmap, &area), OK);
    Mix(&sum, &area, sizeof area);
    MixPixels(&sum, bitmap);
  }
  return sum;
}

TEST(Threads, FourAtOnceComeToWhatOneComesToAlone) {
  const uint64_t alone = Work();
  uint64_t sums[4][3] = {};
  std::vector<std::thread> threads;
  for (auto& rounds : sums) {
    threads.emplace_back([&rounds] {
      for (uint64_t& sum : rounds)
        sum = Work();
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  for (const auto& rounds : sums) {
    for (const uint64_t sum : rounds)
      EXPECT_EQ(sum, alone);
  }
}

}  // namespace
}  // namespace vn::test
