// Change of depth on the command line: --depth, --palette, --colors and --dither, which belong
// together where they are written in a row.
#ifndef VNCORE_TOOLS_REDUCTION_H
#define VNCORE_TOOLS_REDUCTION_H

#include <optional>
#include <string>
#include <vector>

#include "tools/operations/operation.h"

namespace vn::tool {

class Reduction {
 public:
  struct Setting {
    const char* option;
    const char* form;
    const char* help;
  };
  static const std::vector<Setting>& Settings();

  // True when the setting was not made yet.
  bool Lacks(const std::string& option) const;
  // Takes the value of one setting; false when it is not of the form.
  bool Take(const std::string& option, const std::string& value);
  // A method of dithering without anything that tells the colours: more likely forgotten than meant.
  bool IsDitheringAlone() const { return method_ && !depth_ && !colors_ && !palette_; }
  // The operation, with what was left open settled. Throws Failure for settings that do not go
  // together, and for a palette file that cannot be read.
  Operation Build() const;

 private:
  uint32_t Depth(size_t fileColors) const;

  std::optional<uint32_t> depth_, colors_, method_;
  std::optional<std::string> palette_;
};

}  // namespace vn::tool

#endif
