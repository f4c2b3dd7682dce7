// One picture through a chain of operations.
#ifndef VNCORE_TOOLS_CONVERT_PICTURE_H
#define VNCORE_TOOLS_CONVERT_PICTURE_H

#include <string>
#include <vector>

#include "tools/commands/picture_options.h"
#include "tools/operations/operation.h"

namespace vn::tool {

struct Conversion {
  std::vector<Operation> operations;
  ReadOptions read;
  WriteOptions write;
  StorageChoice storage;
  bool allPages = false;
};

// Converts file `in` to file `out`. What the operations allow goes through row by row; no bitmap is
// made before the first that needs the whole picture. Throws Failure or Interruption, and then leaves
// no file.
void ConvertPicture(const Conversion& conversion, const std::string& in, const std::string& out);

}  // namespace vn::tool

#endif
