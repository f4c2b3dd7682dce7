// Reading and writing pictures, and damaged ones, against made files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "kernel/guards.h"
#include "tests/tool/made_png.h"
#include "tests/tool/temporary_folder.h"
#include "tools/chart.h"
#include "tools/failure.h"
#include "tools/load_bitmap.h"

namespace vn::test {
namespace {

using tool::Bitmap;

Rgb PixelOf(const BitmapHandle& bitmap, const std::vector<RGBQUAD>& colors, const uint8_t* row,
            int32_t x) {
  const auto at = static_cast<size_t>(x);
  switch (bitmap.BitsPerPixel) {
    case 1:
      return PixelReader<1>{row, colors.data()}(at);
    case 4:
      return PixelReader<4>{row, colors.data()}(at);
    case 8:
      return PixelReader<8>{row, colors.data()}(at);
    default:
      return PixelReader<24>{row, nullptr}(at);
  }
}

void ExpectShows(Bitmap& bitmap, const MadePng& picture, Rgb background) {
  std::vector<RGBQUAD> colors(256);
  if (bitmap->ColorCount) {
    ASSERT_EQ(
        Vn_GetBitmapColors(bitmap, 0, static_cast<uint32_t>(bitmap->ColorCount), colors.data()),
        OK);
  }
  const BitmapLock lock(bitmap);
  std::vector<uint8_t> row(bitmap->BytesPerLine);
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    const auto at = static_cast<uint32_t>(tool::StorageRow(*bitmap.get(), y));
    ASSERT_EQ(Vn_GetBitmapRow(bitmap, row.data(), at, bitmap->BytesPerLine),
              static_cast<int32_t>(bitmap->BytesPerLine));
    for (int32_t x = 0; x < bitmap->Width; ++x) {
      const Rgb seen = PixelOf(*bitmap.get(), colors, row.data(), x);
      const Rgb wanted = picture.ColorAt(x, y, background);
      ASSERT_TRUE(seen.red == wanted.red && seen.green == wanted.green && seen.blue == wanted.blue)
          << "pixel " << x << ", " << y << ": " << seen.red << "," << seen.green << "," << seen.blue
          << " for " << wanted.red << "," << wanted.green << "," << wanted.blue;
    }
  }
}

void Load(const std::string& path, Rgb background, Bitmap& bitmap) {
  const auto source = tool::OpenPicture(path, {background});
  tool::LoadBitmap(*source, STORAGE_AUTO, bitmap);
}

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
          ExpectShows(bitmap, picture, background);
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
    for (int i = 0; i < 60; ++i) {
      std::string damaged = sound;
      for (int32_t bytes = random.Between(1, 4); bytes > 0; --bytes) {
        const auto at =
            static_cast<size_t>(random.Between(8, static_cast<int32_t>(sound.size()) - 1));
        damaged[at] = static_cast<char>(random.Next());
      }
      WriteFile(path, damaged);
      Bitmap bitmap;
      try {
        Load(path, {}, bitmap);
      } catch (const tool::Failure& failure) {
        EXPECT_EQ(std::string(failure.what()).find('\n'), std::string::npos);
      }
    }
  }
}

TEST(Picture, WrittenPicturesReadBackWithPaletteAndResolution) {
  const TemporaryFolder folder;
  const std::string path = folder.File("out.png");
  Random random(3);
  for (const int32_t bits : {1, 4, 8, 24}) {
    tool::PictureInfo info;
    info.width = 29;
    info.height = 5;
    info.bits = bits;
    info.xDotsPerInch = 300;
    info.yDotsPerInch = 72;
    if (bits <= 8) info.colors.resize(size_t{1} << bits);
    for (RGBQUAD& color : info.colors) {
      random.Fill(&color, sizeof color);
      color.rgbReserved = 0;
    }
    const size_t rowBytes = (29u * static_cast<unsigned>(bits) + 7) / 8;
    // The last byte's unused bits are nobody's.
    const uint8_t lastBits = bits == 1 ? 0xF8 : bits == 4 ? 0xF0 : 0xFF;
    std::vector<std::vector<uint8_t>> rows(5, std::vector<uint8_t>(rowBytes));
    const auto sink = tool::CreatePicture(tool::OpenPictureFile(path), info);
    for (auto& row : rows) {
      random.Fill(row.data(), row.size());
      row.back() &= lastBits;
      sink->WriteRow(row.data());
    }
    sink->Finish();

    const auto source = tool::OpenPicture(path, {});
    EXPECT_EQ(source->Info().bits, bits);
    EXPECT_EQ(source->Info().xDotsPerInch, 300);
    EXPECT_EQ(source->Info().yDotsPerInch, 72);
    ASSERT_EQ(source->Info().colors.size(), info.colors.size());
    for (size_t i = 0; i < info.colors.size(); ++i) {
      EXPECT_EQ(std::memcmp(&source->Info().colors[i], &info.colors[i], sizeof(RGBQUAD)), 0);
    }
    for (const auto& row : rows) {
      std::vector<uint8_t> read(rowBytes);
      source->ReadRow(read.data());
      read.back() &= lastBits;
      EXPECT_EQ(read, row);
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
