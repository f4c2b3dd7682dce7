// vncore convert: every operation against a model of single pixels, or against the library's call.
#include <gtest/gtest.h>
#include <pty.h>

#include <set>

#include "color/threshold_matrices.h"
#include "kernel/platform_objects.h"
#include "tests/support/headless_control.h"
#include "tests/support/status_log.h"
#include "tests/tool/convert.h"
#include "tools/operations/operation.h"
#include "tools/terminal/failure.h"

namespace vn::test {
namespace {

constexpr Rgb kBlack{0, 0, 0}, kRed{255, 0, 0};

// Within the range of a channel.
template <class Operation>
Rgb PerChannel(Rgb d, Rgb s, Operation operation) {
  const auto run = [&](int32_t a, int32_t b) { return std::clamp(operation(a, b), 0, 255); };
  return {run(d.red, s.red), run(d.green, s.green), run(d.blue, s.blue)};
}

int32_t SlowGray(Rgb c) { return (2 * c.red + 5 * c.green + c.blue + 4) / 8; }

TEST_F(Convert, OperationsMoveAndChangePixels) {
  const auto at = [&](int32_t x, int32_t y) { return in_.At(x, y); };
  const auto gray = [&](int32_t x, int32_t y) {
    const int32_t level = SlowGray(in_.At(x, y));
    return Rgb{level, level, level};
  };
  const auto dots = [&](const uint8_t(&matrix)[8][8], int32_t x, int32_t y, int32_t u, int32_t v) {
    return SlowGray(in_.At(x, y)) > matrix[v & 7][u & 7] ? kWhite : kBlack;
  };
  const auto spot = [](int32_t x, int32_t y) { return x >= 7 && x < 27 && y >= 5 && y < 16; };
  const auto shifted = [](Rgb c, Rgb texture) {
    return PerChannel(c, texture,
                      [g = SlowGray(texture) - 128](int32_t d, int32_t) { return d + g; });
  };
  Make("over.png", 20, 11, 4);
  Make("two.png", kWidth, kHeight, 1);
  ExpectRuns("convert in.png white.png --fill white");
  const Seen over = Look("over.png"), two = Look("two.png");
  const struct {
    const char* options;
    int32_t width, height, bits;
    ColorModel model;
  } rows[] = {
      {"", kWidth, kHeight, 24, at},
      {"--crop 7,5,20,11", 20, 11, 24, [&](int32_t x, int32_t y) { return at(x + 7, y + 5); }},
      {"--scale 100x20", 100, 20, 24,
       [&](int32_t x, int32_t y) { return at(x * 61 / 100, y * 34 / 20); }},
      {"--scale 50%", 31, 17, 24,
       [&](int32_t x, int32_t y) { return at(x * 61 / 31, y * 34 / 17); }},
      {"--crop 1,2,40,30 --scale 200% --gray", 80, 60, 8,
       [&](int32_t x, int32_t y) { return gray(x / 2 + 1, y / 2 + 2); }},
      {"--resample 61x34", kWidth, kHeight, 24, at},
      {"--resample 61x17", kWidth, 17, 24,
       [&](int32_t x, int32_t y) {
         const Rgb a = at(x, 2 * y), b = at(x, 2 * y + 1);
         return Rgb{(a.red + b.red) / 2, (a.green + b.green) / 2, (a.blue + b.blue) / 2};
       }},
      {"--fill red --fit 30x30", 30, 17, 24, [](int32_t, int32_t) { return kRed; }},
      {"--fill red --fill-box 90x30", 90, 50, 24, [](int32_t, int32_t) { return kRed; }},
      {"--flip", kWidth, kHeight, 24, [&](int32_t x, int32_t y) { return at(x, 33 - y); }},
      {"--mirror", kWidth, kHeight, 24, [&](int32_t x, int32_t y) { return at(60 - x, y); }},
      {"--rotate 90", kHeight, kWidth, 24, [&](int32_t x, int32_t y) { return at(y, 33 - x); }},
      {"--rotate -180.00", kWidth, kHeight, 24,
       [&](int32_t x, int32_t y) { return at(60 - x, 33 - y); }},
      {"--clear --rotate 17.35 --keep-size --crop 30,16,1,1", 1, 1, 24,
       [](int32_t, int32_t) { return kBlack; }},
      {"--clear --rotate 17.35 --background red --crop 0,0,1,1", 1, 1, 24,
       [](int32_t, int32_t) { return kRed; }},
      {"--shear 45 --background red", kWidth + kHeight, kHeight, 24,
       [&](int32_t x, int32_t y) {
         const int32_t from = x - (33 - y);
         return from >= 0 && from < kWidth ? at(from, y) : kRed;
       }},
      {"--shear -45,vertical", kWidth, kWidth + kHeight, 24,
       [&](int32_t x, int32_t y) {
         const int32_t from = y - (60 - x);
         return from >= 0 && from < kHeight ? at(x, from) : kWhite;
       }},
      {"--fill 255,0,0", kWidth, kHeight, 24, [](int32_t, int32_t) { return kRed; }},
      {"--fill '#fff'", kWidth, kHeight, 24, [](int32_t, int32_t) { return kWhite; }},
      {"--clear", kWidth, kHeight, 24, [](int32_t, int32_t) { return kBlack; }},
      {"--gray", kWidth, kHeight, 8, gray},
      {"--halftone ordered", kWidth, kHeight, 1,
       [&](int32_t x, int32_t y) { return dots(OrderedMatrix, x, y, x, y); }},
      {"--halftone clustered", kWidth, kHeight, 1,
       [&](int32_t x, int32_t y) { return dots(ClusteredMatrix, x, y, x, y); }},
      {"--halftone clustered,90", kWidth, kHeight, 1,
       [&](int32_t x, int32_t y) { return dots(ClusteredMatrix, x, y, y, -x); }},
      {"--depth 16", kWidth, kHeight, 24,
       [&](int32_t x, int32_t y) {
         const auto cut = [](int32_t level) { return level / 8 * 8 + level / 32; };
         const Rgb c = at(x, y);
         return Rgb{cut(c.red), cut(c.green), cut(c.blue)};
       }},
      {"--depth 32", kWidth, kHeight, 24, at},
      {"--region rect:7,5,20,11 --fill red --region color:#ff0000 --fill white", kWidth, kHeight,
       24, [&](int32_t x, int32_t y) { return spot(x, y) ? kWhite : at(x, y); }},
      {"--halftone ordered --region color:#000 --region rect:7,5,20,11,and --fill white", kWidth,
       kHeight, 1,
       [&](int32_t x, int32_t y) { return spot(x, y) ? kWhite : dots(OrderedMatrix, x, y, x, y); }},
      {"--region rect:7,5,20,11 --fill red --region color:255,0,0,invert --clear", kWidth, kHeight,
       24, [&](int32_t x, int32_t y) { return spot(x, y) ? kRed : kBlack; }},
      {"--combine over.png,add,7,5", kWidth, kHeight, 24,
       [&](int32_t x, int32_t y) {
         if (!spot(x, y)) return at(x, y);
         return PerChannel(at(x, y), over.At(x - 7, y - 5),
                           [](int32_t d, int32_t s) { return d + s; });
       }},
      {"--combine over.png,not-file-and,-4,30", kWidth, kHeight, 24,
       [&](int32_t x, int32_t y) {
         if (x >= 16 || y < 30) return at(x, y);
         return PerChannel(at(x, y), over.At(x + 4, y - 30),
                           [](int32_t d, int32_t s) { return d & ~s; });
       }},
      {"--combine in.png,subtract-from --combine two.png,copy,2,1", kWidth, kHeight, 24,
       [&](int32_t x, int32_t y) { return x < 2 || y < 1 ? kBlack : two.At(x - 2, y - 1); }},
      {"--halftone ordered --combine white.png,not-picture-xor", kWidth, kHeight, 1,
       [&](int32_t x, int32_t y) { return dots(OrderedMatrix, x, y, x, y); }},
      {"--underlay over.png", kWidth, kHeight, 24,
       [&](int32_t x, int32_t y) { return shifted(at(x, y), over.At(x % 20, y % 11)); }},
      {"--region rect:7,5,20,11 --underlay over.png,stretch", kWidth, kHeight, 24,
       [&](int32_t x, int32_t y) {
         return spot(x, y) ? shifted(at(x, y), over.At(x * 20 / 61, y * 11 / 34)) : at(x, y);
       }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.options);
    const Seen out = Result(row.options);
    ASSERT_TRUE(out.width == row.width && out.height == row.height);
    EXPECT_EQ(out.bits, row.bits);
    ExpectShows(out, row.model);
  }
  ExpectRuns("convert in.png in.png --clear");  // a picture over its own file
  ExpectShows(Look("in.png"), [](int32_t, int32_t) { return kBlack; });
}

// Shapes are the platform's.
TEST_F(Convert, RegionsConfineWhatFollows) {
  static constexpr RECT box = {5, 3, 45, 30};
  const auto ellipse = [] { return CreateEllipticRgnIndirect(&box); };
  const auto round = [] { return CreateRoundRectRgn(5, 3, 45, 30, 12, 9); };
  const auto polygon = [] {
    const POINT points[] = {{0, 0}, {50, 4}, {9, 33}, {60, 20}};
    return CreatePolygonRgn(points, 4, ALTERNATE);
  };
  const auto rect = [] { return CreateRectRgnIndirect(&box); };
  const struct {
    std::string value;
    HRGN (*shape)();
  } shapes[] = {{"rect:5,3,40,27", rect},
                {"ellipse:5,3,40,27", ellipse},
                {"roundrect:5,3,40,27,12,9", round},
                {"polygon:0,0,50,4,9,33,60,20", polygon}};
  const struct {
    std::string suffix;
    bool (*selects)(bool old, bool now);
  } modes[] = {{"", [](bool, bool now) { return now; }},
               {",replace", [](bool, bool now) { return now; }},
               {",and", [](bool old, bool now) { return old && now; }},
               {",or", [](bool old, bool now) { return old || now; }},
               {",xor", [](bool old, bool now) { return old != now; }},
               {",minus", [](bool old, bool now) { return old && !now; }},
               {",reverse-minus", [](bool old, bool now) { return now && !old; }},
               {",invert", [](bool, bool now) { return !now; }}};
  for (const auto& shape : shapes) {
    const OwnedObject<HRGN> now(shape.shape());
    for (const auto& mode : modes) {
      if (&shape != &shapes[1] && &mode != &modes[0]) continue;
      const std::string options =
          "--region rect:10,4,20,28 --region " + shape.value + mode.suffix + " --fill red";
      SCOPED_TRACE(options);
      ExpectShows(Result(options), [&](int32_t x, int32_t y) {
        const bool old = x >= 10 && x < 30 && y >= 4 && y < 32;
        return mode.selects(old, PtInRegion(now.get(), x, y)) ? kRed : in_.At(x, y);
      });
    }
  }
  // It goes along with its picture.
  const Seen moved = Result("--region rect:10,4,20,10 --crop 5,2,40,25 --scale 200% --fill red");
  ExpectShows(moved, [&](int32_t x, int32_t y) {
    const bool inside = x >= 10 && x < 50 && y >= 4 && y < 24;
    return inside ? kRed : in_.At(x / 2 + 5, y / 2 + 2);
  });
}

TEST_F(Convert, ReductionsAreTheLibrarysOwn) {
  WriteFile(work_.File("three.gpl"),
            "GIMP Palette\nName: three\nColumns: 2\n# comment\n\n"
            "255 0 0 red\n  0 200   0\tgreen\r\n10 20 30\n");
  const RGBQUAD three[] = {{0, 0, 255, 0}, {0, 200, 0, 0}, {30, 20, 10, 0}};
  constexpr uint32_t kFloyd = RES_DITHER_METHOD(DITHER_FLOYD_STEINBERG), kNone = 0;
  const struct {
    std::string options;
    uint32_t bits, flags, count;
    const RGBQUAD* colors = nullptr;
  } rows[] = {
      {"--depth 8", 8, RES_OPTIMIZED_PALETTE | kFloyd, 0},
      {"--colors 2", 1, RES_OPTIMIZED_PALETTE | kFloyd, 2},
      {"--colors 16 --dither none", 4, RES_OPTIMIZED_PALETTE | kNone, 16},
      {"--dither none --colors 17", 8, RES_OPTIMIZED_PALETTE | kNone, 17},
      {"--colors 256", 8, RES_OPTIMIZED_PALETTE | kFloyd, 256},
      {"--depth 8 --colors 5", 8, RES_OPTIMIZED_PALETTE | kFloyd, 5},
      {"--palette optimized --depth 4", 4, RES_OPTIMIZED_PALETTE | kFloyd, 0},
      {"--palette system", 8, RES_SYSTEM_COLORS | kFloyd, 0},
      {"--palette three.gpl", 4, RES_USER_PALETTE | kFloyd, 3, three},
      {"--palette three.gpl --dither none", 4, RES_USER_PALETTE | kNone, 3, three},
      {"--palette three.gpl --colors 2", 1, RES_USER_PALETTE | kFloyd, 2, three},
      {"--palette three.gpl --colors 200 --depth 8", 8, RES_USER_PALETTE | kFloyd, 3, three},
      {"--palette fixed --dither none", 8, RES_FIXED_PALETTE | kNone, 0},
      {"--depth 4 --palette fixed --dither floyd-steinberg", 4, RES_FIXED_PALETTE | kFloyd, 0},
      {"--dither stucki --depth 1 --palette fixed", 1, RES_FIXED_PALETTE | 2 << 16, 0},
      {"--depth 1 --palette fixed --dither burkes", 1, RES_FIXED_PALETTE | 3 << 16, 0},
      {"--depth 1 --palette fixed --dither sierra", 1, RES_FIXED_PALETTE | 4 << 16, 0},
      {"--depth 1 --palette fixed --dither stevenson-arce", 1, RES_FIXED_PALETTE | 5 << 16, 0},
      {"--depth 1 --palette fixed --dither jarvis", 1, RES_FIXED_PALETTE | 6 << 16, 0},
      {"--depth 1 --palette fixed --dither ordered", 1, RES_FIXED_PALETTE | 7 << 16, 0},
      {"--depth 1 --palette fixed --dither clustered", 1, RES_FIXED_PALETTE | 8 << 16, 0},
  };
  const DisplayScope display(8);  // which has system colours
  for (const auto& row : rows) {
    SCOPED_TRACE(row.options);
    const Seen out = Result(row.options);
    EXPECT_EQ(out.bits, static_cast<int32_t>(row.bits));
    tool::Bitmap bitmap;
    tool::LoadBitmap(*tool::OpenPicture(work_.File("in.png"), {}), STORAGE_AUTO, bitmap);
    ASSERT_EQ(
        Vn_ColorResBitmap(bitmap, bitmap, row.bits, row.flags, row.colors, row.count, nullptr, 0),
        OK);
    ExpectShows(out, [&](int32_t x, int32_t y) {
      const COLORREF c = Vn_GetPixelColor(bitmap, y, x);
      return Rgb{GetRValue(c), GetGValue(c), GetBValue(c)};
    });
  }
}

#if defined(VNCORE_TOOL_JPEG) && defined(VNCORE_TOOL_TIFF)
// A photograph comes upright by the number in its Exif block, in both orders of bytes, and a block
// that says nothing clear changes nothing; a TIFF file by the number in its directory.
TEST_F(Convert, PhotographsComeUpright) {
  ExpectRuns("convert in.png upright.jpg");
  ExpectRuns("convert upright.jpg upright.tif");
  const std::string jpeg = ReadFile(work_.File("upright.jpg"));
  std::string scan = ReadFile(work_.File("upright.tif"));
  const size_t tag = scan.find(std::string("\x12\x1\x3\0\x1\0\0\0", 8));
  ASSERT_NE(tag, std::string::npos);
  const auto exif = [&](const std::string& tiff) {
    const std::string block = std::string("Exif\0\0", 6) + tiff;
    const auto size = static_cast<char>(block.size() + 2);
    return jpeg.substr(0, 2) + std::string("\xFF\xE1\0", 3) + size + block + jpeg.substr(2);
  };
  const auto block = [&](char orientation, bool big) {
    std::string tiff = big ? std::string("MM\0*\0\0\0\x8\0\x1\x1\x12\0\x3\0\0\0\x1\0", 19)
                           : std::string("II*\0\x8\0\0\0\x1\0\x12\x1\x3\0\x1\0\0\0", 18);
    return tiff + orientation + std::string(7, '\0');
  };
  const char* const upright[] = {"",
                                 "--mirror",
                                 "--rotate 180",
                                 "--flip",
                                 "--rotate 90 --mirror",
                                 "--rotate 90",
                                 "--rotate 90 --flip",
                                 "--rotate 270"};
  for (int i = 0; i < 8; ++i) {
    SCOPED_TRACE(upright[i]);
    scan[tag + 8] = static_cast<char>(i + 1);
    WriteFile(work_.File("held.jpg"), exif(block(static_cast<char>(i + 1), i % 2)));
    WriteFile(work_.File("held.tif"), scan);
    for (const std::string held : {"held.jpg", "held.tif"}) {
      ExpectRuns("convert " + held + " out.png");
      ExpectRuns("convert upright.jpg expected.png " + std::string(upright[i]));
      EXPECT_TRUE(ReadFile(work_.File("out.png")) == ReadFile(work_.File("expected.png")));
      ExpectRuns("convert " + held + " out.png --ignore-orientation");
      ExpectRuns("convert upright.jpg expected.png");
      EXPECT_TRUE(ReadFile(work_.File("out.png")) == ReadFile(work_.File("expected.png")));
    }
  }
  const std::string good = block(6, false);
  for (const std::string& bad :
       {block(9, true), block(0, false), good.substr(0, 17), good.substr(0, 5), std::string(),
        "XX" + good.substr(2), good.substr(0, 4) + "\xFF\xFF\xFF\xFF" + good.substr(8)}) {
    WriteFile(work_.File("held.jpg"), exif(bad));
    ExpectRuns("convert held.jpg out.png");
    EXPECT_TRUE(ReadFile(work_.File("out.png")) == ReadFile(work_.File("expected.png")));
  }
}
#endif

TEST_F(Convert, WrongValuesAreRefused) {
  WriteFile(work_.File("text.gpl"), "no palette\n");
  WriteFile(work_.File("hole.gpl"), "GIMP Palette\n1 2 3\n4 5 256\n");
  WriteFile(work_.File("none.gpl"), "GIMP Palette\n");
  WriteFile(work_.File("three.gpl"), "GIMP Palette\n1 2 3\n4 5 6\n7 8 9\n");
  std::string many = "GIMP Palette\n";
  for (int i = 0; i < 257; ++i)
    many += "1 2 3\n";
  WriteFile(work_.File("many.gpl"), many);
  const struct {
    std::string option;
    std::vector<std::string> values;
  } rows[] = {
      {"--depth", {"3", "24 --dither none", "1 --colors 3", "1 --palette three.gpl"}},
      {"--colors", {"1", "257"}},
      {"--palette",
       {"fixed --colors 4", "missing.gpl", "text.gpl", "hole.gpl", "none.gpl", "many.gpl",
        "/dev/zero", "''"}},
      {"--dither", {"floyd"}},
      {"--halftone", {"round", "ordered,x"}},
      {"--scale", {"0x5", "0%", "5", "1e9%", "70000x70000"}},
      {"--resample", {"5", "70000x70000", "32768x9 --shear 45"}},
      {"--fit", {"0x9"}},
      {"--fill-box", {"50%"}},
      {"--rotate", {"1.234", "ninety"}},
      {"--shear", {"45.01", "4,horizontal"}},
      {"--crop", {"60,0,5,5", "1,2,3"}},
      {"--region",
       {"rect:1,2,3", "rect:1,2,3,4,nor", "ellipse:1,2,-3,4", "polygon:1,2,3,4", "blob:1,2,3,4",
        "rect:99999999,0,1,1", "color:#12345", "color:red,nor"}},
      {"--combine", {"in.png,nand", "in.png,not-picture-copy", "in.png,and,1", "missing.png,and"}},
      {"--underlay", {"missing.png,tile"}},
      {"--fill", {"nocolour"}},
      {"--storage", {"tape"}},
  };
  for (const auto& row : rows) {
    for (const std::string& value : row.values)
      ExpectFails("convert in.png out.png " + row.option + " " + value);
  }
}

// The picture comes in two halves, so that the bar has the time to show. What it shows rises
// through all stages, and it wipes itself out.
TEST_F(Convert, ProgressRisesThroughAllStages) {
  const std::string bytes = ReadFile(work_.File("in.png"));
  const std::string path = MakePipe();
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) Become("convert", "pipe.png", "out.png", "--scale", "300x200", "--gray");
  {
    std::ofstream pipe(path, std::ios::binary);
    pipe << bytes.substr(0, bytes.size() / 2) << std::flush;
    WaitForFiles(3, 0);
    usleep(900000);
    pipe << bytes.substr(bytes.size() / 2);
  }
  std::string shown;
  char part[4096];
  for (ssize_t count; (count = read(terminal, part, sizeof part)) > 0;)
    shown.append(part, count);
  close(terminal);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << shown;
  std::vector<int> percents;
  for (size_t at = shown.find('%'); at != shown.npos; at = shown.find('%', at + 1))
    percents.push_back(std::stoi(shown.substr(at - 3, 3)));
  EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end())) << shown;
  EXPECT_GT(percents.size(), 60u);
  EXPECT_TRUE(percents.front() <= 26 && percents.back() == 100) << shown;
  EXPECT_TRUE(shown.ends_with("\r\x1b[K"));
}

// A resize that fails half-way lets palettes and region die; nobody may free them again.
TEST_F(Convert, AStoppedResizeLeavesNothingToFreeTwice) {
  for (const int32_t bits : {8, 24}) {
    Make("source.png", 40, 30, bits);
    tool::Bitmap bitmap;
    tool::LoadBitmap(*tool::OpenPicture(work_.File("source.png"), {}), STORAGE_AUTO, bitmap);
    const auto run = [&](const std::string& option, const std::string& value) {
      for (const tool::OperationKind& kind : tool::OperationKinds()) {
        if (kind.option == option) kind.parse(value).value()(bitmap);
      }
    };
    run("--region", "ellipse:2,2,20,20");
    const StatusLog log(5);
    EXPECT_THROW(run("--scale", "90x80"), tool::Failure);
    EXPECT_TRUE(!bitmap->Palette && !bitmap->PaintPalette && !bitmap->Region);
  }
}

}  // namespace
}  // namespace vn::test
