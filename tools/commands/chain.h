// The operations of a command line.
#ifndef VNCORE_TOOLS_CHAIN_H
#define VNCORE_TOOLS_CHAIN_H

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tools/operations/draw_operations.h"
#include "tools/operations/geometry_operations.h"
#include "tools/operations/operation.h"

namespace vn::tool {

// Adds the options of all operations to a command, and finds what was written.
class ChainOptions {
 public:
  ChainOptions() = default;
  ChainOptions(const ChainOptions&) = delete;
  ChainOptions& operator=(const ChainOptions&) = delete;

  // This must outlive the command.
  void AddTo(CLI::App* command);
  // In the order of the command line; settings of a reduction join the one that they stand next to.
  // Throws Failure for values that are not of their form.
  std::vector<Operation> Build(const CLI::App& command) const;

  GeometrySettings geometry;

 private:
  std::unique_ptr<DrawSettings> draw_;  // as they stand while the chain is built
  std::vector<OperationKind> geometryKinds_, drawKinds_;
  // The option of each kind of operation, and of each setting of a reduction. Options hold their
  // values themselves, one for each time they were written.
  std::map<const CLI::Option*, const OperationKind*> kinds_;
  std::map<const CLI::Option*, std::string> settings_;
};

}  // namespace vn::tool

#endif
