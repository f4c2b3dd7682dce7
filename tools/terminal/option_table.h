// The options of a program as they stand in its command line, for whatever describes them: manual
// pages, completion in a shell.
#ifndef VNCORE_TOOLS_OPTION_TABLE_H
#define VNCORE_TOOLS_OPTION_TABLE_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace vn::tool {

struct OptionEntry {
  std::vector<std::string> names;  // "-h", "--help"; empty for a positional argument
  std::string form;                // what its value looks like; of a positional its name; or empty
  std::string help, group;
  std::vector<std::string> choices;  // the words among the alternatives of the form
  bool required = false;
  bool many = false;       // a positional that may be written several times
  bool takesFile = false;  // the value is, or begins with, the name of a file
};

struct CommandEntry {
  std::string name, help, footer;
  std::vector<OptionEntry> positionals, options;  // options in the order of their groups
  std::vector<CommandEntry> commands;
};

// The table of a command and of its subcommands. What has no group is hidden and left out.
CommandEntry ReadCommand(const CLI::App& app);

}  // namespace vn::tool

#endif
