// Operations of the command line that take a second picture: combine and underlay.
#ifndef VNCORE_TOOLS_OVERLAY_VALUES_H
#define VNCORE_TOOLS_OVERLAY_VALUES_H

#include <optional>
#include <string>

#include "tools/operations/operation.h"

namespace vn::tool {

// "FILE,OPERATION[,X,Y]": the picture of FILE, its top left corner at (X, Y) of the picture, both as
// seen. An operation is a name of CombineNames(), and before it any of "not-", which complements the
// result, "not-file-" and "not-picture-", which complement an operand. A file of another depth is
// first turned to the picture's, up to 8 bits with its palette.
std::string CombineForm();
std::string CombineNames();
std::optional<Operation> ParseCombine(const std::string& value);

// "FILE[,tile|stretch]"
std::optional<Operation> ParseUnderlay(const std::string& value);

}  // namespace vn::tool

#endif
