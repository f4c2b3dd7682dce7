// The operations of vncore convert. Each kind tells its own option, form and help, and the command
// line is made from that.
#ifndef VNCORE_TOOLS_OPERATION_H
#define VNCORE_TOOLS_OPERATION_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/operations/bitmap.h"

namespace vn::tool {

// One step of a conversion: changes the bitmap and reports to the thread's status callback. Throws
// Failure.
using Operation = std::function<void(Bitmap&)>;

struct OperationKind {
  std::string option;  // "--crop"
  std::string form;    // what its value looks like; empty: it takes none
  std::string help;
  // The operation for a value, or nothing for a value that is not of the form.
  std::function<std::optional<Operation>(const std::string& value)> parse;
};

// All kinds but colour reduction and those of geometry, in the order of the help.
const std::vector<OperationKind>& OperationKinds();

// What parses an operation that takes no value.
std::function<std::optional<Operation>(const std::string&)> PlainOperation(
    const char* option, VnStatus(VN_CALL* operation)(BitmapHandle*));

// Throws Failure for anything but OK, in the name of an option; Interruption after a signal.
void RequireDone(const std::string& option, VnStatus status);

}  // namespace vn::tool

#endif
