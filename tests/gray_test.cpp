// Gray scale: odd depths, and what becomes of the record. Pixels are in the numbered cases.
#include "tests/support/bitmaps.h"
#include "tests/support/status_log.h"

namespace vn::test {
namespace {

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
    Bitmap paletteless(9, 2, 24);
    paletteless->BitsPerPixel = 8;
    EXPECT_EQ(run(paletteless), ERR_NO_BITMAP);
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

}  // namespace
}  // namespace vn::test
