// Manual pages, in the troff macros of man(7).
#ifndef VNCORE_TOOLS_MANUAL_H
#define VNCORE_TOOLS_MANUAL_H

#include <string>

#include "tools/terminal/option_table.h"

namespace vn::tool {

// The page of `command`. `program` is the program's name where `command` is a subcommand of it, else
// empty; `version` stands in the foot.
std::string ManualPage(const CommandEntry& command, const std::string& program,
                       const std::string& version);

}  // namespace vn::tool

#endif
