// vncore info: what the kernel sees of a picture.
#include <cstdio>
#include <memory>
#include <string>

#include "tools/commands/commands.h"
#include "tools/operations/load_bitmap.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

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

const char* StorageKind(uint32_t flags) {
  return flags & FLAG_ON_DISK ? "a temporary file" : "memory";
}

// The whole picture is read, so that a damaged one is not described as if it were sound.
void ShowInfo(const std::string& path) {
  const auto picture = OpenPicture(path, {});
  Bitmap bitmap;
  {
    const ProgressBar bar("reading " + path);
    LoadBitmap(*picture, STORAGE_AUTO, bitmap);
  }
  std::printf("size        %d x %d pixels\n", bitmap->Width, bitmap->Height);
  std::printf("depth       %d bits\n", bitmap->BitsPerPixel);
  if (bitmap->ColorCount) {
    std::printf("colours     %d\n", bitmap->ColorCount);
  } else {
    std::printf("colours     16777216, no palette\n");
  }
  std::printf("gray class  %s\n", GrayClass(Vn_IsGrayScaleBitmap(bitmap)));
  std::printf("stride      %u bytes\n", bitmap->BytesPerLine);
  std::printf("data        %u bytes in %s\n", bitmap->DataSize, StorageKind(bitmap->Flags));
  std::printf("resolution  %d x %d dots per inch\n", bitmap->XResolution, bitmap->YResolution);
}

}  // namespace

void AddInfoCommand(CLI::App& app) {
  CLI::App* const info = app.add_subcommand("info", "Show what the kernel sees of a picture");
  const auto path = std::make_shared<std::string>();
  info->add_option("IN", *path, "The picture")->required();
  info->callback([path] { ShowInfo(*path); });
}

}  // namespace vn::tool
