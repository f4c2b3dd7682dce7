// Many pictures into a folder.
#ifndef VNCORE_TOOLS_BATCH_H
#define VNCORE_TOOLS_BATCH_H

#include <string>
#include <vector>

#include "tools/commands/convert_picture.h"

namespace vn::tool {

struct Batch {
  std::string into;        // the folder, made where it is missing; empty: no batch
  int32_t jobs = 0;        // at once; 0: as many as the machine has processors
  bool keepGoing = false;  // after a failure

  void AddTo(CLI::App* command);
};

// Converts each picture as a run of its own would: IN becomes INTO/NAME, with the extension of the
// format that is asked for, or its own. Throws Failure, also in the end if one failed.
void ConvertBatch(const Conversion& conversion, const Batch& batch,
                  const std::vector<std::string>& in);

}  // namespace vn::tool

#endif
