// What the user should know of a result that is good otherwise: a line on standard error.
#ifndef VNCORE_TOOLS_WARNING_H
#define VNCORE_TOOLS_WARNING_H

#include <string>

namespace vn::tool {

// "vncore: warning: " and the text. A progress bar there gives way.
void Warn(const std::string& text);

}  // namespace vn::tool

#endif
