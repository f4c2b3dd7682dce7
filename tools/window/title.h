// What the window's title tells.
#ifndef VNCORE_TOOLS_TITLE_H
#define VNCORE_TOOLS_TITLE_H

#include <string>

#include "tools/window/stage.h"

namespace vn::tool {

struct Shown {
  std::string path;
  size_t at, count;  // which of how many pictures, from 0
  BitmapHandle* bitmap;
  ScreenSettings screen;
  std::string effect;
  double zoom;
  std::string note;  // what has just been done, or empty
};

std::string Title(const Shown& shown);

}  // namespace vn::tool

#endif
