// Pictures of every format and kind: what they show, damaged ones, written ones.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tests/support/temporary_folder.h"
#include "tests/tool/samples.h"
#include "tools/commands/chart.h"
#include "tools/terminal/failure.h"

namespace vn::test {
namespace {

struct Format {
  std::string extension;
  void (*samples)(bool each, const UseSample& use);
  bool exact;  // keeps depth, palette and every pixel
};

const Format kFormats[] = {
    {"png", ForPngSamples, true},
    {"bmp", ForBmpSamples, true},
#ifdef VNCORE_TOOL_JPEG
    {"jpeg", ForJpegSamples, false},
#endif
#ifdef VNCORE_TOOL_TIFF
    {"tif", ForTiffSamples, true},
#endif
};

class Formats : public testing::Test {
 protected:
  const TemporaryFolder folder_;
};

TEST_F(Formats, EveryKindShowsItsSamples) {
  const std::string path = folder_.File("in");
  for (const Format& format : kFormats) {
    format.samples(false, [&](const Sample& sample) {
      SCOPED_TRACE(sample.kind);
      WriteFile(path, sample.bytes);
      for (const Rgb background : {kWhite, Rgb{10, 200, 77}}) {
        const Seen seen = Look(path, background);
        ASSERT_TRUE(seen.width == sample.width && seen.height == sample.height);
        EXPECT_TRUE(seen.bits == sample.bits || !(background == kWhite));
        if (sample.hasResolution) {
          EXPECT_TRUE(seen.xDotsPerInch == 300 && seen.yDotsPerInch == 150);
        }
        ExpectShows(
            seen, [&](int32_t x, int32_t y) { return sample.shows(x, y, background); },
            sample.tolerance);
      }
    });
  }
}

// A cut file is a failure. Damaged at random it may be a picture; a failure is one line.
TEST_F(Formats, DamageIsAFailureOrAPictureNeverMore) {
  const std::string path = folder_.File("in");
  Random random(2);
  for (const Format& format : kFormats) {
    format.samples(true, [&](const Sample& sample) {
      SCOPED_TRACE(sample.kind);
      const std::string& sound = sample.bytes;
      const size_t end = sound.size() - std::min(sound.size(), sample.padding);
      for (size_t length = 0; length < end; length += 1 + length / 10) {
        WriteFile(path, sound.substr(0, length));
        EXPECT_THROW(Look(path), tool::Failure) << "cut to " << length;
      }
      for (int i = 0; i < 60; ++i) {
        std::string damaged = sound;
        for (int32_t bytes = random.Between(1, 4); bytes > 0; --bytes) {
          const int32_t at = random.Between(1, static_cast<int32_t>(sound.size()) - 1);
          damaged[at] = static_cast<char>(random.Next());
        }
        WriteFile(path, damaged);
        try {
          Look(path);
        } catch (const tool::Failure& failure) {
          EXPECT_EQ(std::string(failure.what()).find('\n'), std::string::npos);
        }
      }
    });
  }
}

enum class Palette { kRandom, kRamp, kTurnedRamp };

std::vector<RGBQUAD> MakePalette(Palette palette, int32_t bits, Random& random) {
  std::vector<RGBQUAD> colors = tool::GrayRamp(1 << bits);
  if (palette == Palette::kTurnedRamp) std::reverse(colors.begin(), colors.end());
  for (RGBQUAD& color : colors) {
    if (palette == Palette::kRandom) random.Fill(&color, 3);
  }
  return colors;
}

void ExpectKept(const Format& format, const std::string& path, int32_t bits, Palette palette,
                Random& random) {
  tool::PictureInfo info;
  info.width = 411;
  info.height = 90;
  info.bits = bits;
  info.xDotsPerInch = 300;
  info.yDotsPerInch = 72;
  if (bits <= 8) info.colors = MakePalette(palette, bits, random);
  // Areas of one colour, 16 pixels wide, where edges within a block would be lost.
  const int32_t side = format.exact ? 1 : 16;
  const auto pixelAt = [&](int32_t x, int32_t y) {
    const auto index = static_cast<uint32_t>(x / side * 5 + y / side * 11 + (x / side ^ y / side));
    return bits == 24 ? index * 9001 & 0xFFFFFF : index & ((1u << bits) - 1);
  };
  WritePicture(path, info, pixelAt);
  const Seen seen = Look(path);
  const bool gray = bits <= 8 && palette != Palette::kRandom;
  EXPECT_EQ(seen.bits, format.exact ? bits : gray ? 8 : 24);
  EXPECT_TRUE(seen.xDotsPerInch == 300 && seen.yDotsPerInch == 72);
  if (format.exact) {
    ASSERT_EQ(seen.palette.size(), info.colors.size());
    const size_t bytes = info.colors.size() * sizeof(RGBQUAD);
    EXPECT_TRUE(bytes == 0 || std::memcmp(seen.palette.data(), info.colors.data(), bytes) == 0);
  }
  ExpectShows(
      seen,
      [&](int32_t x, int32_t y) {
        const uint32_t pixel = pixelAt(x, y);
        return bits <= 8
                   ? ColorOf(info.colors[pixel])
                   : Rgb{static_cast<int32_t>(pixel >> 16), static_cast<int32_t>(pixel >> 8 & 255),
                         static_cast<int32_t>(pixel & 255)};
      },
      format.exact ? 0 : 8);
}

TEST_F(Formats, WrittenPicturesReadBackWithPaletteAndResolution) {
  Random random(3);
  for (const Format& format : kFormats) {
    for (const int32_t bits : {1, 4, 8, 24}) {
      for (const Palette palette : {Palette::kRandom, Palette::kRamp, Palette::kTurnedRamp}) {
        SCOPED_TRACE(Told(format.extension, bits, "bits, palette", static_cast<int>(palette)));
        ExpectKept(format, folder_.File("out." + format.extension), bits, palette, random);
      }
    }
  }
}

TEST_F(Formats, AnUnfinishedPictureLeavesNothing) {
  for (const Format& format : kFormats) {
    tool::PictureInfo info;
    info.width = 3000;
    info.height = 40;
    const auto sink =
        tool::CreatePicture(tool::OpenPictureFile(folder_.File("out." + format.extension)), info);
    std::vector<uint8_t> row(9000);
    Random random(4);
    for (int32_t y = 0; y < 30; ++y) {
      random.Fill(row.data(), row.size());
      sink->WriteRow(row.data());
    }
  }
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{});
}

// A device without room is written directly, under whatever name.
TEST_F(Formats, AFullDiskIsAFailureInOneLine) {
  for (const Format& format : kFormats) {
    const std::string path = folder_.File("out." + format.extension);
    ASSERT_EQ(symlink("/dev/full", path.c_str()), 0);
    tool::PictureInfo info;
    info.width = info.height = 300;
    try {
      WritePicture(path, info, [](int32_t, int32_t) { return 0; });
      ADD_FAILURE() << path << " was written";
    } catch (const tool::Failure& failure) {
      EXPECT_EQ(failure.what(), "cannot write " + path + ": " + std::strerror(ENOSPC));
    }
  }
}

TEST(Chart, FitsEverySize) {
  for (const auto& [width, height] : {std::pair{1, 1}, {2, 3}, {7, 40}, {300, 200}}) {
    tool::Chart chart(width, height);
    std::vector<uint8_t> row(static_cast<size_t>(width) * 3);
    for (int32_t y = 0; y < height; ++y) {
      chart.ReadRow(row.data());
      const auto edge = {row.front(), row.back()};
      EXPECT_EQ(std::count(edge.begin(), edge.end(), 255), 2) << "the white frame, line " << y;
    }
  }
}

}  // namespace
}  // namespace vn::test
