#include "tools/terminal/option_table.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace vn::tool {
namespace {

// A word that is typed as it stands, unlike a name of something in capitals.
bool IsWord(const std::string& text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return std::islower(static_cast<unsigned char>(c)) ||
           std::isdigit(static_cast<unsigned char>(c)) || c == '-';
  });
}

// Of options that tell no form, only those for names of files take a text.
bool IsFile(const std::string& text) {
  return text.starts_with("FILE") || text == "FOLDER" || text == "TEXT";
}

// "ordered|clustered[,ANGLE]" without what may be left out.
std::string WithoutBrackets(const std::string& text) {
  std::string outside;
  int depth = 0;
  for (const char c : text) {
    if (c == '[') ++depth;
    if (depth == 0) outside += c;
    if (c == ']') --depth;
  }
  return outside;
}

// "1|4|8" tells words, and so does {1,4,8}.
void ReadForm(OptionEntry& entry) {
  std::string form = WithoutBrackets(entry.form);
  char between = '|';
  if (const size_t set = form.find('{'); set != form.npos) {
    form = form.substr(set + 1, form.find('}', set) - set - 1);
    between = ',';
  }
  std::istringstream alternatives(form);
  for (std::string text; std::getline(alternatives, text, between);) {
    if (IsFile(text)) entry.takesFile = true;
    if (IsWord(text)) entry.choices.push_back(text);
  }
}

OptionEntry ReadOption(const CLI::Option& option) {
  OptionEntry entry;
  for (const std::string& name : option.get_snames())
    entry.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames())
    entry.names.push_back("--" + name);
  if (option.get_positional()) {
    entry.form = option.get_name(true);
  } else if (option.get_items_expected_max() > 0) {
    entry.form = option.get_type_name();
  }
  entry.help = option.get_description();
  entry.group = option.get_group();
  entry.required = option.get_required();
  entry.many = option.get_items_expected_max() > 1;
  ReadForm(entry);
  return entry;
}

}  // namespace

CommandEntry ReadCommand(const CLI::App& app) {
  CommandEntry command{app.get_name(), app.get_description(), app.get_footer(), {}, {}, {}};
  for (const std::string& group : app.get_groups()) {
    const auto options = app.get_options(
        [&](const CLI::Option* option) { return !group.empty() && option->get_group() == group; });
    for (const CLI::Option* option : options)
      (option->get_positional() ? command.positionals : command.options)
          .push_back(ReadOption(*option));
  }
  for (const CLI::App* sub :
       app.get_subcommands([](const CLI::App* sub) { return !sub->get_group().empty(); }))
    command.commands.push_back(ReadCommand(*sub));
  return command;
}

}  // namespace vn::tool
