#include "tools/terminal/warning.h"

#include <unistd.h>

#include <cstdio>

namespace vn::tool {

void Warn(const std::string& text) {
  const char* const wipe = isatty(STDERR_FILENO) == 1 ? "\r\x1b[K" : "";
  std::fprintf(stderr, "%svncore: warning: %s\n", wipe, text.c_str());
}

}  // namespace vn::tool
