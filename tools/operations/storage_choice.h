// Where the pixels of pictures lie while they are worked on.
#ifndef VNCORE_TOOLS_STORAGE_CHOICE_H
#define VNCORE_TOOLS_STORAGE_CHOICE_H

#include <optional>

#include "tools/formats/picture.h"

namespace vn::tool {

struct StorageChoice {
  std::optional<int32_t> kind;  // a STORAGE_ value; none: by size
  bool lowMemory = false;       // whatever is larger than a few megabytes lies in a temporary file

  // Settles it for a picture, before its bitmap is made, while there is none and nobody listens to
  // the status callback: what does not fit into the memory that is free, with a result beside it,
  // counts as `lowMemory`. Returns a STORAGE_ value.
  int32_t Settle(const PictureInfo& info) const;
};

}  // namespace vn::tool

#endif
