// Options that commands have in common, with the same words for the same thing.
#ifndef VNCORE_TOOLS_PICTURE_OPTIONS_H
#define VNCORE_TOOLS_PICTURE_OPTIONS_H

#include <CLI/CLI.hpp>

#include "tools/formats/picture.h"

namespace vn::tool {

// How pictures are read: --background, --page, --srgb, --ignore-orientation. `uncovered` is what the
// background stands behind besides transparent pixels.
void AddReadOptions(CLI::App* command, ReadOptions* read, const std::string& uncovered = "");

// What the result says of itself.
struct WriteOptions {
  bool strip = false;

  void AddTo(CLI::App* command);
  // Metadata for the result of a picture.
  Metadata MetadataOf(const PictureInfo& picture) const {
    return strip ? Metadata{} : picture.metadata;
  }
};

}  // namespace vn::tool

#endif
