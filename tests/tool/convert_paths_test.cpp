// vncore convert: the ways that rows take from file to file, whatever is done to them.
#include <gtest/gtest.h>

#include "tests/tool/convert.h"
#include "tools/formats/page_files.h"

namespace vn::test {
namespace {

// Noise and repetitions by turns: whatever way zlib goes, the pixels are the same, and none costs
// much.
TEST_F(Convert, CompressionFollowsThePicture) {
  tool::PictureInfo info;
  info.width = 700;
  info.height = 900;
  uint32_t noise = 1;
  WritePicture(work_.File("both.bmp"), info, [&](int32_t x, int32_t y) {
    noise = noise * 1664525 + 1013904223;
    return y / 300 == 1 ? noise >> 8 : static_cast<uint32_t>(x % 13 * (y % 7) * 4096);
  });
  const Seen in = Look("both.bmp");
  const auto size = [&](const std::string& options) {
    ExpectRuns("convert both.bmp both.png " + options);
    ExpectShows(Look("both.png"), [&](int32_t x, int32_t y) { return in.At(x, y); });
    return ReadFile(work_.File("both.png")).size();
  };
  EXPECT_LT(size(""), size("--compression 5") * 1.1);
  EXPECT_LT(size("--compression 9"), size("--compression 0"));
}

// Whether a bitmap holds the picture or its rows go straight through, in whatever order they come.
TEST_F(Convert, StreamedRowsAreThoseOfABitmap) {
  for (const int32_t bits : {1, 4, 8, 24}) {
    Make("some.png", 83, 41, bits);
    ExpectRuns("convert some.png some.bmp");
    for (const std::string in : {"some.png", "some.bmp"}) {
      for (const std::string options :
           {"", "--scale 83x20", "--scale 31x41", "--scale 200x300", "--scale 1x1",
            "--crop 7,5,50,30", "--crop 7,5,50,30 --scale 64x7 --crop 3,1,11,5",
            "--scale 33% --crop 1,1,20,9 --mirror", "--resample 31x7", "--fit 83x20",
            "--crop 7,5,50,30 --resample 50% --scale 11x11"}) {
        SCOPED_TRACE(in + " " + std::to_string(bits) + " " + options);
        Result(options, in);
      }
    }
  }
}

#ifdef VNCORE_TOOL_TIFF
// Every format goes through pipes, also one that is not written in its order.
TEST_F(Convert, StandardStreamsHoldPictures) {
  const auto at = [&](int32_t x, int32_t y) { return in_.At(x, y); };
  const std::string pipe = "mkfifo pipe; cat in.tif >pipe & ";
  for (const std::string format : {"png", "bmp", "tif"}) {
    const Outcome written = Run("convert in.png - --format " + format);
    EXPECT_EQ(written.status, 0) << written.error;
    WriteFile(work_.File("in." + format), written.out);
    ExpectShows(Look("in." + format), at);
    ExpectRuns("convert - out.png <in." + format);
    ExpectShows(Look("out.png"), at);
  }
  EXPECT_EQ(Run("convert - out.png --flip --flip <pipe", pipe).error, "");
  ExpectShows(Look("out.png"), at);
}

TEST_F(Convert, PagesAreTakenOrTold) {
  {
    tool::PageFiles files(work_.File("three.tif"), {}, 3);
    for (int32_t page = 1; page <= 3; ++page) {
      tool::PictureInfo info;
      info.width = 10 * page;
      info.height = 4;
      const std::vector<uint8_t> row(static_cast<size_t>(30 * page), static_cast<uint8_t>(page));
      tool::PictureSink& sink = files.Begin(info);
      for (int i = 0; i < 4; ++i)
        sink.WriteRow(row.data());
    }
    files.Finish();
  }
  const auto expectPage = [&](const std::string& name, int32_t page, int32_t number) {
    const auto picture = tool::OpenPicture(work_.File(name), {.page = page});
    ASSERT_EQ(picture->Info().width, 10 * number);
    std::vector<uint8_t> row(static_cast<size_t>(30 * number));
    picture->ReadRow(row.data());
    EXPECT_EQ(row.back(), number);
  };
  const Outcome told = Run("convert three.tif out.png");
  EXPECT_NE(told.error.find("warning: three.tif: the first of 3 pages"), std::string::npos);
  expectPage("out.png", 0, 1);
  ExpectRuns("convert three.tif out.png --page 2");
  expectPage("out.png", 0, 2);
  ExpectRuns("convert - out.tif --all-pages --crop 0,1,10,2 --scale 300% <three.tif");
  EXPECT_EQ(tool::OpenPicture(work_.File("out.tif"), {})->Info().facts.pages, 3);
  ExpectRuns("convert three.tif out.tif --all-pages --flip");
  ExpectRuns("convert three.tif out.png --all-pages");
  for (int32_t page = 1; page <= 3; ++page) {
    expectPage("out.tif", page, page);
    expectPage("out-" + std::to_string(page) + ".png", 0, page);
  }
  EXPECT_EQ(Run("print three.tif - --all-pages --paper A6 --dpi 30 -o pages.tif <pipe",
                "mkfifo pipe; cat in.png >pipe & ")
                .error,
            "");
  EXPECT_NE(Run("info pages.tif").out.find("pages       4"), std::string::npos);
  ExpectFails("convert three.tif out.png --page 4");
  ExpectFails("convert three.tif - --format png --all-pages");
  // One file's second page would have the name of another file's only page.
  ExpectRuns("convert three.tif three-2.tif --page 2");
  ExpectFails("convert three.tif three-2.tif --into apart --all-pages --format png");
  ExpectRuns("convert three.tif three-2.tif --into apart --all-pages");
}
#endif

#ifndef __SANITIZE_ADDRESS__  // which takes terabytes of addresses itself
// More than the process may have: the rows then lie in a temporary file unasked.
TEST_F(Convert, WhatDoesNotFitIsWorkedOnInAFile) {
  ExpectRuns("chart big.bmp --size 7000x5000");
  const Outcome outcome = Run("convert big.bmp out.bmp --flip", "ulimit -v 200000;");
  EXPECT_EQ(outcome.status, 0) << outcome.error;
  ExpectRuns("convert big.bmp whole.bmp --flip");
  EXPECT_TRUE(ReadFile(work_.File("out.bmp")) == ReadFile(work_.File("whole.bmp")));
}
#endif

}  // namespace
}  // namespace vn::test
