// The desktop's clipboard, through the programs that it has for it: wl-copy and wl-paste under
// Wayland, xclip under X11.
//
// A selection lives as long as a program that hands it out. These go on doing that when the tool or
// the viewer has ended, they know both ways of large pictures (pieces under X11, pipes under Wayland),
// and no library has to be linked for it.
#ifndef VNCORE_TOOLS_CLIPBOARD_H
#define VNCORE_TOOLS_CLIPBOARD_H

#include <string>

#include "tools/desktop/temporary_file.h"
#include "tools/operations/bitmap.h"

namespace vn::tool {

enum class ClipboardType { kPng, kBmp };

// ".png"
std::string ExtensionOf(ClipboardType type);

// Puts a copy of the file, which is of this type, there. Throws Failure, in one line where there is no
// display or no such program, or Interruption.
void CopyFileToDesktop(const std::string& path, ClipboardType type);
// Puts a copy of the bitmap there, as a PNG file.
void CopyToDesktop(BitmapHandle* bitmap);

// The picture that is there, as a file: PNG if it can be had, or else another format that the tool
// reads. Throws as CopyFileToDesktop does, also when there is none.
class PastedPicture {
 public:
  PastedPicture();

  const std::string& Path() const { return file_.Path(); }

 private:
  const TemporaryFile file_{"clipboard", ""};
};

}  // namespace vn::tool

#endif
