#include "tools/commands/picture_options.h"

#include "tools/terminal/option_values.h"
#include "tools/terminal/warning.h"

namespace vn::tool {

void AddReadOptions(CLI::App* command, ReadOptions* read, const std::string& uncovered) {
  AddParsed(command, "--background", &read->background, &ParseColor, "COLOUR",
            "Under transparent pixels" + uncovered + ", white if not given");
  command->add_option("--page", read->page, "The page of a file of several, 1 if not given")
      ->check(CLI::Range(1, INT32_MAX, "POSITIVE"));
  command->add_flag("--srgb", read->srgb,
                    "Turn colours to sRGB out of the picture's colour profile");
  command->add_flag("--ignore-orientation", read->ignoreOrientation,
                    "Leave photographs and scans as they lie in the file");
}

void AddAllPagesOption(CLI::App* command, bool* allPages) {
  command->add_flag("--all-pages", *allPages, "Every page of a file of several")
      ->excludes(command->get_option("--page"));
}

std::unique_ptr<PictureSource> OpenOnePicture(const std::string& path, const ReadOptions& read) {
  auto picture = OpenPicture(path, read);
  const int32_t pages = picture->Info().facts.pages;
  if (read.page == 0 && pages > 1)
    Warn(path + ": the first of " + std::to_string(pages) +
         " pages is taken, the others stay behind (see --page and --all-pages)");
  return picture;
}

void AddFormatOption(CLI::App* command, std::string* format) {
  command
      ->add_option("--format", *format,
                   "The file format of OUT, where its name does not tell it or is -")
      ->type_name(FormatNames());
}

void AddStripOption(CLI::App* command, bool* strip) {
  command->add_flag("--strip", *strip,
                    "Write nothing but pixels and resolution: no profile, no Exif, no texts");
}

void WriteOptions::AddTo(CLI::App* command) {
  AddFormatOption(command, &form.format);
  command
      ->add_option(
          "--compression", form.compression,
          "How hard PNG files are compressed, from 0 (not at all) to 9; if not given, as it "
          "pays with the picture")
      ->check(CLI::Range(0, 9));
  AddStripOption(command, &strip);
}

void AddStorageOptions(CLI::App* command, StorageChoice* storage) {
  AddParsed(command, "--storage", &storage->kind, &ParseStorage, "auto|disk|memory",
            "Where pixels lie while they are worked on; not given, nowhere if rows can go straight "
            "through, else by their size and the memory that is free");
  command->add_flag("--low-memory", storage->lowMemory,
                    "Work in a few megabytes: larger pictures lie in temporary files");
}

}  // namespace vn::tool
