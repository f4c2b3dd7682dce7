// Options that commands have in common, with the same words for the same thing.
#ifndef VNCORE_TOOLS_PICTURE_OPTIONS_H
#define VNCORE_TOOLS_PICTURE_OPTIONS_H

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "tools/formats/picture.h"
#include "tools/operations/storage_choice.h"

namespace vn::tool {

// How pictures are read: --background, --page, --srgb, --ignore-orientation. `uncovered` is what the
// background stands behind besides transparent pixels.
void AddReadOptions(CLI::App* command, ReadOptions* read, const std::string& uncovered = "");

// --all-pages, which --page excludes.
void AddAllPagesOption(CLI::App* command, bool* allPages);

// Opens a picture; warns if it has more pages than the one that is asked for by no number.
std::unique_ptr<PictureSource> OpenOnePicture(const std::string& path, const ReadOptions& read);

// --format, empty for that of the name.
void AddFormatOption(CLI::App* command, std::string* format);

// --strip
void AddStripOption(CLI::App* command, bool* strip);

// How the result is written, and what it says of itself: --format, --compression, --strip.
struct WriteOptions {
  FileForm form;
  bool strip = false;

  void AddTo(CLI::App* command);
  // Metadata for the result of a picture.
  Metadata MetadataOf(const PictureInfo& picture) const {
    return strip ? Metadata{} : picture.metadata;
  }
};

// --storage and --low-memory.
void AddStorageOptions(CLI::App* command, StorageChoice* storage);

}  // namespace vn::tool

#endif
