#include "tools/commands/picture_options.h"

#include "tools/operations/option_values.h"

namespace vn::tool {

void AddReadOptions(CLI::App* command, ReadOptions* read, const std::string& uncovered) {
  AddParsed(command, "--background", &read->background, &ParseColor, "COLOUR",
            "Under transparent pixels" + uncovered + ", white if not given");
  command->add_option("--page", read->page, "The page of a file of several, 1 if not given");
  command->add_flag("--srgb", read->srgb,
                    "Turn colours to sRGB out of the picture's colour profile");
  command->add_flag("--ignore-orientation", read->ignoreOrientation,
                    "Leave photographs and scans as they lie in the file");
}

void WriteOptions::AddTo(CLI::App* command) {
  command->add_flag("--strip", strip,
                    "Write nothing but pixels and resolution: no profile, no Exif, no texts");
}

}  // namespace vn::tool
