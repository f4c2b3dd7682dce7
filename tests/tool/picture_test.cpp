// Reading and writing pictures, and damaged ones, against made files.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "tests/tool/damage.h"
#include "tests/tool/made_png.h"
#include "tests/tool/shown_pixels.h"
#include "tests/tool/temporary_folder.h"
#include "tools/chart.h"
#include "tools/failure.h"

namespace vn::test {
namespace {

using tool::Bitmap;

// A name for every format that this tool has.
constexpr const char* kFileNames[] = {
    "out.png",
#ifdef VNCORE_TOOL_JPEG
    "out.jpg",
#endif
#ifdef VNCORE_TOOL_TIFF
    "out.tif",
#endif
};

TEST(Picture, EveryKindShowsItsSamplesInterlacedOrNot) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.png");
  Random random(1);
  for (const PngKind& kind : kPngKinds) {
    for (const auto& [width, height] : {std::pair{1, 1}, {3, 2}, {2, 6}, {37, 21}}) {
      const MadePng picture(kind, width, height, random);
      for (const bool interlaced : {false, true}) {
        for (const Rgb background : {Rgb{255, 255, 255}, Rgb{10, 200, 77}}) {
          SCOPED_TRACE(testing::Message()
                       << "colour type " << kind.colorType << ", depth " << kind.depth
                       << ", transparent " << kind.transparent << ", " << width << "x" << height
                       << ", interlaced " << interlaced << ", background " << background.red);
          WriteFile(path, picture.Encode(interlaced));
          Bitmap bitmap;
          Load(path, background, bitmap);
          if (background.red == 255) {
            EXPECT_EQ(bitmap->BitsPerPixel, picture.BitmapBits());
          }
          ExpectShows(bitmap,
                      [&](int32_t x, int32_t y) { return picture.ColorAt(x, y, background); });
          if (HasFatalFailure()) return;
        }
      }
    }
  }
}

TEST(Picture, DamageIsAFailureOrAPictureNeverMore) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.png");
  Random random(2);
  for (const PngKind& kind : kPngKinds) {
    const std::string sound = MadePng(kind, 9, 7, random).Encode(random.Chance(2));
    for (size_t length = 0; length < sound.size(); length += 1 + length / 8) {
      WriteFile(path, sound.substr(0, length));
      Bitmap bitmap;
      EXPECT_THROW(Load(path, {}, bitmap), tool::Failure) << "cut to " << length;
    }
    LoadDamaged(path, sound, 1, random);
  }
}

enum class Palette { kRandom, kRamp, kTurnedRamp };

std::vector<RGBQUAD> MakePalette(Palette palette, int32_t bits, Random& random) {
  std::vector<RGBQUAD> colors = tool::GrayRamp(1 << bits);
  if (palette == Palette::kTurnedRamp) std::reverse(colors.begin(), colors.end());
  if (palette == Palette::kRandom) {
    for (RGBQUAD& color : colors) {
      random.Fill(&color, sizeof color);
      color.rgbReserved = 0;
    }
  }
  return colors;
}

// Writes a picture of random rows and reads it again.
void ExpectKept(const std::string& path, const tool::PictureInfo& info, Random& random) {
  const auto pixelBits = static_cast<unsigned>(info.width * info.bits);
  const size_t rowBytes = (pixelBits + 7) / 8;
  // The last byte's unused bits are nobody's.
  const auto lastBits = static_cast<uint8_t>(pixelBits % 8 ? 0xFF00 >> pixelBits % 8 : 0xFF);
  std::vector<std::vector<uint8_t>> rows(static_cast<size_t>(info.height),
                                         std::vector<uint8_t>(rowBytes));
  const auto sink = tool::CreatePicture(tool::OpenPictureFile(path), info);
  for (auto& row : rows) {
    random.Fill(row.data(), row.size());
    row.back() &= lastBits;
    sink->WriteRow(row.data());
  }
  sink->Finish();

  const auto source = tool::OpenPicture(path, {});
  EXPECT_EQ(source->Info().bits, info.bits);
  EXPECT_EQ(source->Info().xDotsPerInch, info.xDotsPerInch);
  EXPECT_EQ(source->Info().yDotsPerInch, info.yDotsPerInch);
  ASSERT_EQ(source->Info().colors.size(), info.colors.size());
  for (size_t i = 0; i < info.colors.size(); ++i) {
    EXPECT_EQ(std::memcmp(&source->Info().colors[i], &info.colors[i], sizeof(RGBQUAD)), 0);
  }
  for (const auto& row : rows) {
    std::vector<uint8_t> read(rowBytes);
    source->ReadRow(read.data());
    read.back() &= lastBits;
    ASSERT_EQ(read, row);
  }
}

TEST(Picture, WrittenPicturesReadBackWithPaletteAndResolution) {
  const TemporaryFolder folder;
  Random random(3);
  for (const std::string name : kFileNames) {
    if (name == "out.jpg") continue;
    const std::string path = folder.File(name);
    for (const int32_t bits : {1, 4, 8, 24}) {
      for (const Palette palette : {Palette::kRandom, Palette::kRamp, Palette::kTurnedRamp}) {
        for (const auto& [width, height] : {std::pair{29, 5}, {411, 300}}) {
          SCOPED_TRACE(testing::Message() << path << ", " << bits << " bits, palette "
                                          << static_cast<int>(palette) << ", " << width);
          tool::PictureInfo info;
          info.width = width;
          info.height = height;
          info.bits = bits;
          info.xDotsPerInch = 300;
          info.yDotsPerInch = 72;
          if (bits <= 8) info.colors = MakePalette(palette, bits, random);
          ExpectKept(path, info, random);
          if (bits > 8 || HasFatalFailure()) break;
        }
      }
    }
  }
}

TEST(Picture, AnUnfinishedPictureLeavesNothing) {
  const TemporaryFolder folder;
  for (const char* const name : kFileNames) {
    tool::PictureInfo info;
    info.width = 3000;
    info.height = 40;
    const auto sink = tool::CreatePicture(tool::OpenPictureFile(folder.File(name)), info);
    std::vector<uint8_t> row(9000);
    Random random(4);
    for (int32_t y = 0; y < 30; ++y) {
      random.Fill(row.data(), row.size());
      sink->WriteRow(row.data());
    }
  }
  EXPECT_EQ(folder.Names(), std::vector<std::string>{});
}

// A device without room is written directly, under whatever name.
TEST(Picture, AFullDiskIsAFailureInOneLine) {
  const TemporaryFolder folder;
  for (const char* const name : kFileNames) {
    const std::string path = folder.File(name);
    ASSERT_EQ(symlink("/dev/full", path.c_str()), 0);
    tool::PictureInfo info;
    info.width = info.height = 300;
    const std::vector<uint8_t> row(900);
    try {
      const auto sink = tool::CreatePicture(tool::OpenPictureFile(path), info);
      for (int32_t y = 0; y < info.height; ++y)
        sink->WriteRow(row.data());
      sink->Finish();
      ADD_FAILURE() << name << " was written";
    } catch (const tool::Failure& failure) {
      EXPECT_EQ(failure.what(), "cannot write " + path + ": " + std::strerror(ENOSPC));
    }
  }
}

TEST(Picture, AChartFitsEverySize) {
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
