// vncore info: what a file says of its picture, and what the kernel would make of it.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/formats/color_profile.h"
#include "tools/operations/load_bitmap.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/json.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

struct InfoOptions {
  std::vector<std::string> in;
  ReadOptions read;
  bool json = false, check = false;
};

const char* GrayClass(int32_t number) {
  switch (number) {
    case 1:
      return "1, a gray ramp from black to white";
    case 2:
      return "2, a gray ramp from white to black";
    case 3:
      return "3, gray colours in no ramp";
    default:
      return "0, not gray";
  }
}

// A bitmap of the picture's depth and colours, with one pixel.
void MakeLikeness(const PictureInfo& info, Bitmap& bitmap) {
  const VnStatus made =
      Vn_CreateBitmap(bitmap, STORAGE_AUTO, 1, 1, info.bits, ORDER_BGR,
                      info.bits <= 8 ? info.colors.data() : nullptr, VIEW_TOP_FIRST);
  if (made != OK) throw Failure(StatusText(made));
}

std::string OrientationText(const PictureInfo& info) {
  constexpr const char* kShown[] = {"upright",
                                    "mirrored",
                                    "upside down",
                                    "upside down and mirrored",
                                    "on its side and mirrored, its top to the left",
                                    "on its side, its top to the left",
                                    "on its side and mirrored, its top to the right",
                                    "on its side, its top to the right"};
  const int32_t orientation = info.facts.orientation;
  return std::to_string(orientation) + ", " + kShown[orientation - 1];
}

std::string ProfileText(const std::string& profile) {
  const std::string name = Readable(ProfileName(profile));
  return (name.empty() ? "" : name + ", ") + std::to_string(profile.size()) + " bytes";
}

// A text of the picture's own: its name for people and for programs.
struct Named {
  const char* name;
  const char* member;
  uint16_t tag;
};
constexpr Named kTexts[] = {{"artist", "artist", kExifArtist},
                            {"copyright", "copyright", kExifCopyright},
                            {"date", "date", kExifDate},
                            {"description", "description", kExifDescription},
                            {"camera", "make", kExifMake},
                            {"model", "model", kExifModel},
                            {"software", "software", kExifSoftware}};

struct Description {
  const PictureInfo& info;
  int32_t grayClass;
  uint32_t stride, bytes;

  void Print() const;
  std::string Json(const std::string& path) const;
};

void Line(const char* name, const std::string& text) {
  if (!text.empty()) std::printf("%-12s%s\n", name, text.c_str());
}

void Description::Print() const {
  const FileFacts& facts = info.facts;
  const auto number = [](int64_t n) { return std::to_string(n); };
  Line("format", facts.format);
  Line("size", number(info.width) + " x " + number(info.height) + " pixels");
  Line("samples",
       number(facts.sampleBits) + " bits, " + facts.model + (facts.alpha ? " and alpha" : ""));
  Line("pages", number(facts.pages));
  Line("resolution",
       info.xDotsPerInch && info.yDotsPerInch
           ? number(info.xDotsPerInch) + " x " + number(info.yDotsPerInch) + " dots per inch"
           : "not told");
  Line("orientation", OrientationText(info));
  Line("profile", info.metadata.profile.empty() ? "none" : ProfileText(info.metadata.profile));
  for (const Named& text : kTexts)
    Line(text.name, Readable(info.metadata.exif.Text(text.tag)));
  Line("comment", Readable(info.metadata.comment));
  Line("depth", number(info.bits) + " bits in the kernel");
  Line("colours", info.bits <= 8 ? number(1 << info.bits) : "16777216, no palette");
  Line("gray class", GrayClass(grayClass));
  Line("stride", number(stride) + " bytes");
  Line("data", number(bytes) + " bytes");
}

std::string Description::Json(const std::string& path) const {
  const FileFacts& facts = info.facts;
  JsonObject object;
  object.Add("file", ToUtf8(path)).Add("format", facts.format);
  object.Add("width", info.width).Add("height", info.height);
  object.Add("model", facts.model).Add("sample_bits", facts.sampleBits);
  object.AddFlag("alpha", facts.alpha).Add("pages", facts.pages);
  if (info.xDotsPerInch && info.yDotsPerInch) {
    object.AddValue("dots_per_inch", "[" + std::to_string(info.xDotsPerInch) + ", " +
                                         std::to_string(info.yDotsPerInch) + "]");
  }
  object.Add("orientation", facts.orientation);
  if (const std::string& profile = info.metadata.profile; !profile.empty()) {
    JsonObject about;
    about.Add("name", Readable(ProfileName(profile)));
    about.Add("bytes", static_cast<int64_t>(profile.size()));
    object.AddValue("profile", about.Text());
  }
  for (const Named& text : kTexts) {
    const std::string value = ToUtf8(info.metadata.exif.Text(text.tag));
    if (!value.empty()) object.Add(text.member, value);
  }
  if (!info.metadata.comment.empty()) object.Add("comment", ToUtf8(info.metadata.comment));
  object.Add("depth", info.bits).Add("gray_class", grayClass);
  object.Add("stride", stride).Add("data_bytes", bytes);
  return object.Text();
}

// Decodes the whole page and drops it, so that damage is told.
void Check(PictureSource& picture, const std::string& path) {
  const ProgressBar bar("checking " + path);
  Bitmap bitmap;
  LoadBitmap(picture, STORAGE_AUTO, bitmap);
}

void ShowInfo(const InfoOptions& options, const std::string& path) {
  const auto picture = OpenPicture(path, options.read);
  const PictureInfo info = picture->Info();
  if (options.check) Check(*picture, path);
  Bitmap likeness;
  MakeLikeness(info, likeness);
  const uint32_t stride =
      StrideOf(static_cast<uint32_t>(info.width), static_cast<uint32_t>(info.bits));
  const Description description{info, Vn_IsGrayScaleBitmap(likeness), stride,
                                stride * static_cast<uint32_t>(info.height)};
  if (options.json) {
    std::printf("%s\n", description.Json(path).c_str());
    return;
  }
  if (options.in.size() > 1)
    std::printf("%s%s\n", &path == &options.in.front() ? "" : "\n", Readable(path).c_str());
  description.Print();
}

}  // namespace

void AddInfoCommand(CLI::App& app) {
  CLI::App* const info = app.add_subcommand(
      "info",
      "Show what a picture's file says of it, by its header, and what the kernel makes of it");
  const auto options = std::make_shared<InfoOptions>();
  info->add_option("IN", options->in, "The pictures")->required();
  info->add_flag("--json", options->json, "One JSON object a line for each picture");
  info->add_flag("--check", options->check, "Read the pixels as well, to see if they are sound");
  info->add_option("--page", options->read.page, "The page to look at, 1 if not given");
  info->callback([options] {
    for (const std::string& path : options->in)
      ShowInfo(*options, path);
  });
}

}  // namespace vn::tool
