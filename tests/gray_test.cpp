// Gray scale against a model of single pixels, and what becomes of the record around them.
#include "tests/support/failure_walk.h"
#include "tests/support/headless_control.h"
#include "tests/support/slow_color.h"
#include "tests/support/status_log.h"

namespace vn::test {
namespace {

TEST(GrayScale, EqualsTheSlowModelAtEveryDepth) {
  Random random(1);
  const Colors colors = RandomColors(random, 256);
  for (const int32_t bits : kDepths) {
    for (const uint32_t order : {ORDER_RGB, ORDER_BGR}) {
      for (const uint32_t width : {1u, 33u, 34u, 66u, 101u}) {
        Bitmap bitmap(width, 5, bits, VIEW_TOP_FIRST, order, colors.data());
        FillRandom(bitmap, random);
        Bytes expected;
        for (uint32_t row = 0; row < 5; ++row) {
          const Bytes bytes = ReadRow(bitmap, row);
          for (size_t x = 0; x < width; ++x) {
            expected.push_back(static_cast<uint8_t>(
                SlowGray(SlowPixel(bytes, x, static_cast<uint32_t>(bits), order, colors.data()))));
          }
        }
        ASSERT_EQ(Vn_GrayScaleBitmap(bitmap), OK);
        for (uint32_t row = 0; row < 5; ++row) {
          Bytes bytes = ReadRow(bitmap, row);
          bytes.resize(width);
          EXPECT_EQ(bytes, Bytes(&expected[row * width], &expected[row * width] + width))
              << bits << " bits, width " << width;
        }
        EXPECT_EQ(Vn_IsGrayScaleBitmap(bitmap), 1);
      }
    }
  }
}

TEST(GrayScale, OtherDepthsReadAs32BitsWhereTheRowsAreLongEnough) {
  Random random(2);
  for (const bool halftone : {false, true}) {
    const auto run = [&](BitmapHandle* bitmap) {
      return halftone ? Vn_HalfToneBitmap(bitmap, 0) : Vn_GrayScaleBitmap(bitmap);
    };
    Bitmap usual(9, 2, 32), unusual;
    FillRandom(usual, random);
    ASSERT_EQ(Vn_CopyBitmap(unusual, usual), OK);
    unusual->BitsPerPixel = 30;
    ASSERT_EQ(run(usual), OK);
    ASSERT_EQ(run(unusual), OK);
    EXPECT_EQ(ReadAll(unusual), ReadAll(usual));
    Bitmap narrow(9, 2, 24);
    narrow->BitsPerPixel = 20;
    EXPECT_EQ(run(narrow), ERR_NO_BITMAP);
  }
}

TEST(GrayScale, KeepsWhatIsCarriedAndNothingElse) {
  Bitmap bitmap(10, 3, 24);
  bitmap->CarriedTag = 7;
  bitmap->CarriedQuad[3] = 9;
  bitmap->XResolution = 300;
  bitmap->Flags |= FLAG_CARRIED_1000 | FLAG_CARRIED_0080;
  bitmap->DitherMethod = 2;
  StatusLog log;
  ASSERT_EQ(Vn_GrayScaleBitmap(bitmap), OK);
  EXPECT_EQ(log.percents(), ExpectedPercents(3));
  EXPECT_EQ(bitmap->CarriedTag, 7u);
  EXPECT_EQ(bitmap->CarriedQuad[3], 9u);
  EXPECT_EQ(bitmap->XResolution, 300);
  EXPECT_EQ(bitmap->Flags & (FLAG_CARRIED_1000 | FLAG_CARRIED_0080), 0u + FLAG_CARRIED_1000);
  EXPECT_EQ(bitmap->DitherMethod, 7u);
}

HEADLESS_TEST(GrayScale, LeavesTheBitmapOnEveryFailure) {
  const Bytes pixels(20, 5);
  Bitmap bitmap(20, 40, 8);
  WriteRow(bitmap, 0, pixels);
  {
    StatusLog log(4);
    EXPECT_EQ(Vn_GrayScaleBitmap(bitmap), 77);
  }
  EXPECT_EQ(ReadRow(bitmap, 0), pixels);
  WalkFailures(HEADLESS_MEMORY, [&](FailureRound& round) {
    Bitmap copy(20, 1, 8);
    WriteRow(copy, 0, pixels);
    const VnStatus status = round.Run([&] { return Vn_GrayScaleBitmap(copy); });
    // Palettes that could not be made are not reported, here as elsewhere.
    EXPECT_TRUE(status == ERR_NO_MEMORY || status == OK);
    if (status != OK) {
      EXPECT_EQ(ReadRow(copy, 0), pixels);
    }
  });
}

}  // namespace
}  // namespace vn::test
