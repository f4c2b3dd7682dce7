// What shells are told so that they complete command lines: names of commands and options, the words
// that an option takes, and files.
#ifndef VNCORE_TOOLS_COMPLETION_H
#define VNCORE_TOOLS_COMPLETION_H

#include <string>

#include "tools/terminal/option_table.h"

namespace vn::tool {

std::string BashCompletion(const CommandEntry& program);
std::string ZshCompletion(const CommandEntry& program);
std::string FishCompletion(const CommandEntry& program);

}  // namespace vn::tool

#endif
