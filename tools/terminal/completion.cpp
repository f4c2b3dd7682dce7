#include "tools/terminal/completion.h"

#include <algorithm>
#include <sstream>

namespace vn::tool {
namespace {

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words)
    text += (text.empty() ? "" : " ") + word;
  return text;
}

// Text within single quotes, with `special` characters behind a backslash.
std::string Quoted(const std::string& text, const std::string& special = "") {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      if (special.find(c) != special.npos) quoted += '\\';
      quoted += c;
    }
  }
  return quoted + "'";
}

std::vector<std::string> NamesOf(const CommandEntry& command) {
  std::vector<std::string> names;
  for (const CommandEntry& sub : command.commands)
    names.push_back(sub.name);
  for (const OptionEntry& option : command.options)
    names.insert(names.end(), option.names.begin(), option.names.end());
  return names;
}

// The branch of a case in which a command's options are known.
void WriteBashCommand(std::ostream& script, const std::string& pattern,
                      const CommandEntry& command) {
  script << "    " << pattern << ")\n      case $previous in\n";
  for (const OptionEntry& option : command.options) {
    if (option.form.empty()) continue;
    std::string names;
    for (const std::string& name : option.names)
      names += (names.empty() ? "" : " | ") + name;
    script << "        " << names << ") words='" << Joined(option.choices) << "'";
    if (option.takesFile) script << " files=1";
    script << " ;;\n";
  }
  script << "        *) words='" << Joined(NamesOf(command)) << "'";
  if (!command.positionals.empty()) script << " files=1";
  script << " ;;\n      esac ;;\n";
}

std::string ZshValue(const OptionEntry& option) {
  if (option.form.empty()) return "";
  std::string action = " ";  // anything
  if (!option.choices.empty() && option.takesFile) {
    action = "_alternative \"words:word:(" + Joined(option.choices) + ")\" \"files:file:_files\"";
  } else if (!option.choices.empty()) {
    action = "(" + Joined(option.choices) + ")";
  } else if (option.takesFile) {
    action = "_files";
  }
  const std::string form = option.form.size() > 30 ? "value" : option.form;
  return ":" + Quoted(form, ":[]") + ":" + Quoted(action);
}

void WriteZshArguments(std::ostream& script, const CommandEntry& command,
                       const std::string& indent) {
  for (const OptionEntry& option : command.options) {
    for (const std::string& name : option.names) {
      script << " \\\n"
             << indent << "'*'" << name << Quoted("[" + option.help + "]", ":") << ZshValue(option);
    }
  }
  for (const OptionEntry& argument : command.positionals) {
    script << " \\\n" << indent << (argument.many ? "'*:" : "':") << argument.form << ":_files'";
  }
}

void WriteFishOption(std::ostream& script, const std::string& begin, const OptionEntry& option) {
  script << begin;
  for (const std::string& name : option.names)
    script << (name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
  if (!option.form.empty()) {
    script << (option.takesFile ? " -r" : " -x");
    if (!option.choices.empty()) script << " -a " << Quoted(Joined(option.choices));
    if (option.takesFile) script << " -F";
  }
  script << " -d " << Quoted(option.help) << '\n';
}

}  // namespace

std::string BashCompletion(const CommandEntry& program) {
  std::ostringstream script;
  script << "_" << program.name << "() {\n"
         << "  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}\n"
         << "  local words='' files='' command=''\n"
         << "  [ \"$COMP_CWORD\" -gt 1 ] && command=${COMP_WORDS[1]}\n"
         << "  case $command in\n";
  for (const CommandEntry& sub : program.commands)
    WriteBashCommand(script, sub.name, sub);
  WriteBashCommand(script, "*", program);
  script << "  esac\n"
         << "  mapfile -t COMPREPLY < <(compgen ${files:+-f} -W \"$words\" -- \"$word\")\n"
         << "}\ncomplete -o filenames -F _" << program.name << ' ' << program.name << '\n';
  return script.str();
}

std::string ZshCompletion(const CommandEntry& program) {
  std::ostringstream script;
  script << "#compdef " << program.name << "\n\n";
  if (program.commands.empty()) {
    script << "_arguments";
    WriteZshArguments(script, program, "  ");
    script << '\n';
    return script.str();
  }
  script << "local -a commands\ncommands=(\n";
  for (const CommandEntry& sub : program.commands)
    script << "  " << Quoted(sub.name + ":" + sub.help) << '\n';
  script << ")\nif ((CURRENT == 2)); then\n  _describe command commands\n  _arguments";
  WriteZshArguments(script, program, "    ");
  script
      << "\n  return\nfi\nlocal command=$words[2]\nshift words\n((CURRENT--))\ncase $command in\n";
  for (const CommandEntry& sub : program.commands) {
    script << "  " << sub.name << ")\n    _arguments";
    WriteZshArguments(script, sub, "      ");
    script << " ;;\n";
  }
  script << "esac\n";
  return script.str();
}

std::string FishCompletion(const CommandEntry& program) {
  std::ostringstream script;
  const std::string complete = "complete -c " + program.name;
  const std::string first = program.commands.empty() ? "" : " -n __fish_use_subcommand";
  for (const CommandEntry& sub : program.commands)
    script << complete << first << " -f -a " << sub.name << " -d " << Quoted(sub.help) << '\n';
  for (const OptionEntry& option : program.options)
    WriteFishOption(script, complete + first, option);
  for (const CommandEntry& sub : program.commands) {
    for (const OptionEntry& option : sub.options) {
      WriteFishOption(script, complete + " -n '__fish_seen_subcommand_from " + sub.name + "'",
                      option);
    }
  }
  return script.str();
}

}  // namespace vn::tool
