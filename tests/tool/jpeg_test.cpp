// What is particular to JPEG: many scans, coefficients in a file, markers behind the last row.
#include <gtest/gtest.h>

#include <csetjmp>
#include <cstdio>
// libjpeg's headers need <cstdio> before them.
#include <jpeglib.h>

#include "tests/support/temporary_folder.h"
#include "tests/tool/samples.h"
#include "tools/formats/coefficient_store.h"
#include "tools/terminal/failure.h"

namespace vn::test {
namespace {

using Bytes = std::vector<uint8_t>;

// The first byte of scan `number`, the first being 0, or of the end of the picture.
size_t ScanAt(const std::string& file, int number) {
  size_t at = file.find("\xFF\xDA");
  while (number-- > 0 && at != file.npos)
    at = file.find("\xFF\xDA", at + 2);
  return at == file.npos ? file.size() - 2 : at;
}

// All rows as the reader and as plain libjpeg give them.
Bytes ReadRows(const std::string& path) {
  const auto source = tool::OpenPicture(path, {});
  const tool::PictureInfo& info = source->Info();
  const auto stride = static_cast<size_t>(info.width * info.bits / 8);
  Bytes rows(stride * static_cast<size_t>(info.height));
  for (size_t at = 0; at < rows.size(); at += stride)
    source->ReadRow(rows.data() + at);
  source->Finish();
  return rows;
}

Bytes PlainRows(const std::string& file) {
  jpeg_decompress_struct jpeg{};
  jpeg_error_mgr error;
  jpeg.err = jpeg_std_error(&error);
  jpeg_create_decompress(&jpeg);
  jpeg_mem_src(&jpeg, reinterpret_cast<const unsigned char*>(file.data()), file.size());
  jpeg_read_header(&jpeg, TRUE);
  if (jpeg.num_components > 1) jpeg.out_color_space = JCS_EXT_BGR;
  jpeg_start_decompress(&jpeg);
  const size_t stride = size_t{jpeg.output_width} * static_cast<size_t>(jpeg.output_components);
  Bytes rows(stride * jpeg.output_height);
  while (jpeg.output_scanline < jpeg.output_height) {
    JSAMPROW row = rows.data() + stride * jpeg.output_scanline;
    jpeg_read_scanlines(&jpeg, &row, 1);
  }
  jpeg_destroy_decompress(&jpeg);
  return rows;
}

// Coefficients are kept in a file, and where scans are missing libjpeg smooths what it has, with a
// look at rows above and below.
TEST(Jpeg, LargePicturesOfManyScansAreAsLibjpegShowsThem) {
  const TemporaryFolder folder, temporary;
  const std::string path = folder.File("in.jpg");
  for (const bool gray : {false, true}) {
    for (const bool halfChroma : {false, true}) {
      const int32_t width = 1501, height = gray ? 1501 : 1003;  // over 4 MiB of coefficients
      static_assert(1501 * 1003 * 3 > tool::CoefficientStore::kLeast);
      if (gray && halfChroma) continue;
      const std::string whole = MakeJpeg(gray, Scans::kProgressive, halfChroma, width, height);
      for (const int scans : {1, 2, 4, 100}) {
        SCOPED_TRACE(Told("gray", gray, "half chroma", halfChroma, "scans", scans));
        const std::string file = whole.substr(0, ScanAt(whole, scans)) + "\xFF\xD9";
        WriteFile(path, file);
        const TempDirScope there(temporary.Path());
        EXPECT_TRUE(ReadRows(path) == PlainRows(file));
        EXPECT_EQ(temporary.Names(), std::vector<std::string>{});
        const TempDirScope nowhere(temporary.File("missing"));
        EXPECT_THROW(ReadRows(path), tool::Failure) << "so it is the file that was used";
      }
      WriteFile(path, MakeJpeg(gray, Scans::kOne, halfChroma, width, height));
      const TempDirScope nowhere(temporary.File("missing"));
      EXPECT_NO_THROW(ReadRows(path)) << "one scan needs no file";
    }
  }
}

// Scans that say the same again: what a file for a denial of service is made of.
TEST(Jpeg, ScansWithoutEndAreAFailure) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.jpg");
  const std::string sound = MakeJpeg(false, Scans::kOneEach, false, 8, 8);
  const size_t first = ScanAt(sound, 0), second = ScanAt(sound, 1);
  for (const int count : {3, 600}) {
    std::string file = sound.substr(0, first);
    for (int i = 1; i < count; ++i)
      file += sound.substr(first, second - first);
    WriteFile(path, file + sound.substr(first));
    if (count == 3) {
      EXPECT_NO_THROW(Look(path));
    } else {
      EXPECT_THROW(Look(path), tool::Failure);
    }
  }
}

TEST(Jpeg, DamageBehindTheLastRowIsAFailure) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.jpg");
  for (const Scans scans : {Scans::kOne, Scans::kProgressive}) {
    const std::string sound = MakeJpeg(false, scans, true, 40, 40);
    const std::string rows = sound.substr(0, sound.size() - 2);
    const std::string table("\xFF\xC4\0\7\x44\1\1", 7);  // of no such number
    for (const std::string& file : {rows, rows + "\xFF", rows + table + "\xFF\xD9"}) {
      WriteFile(path, file);
      EXPECT_THROW(Look(path), tool::Failure);
    }
    WriteFile(path, sound + "trailing bytes are nobody's");
    EXPECT_NO_THROW(Look(path));
  }
}

}  // namespace
}  // namespace vn::test
