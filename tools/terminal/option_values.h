// Options whose values have a form. The command line's templates compile slowly: what only parses
// values includes value_parsers.h.
#ifndef VNCORE_TOOLS_OPTION_VALUES_H
#define VNCORE_TOOLS_OPTION_VALUES_H

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "tools/operations/value_parsers.h"

namespace vn::tool {

// Adds an option whose text goes through `parse` into `target`; text that does not parse is a usage
// error that shows `form`.
template <class Target, class Value>
CLI::Option* AddParsed(CLI::App* command, const std::string& name, Target* target,
                       std::optional<Value> (*parse)(const std::string&), const std::string& form,
                       const std::string& help) {
  const auto take = [=](const std::string& text) {
    const std::optional<Value> value = parse(text);
    if (!value) throw CLI::ValidationError(name, "'" + text + "' is not of the form " + form);
    *target = *value;
  };
  return command->add_option_function<std::string>(name, take, help)->type_name(form);
}

}  // namespace vn::tool

#endif
