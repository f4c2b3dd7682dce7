#include "tools/desktop/clipboard.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "tools/desktop/child_program.h"
#include "tools/operations/save_bitmap.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

using Words = std::vector<std::string>;

// How a display's clipboard is reached. The type stands behind the words of `copy` and `paste`.
struct Programs {
  const char* display;  // the variable that names it
  Words copy, paste, types;
};

// On a desktop with both displays the first is its own.
const Programs kPrograms[] = {{"WAYLAND_DISPLAY",
                               {"wl-copy", "--type"},
                               {"wl-paste", "--no-newline", "--type"},
                               {"wl-paste", "--list-types"}},
                              {"DISPLAY",
                               {"xclip", "-selection", "clipboard", "-in", "-target"},
                               {"xclip", "-selection", "clipboard", "-out", "-target"},
                               {"xclip", "-selection", "clipboard", "-out", "-target", "TARGETS"}}};

const char* const kTypes[] = {"image/png",      "image/bmp",  "image/x-bmp",
                              "image/x-MS-bmp", "image/tiff", "image/jpeg"};

// Runs the program that `words` of a display's are; where it is missing, that of the next display.
ChildOutcome RunOneOf(Words Programs::*words, const std::string& type, const std::string& in,
                      const std::string& out) {
  std::string missing;
  for (const Programs& programs : kPrograms) {
    const char* const display = std::getenv(programs.display);
    if (!display || !*display) continue;
    Words line = programs.*words;
    if (!type.empty()) line.push_back(type);
    if (const auto outcome = RunChild(line, in, out)) return *outcome;
    missing += (missing.empty() ? "" : " or ") + line[0];
  }
  if (missing.empty()) throw Failure("there is no display, and so no clipboard");
  throw Failure("the clipboard needs the program " + missing);
}

std::string OfferedType() {
  const TemporaryFile list("types", "");
  const ChildOutcome outcome = RunOneOf(&Programs::types, "", "", list.Path());
  std::ifstream file(list.Path());
  Words offered;
  for (std::string line; std::getline(file, line);)
    offered.push_back(line);
  for (const char* const type : kTypes) {
    if (std::find(offered.begin(), offered.end(), type) != offered.end()) return type;
  }
  throw Failure("there is no picture on the clipboard" +
                (outcome.succeeded ? "" : ": " + outcome.error));
}

}  // namespace

std::string ExtensionOf(ClipboardType type) {
  return type == ClipboardType::kPng ? ".png" : ".bmp";
}

void CopyFileToDesktop(const std::string& path, ClipboardType type) {
  const bool png = type == ClipboardType::kPng;
  const ChildOutcome outcome = RunOneOf(&Programs::copy, png ? "image/png" : "image/bmp", path, "");
  if (!outcome.succeeded) throw Failure("cannot copy to the clipboard: " + outcome.error);
}

void CopyToDesktop(BitmapHandle* bitmap) {
  const TemporaryFile file("clipboard", ".png");
  const auto sink = CreatePicture(OpenPictureFile(file.Path()), InfoOf(bitmap));
  SaveBitmap(bitmap, *sink);
  sink->Finish();
  CopyFileToDesktop(file.Path(), ClipboardType::kPng);
}

PastedPicture::PastedPicture() {
  const ChildOutcome outcome = RunOneOf(&Programs::paste, OfferedType(), "", file_.Path());
  if (!outcome.succeeded) throw Failure("cannot paste from the clipboard: " + outcome.error);
}

}  // namespace vn::tool
