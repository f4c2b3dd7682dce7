// PBM, PGM and PPM files: what each kind shows, what it is written as, and damage.
#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "tests/tool/samples.h"
#include "tools/terminal/failure.h"

namespace vn::test {
namespace {

TEST(Pnm, EachKindShowsItsSamplesAndCutsAreFailures) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.pnm");
  const Rgb black{0, 0, 0}, gray{85, 85, 85}, color{255, 128, 0};
  const struct {
    std::string bytes;
    int32_t bits;
    Rgb first, last;
    size_t least;  // bytes without which it is no picture
  } kinds[] = {{"P1\n# 1 1\n2 2\n1 0\n00", 1, black, kWhite, 19},
               {"P2 2 1#3\n3\n1 3", 8, gray, kWhite, 14},
               {"P3\n2 1 255\n255 128 0 0 0 0\n", 24, color, black, 26},
               {std::string("P4\n9 1\n\xFF\0", 9), 1, black, kWhite, 9},
               {"P5 2 1 255\nU\xFF", 8, gray, kWhite, 13},
               {std::string("P5 2 1 300\n\0d\1,", 15), 8, gray, kWhite, 15},
               {std::string("P6 1 2 255\n\xFF\x80\0\0\0\0", 17), 24, color, black, 17}};
  for (const auto& kind : kinds) {
    SCOPED_TRACE(kind.bytes);
    WriteFile(path, kind.bytes);
    const Seen seen = Look(path);
    EXPECT_EQ(seen.bits, kind.bits);
    EXPECT_EQ(seen.pixels.front(), kind.first);
    EXPECT_EQ(seen.pixels.back(), kind.last);
    for (size_t length = 0; length < kind.least; ++length) {
      WriteFile(path, kind.bytes.substr(0, length));
      EXPECT_THROW(Look(path), tool::Failure) << length;
    }
  }
  for (const std::string bad : {"P5 0 1 255\n", "P5 1 1 0\n0", "P5 1 1 65536\n00", "P2 1 1 9\n-1",
                                "P1 1 1\n2", "P5 99999999999 1 255\n0", "P3 1 1 255\n1 2x 3"}) {
    WriteFile(path, bad);
    EXPECT_THROW(Look(path), tool::Failure) << bad;
  }
}

TEST(Pnm, TheLeastKindIsWrittenOrTheOneThatIsNamed) {
  const TemporaryFolder folder;
  tool::PictureInfo info;
  info.width = 11;
  info.height = 3;
  const auto write = [&](const std::string& name, int32_t bits, bool gray) {
    info.bits = bits;
    info.colors = bits <= 8 ? tool::GrayRamp(1 << bits) : std::vector<RGBQUAD>();
    if (!gray && bits <= 8) info.colors[0].rgbBlue = 9;
    const auto pixelAt = [&](int32_t x, int32_t y) {
      return static_cast<uint32_t>(x + y * 5) & ((1u << bits) - 1);
    };
    WritePicture(folder.File(name), info, pixelAt);
    ExpectShows(Look(folder.File(name)), [&](int32_t x, int32_t y) {
      const uint32_t pixel = pixelAt(x, y);
      return bits == 24 ? Rgb{0, 0, static_cast<int32_t>(pixel)} : ColorOf(info.colors[pixel]);
    });
    return ReadFile(folder.File(name)).substr(0, 2);
  };
  EXPECT_EQ(write("out.pnm", 1, true), "P4");
  EXPECT_EQ(write("out.pnm", 4, true), "P5");
  EXPECT_EQ(write("out.pnm", 8, true), "P5");
  EXPECT_EQ(write("out.pnm", 1, false), "P6");
  EXPECT_EQ(write("out.pnm", 24, true), "P6");
  EXPECT_EQ(write("out.pgm", 1, true), "P5");
  EXPECT_EQ(write("out.ppm", 8, true), "P6");
  EXPECT_THROW(write("out.pbm", 8, true), tool::Failure);
  EXPECT_THROW(write("out.pgm", 24, true), tool::Failure);
}

}  // namespace
}  // namespace vn::test
