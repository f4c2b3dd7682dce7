// A program of the system at work for this one.
#ifndef VNCORE_TOOLS_CHILD_PROGRAM_H
#define VNCORE_TOOLS_CHILD_PROGRAM_H

#include <optional>
#include <string>
#include <vector>

namespace vn::tool {

struct ChildOutcome {
  bool succeeded;
  std::string error;  // the first line of its standard error
};

// Runs words[0], looked for in PATH, in a session of its own, so that what it leaves behind outlives
// the terminal; standard input comes from file `in` and standard output goes to file `out`, either of
// which may be empty. Nothing where there is no such program. Throws Failure when it takes longer than
// ten seconds, and Interruption; it has ended in either case.
std::optional<ChildOutcome> RunChild(const std::vector<std::string>& words, const std::string& in,
                                     const std::string& out);

}  // namespace vn::tool

#endif
