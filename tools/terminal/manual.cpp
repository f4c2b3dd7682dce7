#include "tools/terminal/manual.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <string_view>

namespace vn::tool {
namespace {

// Text as troff sets it: hyphens that can be copied, long forms that can be broken, nothing that is
// taken for a request.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\\') {
      escaped += "\\e";
    } else if (c == '-') {
      escaped += "\\-";
    } else if (c == '|') {
      escaped += "|\\:";  // a line may break behind it
    } else if ((c == '.' || c == '\'') && (escaped.empty() || escaped.back() == '\n')) {
      (escaped += "\\&") += c;
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string Bold(const std::string& text) { return "\\fB" + Escaped(text) + "\\fR"; }
std::string Italic(const std::string& text) { return "\\fI" + Escaped(text) + "\\fR"; }

std::string Sentence(std::string text) {
  if (!text.empty() && std::string_view(".:!?").find(text.back()) == std::string_view::npos)
    text += '.';
  return Escaped(text);
}

std::string Capitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

std::string PageName(const CommandEntry& command, const std::string& program) {
  return program.empty() ? command.name : program + "-" + command.name;
}

void WriteSynopsis(std::ostream& page, const CommandEntry& command, const std::string& program) {
  page << ".SH SYNOPSIS\n" << Bold(program.empty() ? command.name : program + " " + command.name);
  if (!command.commands.empty()) page << ' ' << Italic("COMMAND");
  if (!command.options.empty()) page << " [" << Italic("OPTION") << "]...";
  for (const OptionEntry& argument : command.positionals) {
    const std::string text = Italic(argument.form) + (argument.many ? "..." : "");
    page << ' ' << (argument.required ? text : "[" + text + "]");
  }
  page << '\n';
}

void WriteEntry(std::ostream& page, const OptionEntry& entry) {
  page << ".TP\n";
  for (size_t i = 0; i < entry.names.size(); ++i)
    page << (i ? ", " : "") << Bold(entry.names[i]);
  if (!entry.form.empty()) page << (entry.names.empty() ? "" : " ") << Italic(entry.form);
  page << '\n' << Sentence(entry.help) << '\n';
}

void WriteOptionEntries(std::ostream& page, const CommandEntry& command) {
  if (!command.positionals.empty()) page << ".SH ARGUMENTS\n";
  for (const OptionEntry& argument : command.positionals)
    WriteEntry(page, argument);
  std::string group;
  for (const OptionEntry& option : command.options) {
    if (option.group != group) page << ".SH " << Escaped(Capitals(option.group)) << '\n';
    group = option.group;
    WriteEntry(page, option);
  }
}

}  // namespace

std::string ManualPage(const CommandEntry& command, const std::string& program,
                       const std::string& version) {
  const std::string name = PageName(command, program);
  std::ostringstream page;
  page << ".TH " << Escaped(Capitals(name)) << " 1 \"\" \"" << version << "\" \"User Commands\"\n"
       << ".nh\n.ad l\n.SH NAME\n"
       << Escaped(name) << " \\- " << Escaped(command.help) << '\n';
  WriteSynopsis(page, command, program);
  if (!command.commands.empty()) page << ".SH COMMANDS\n";
  for (const CommandEntry& sub : command.commands) {
    page << ".TP\n"
         << Bold(sub.name) << '\n'
         << Sentence(sub.help) << " See\n.BR " << Escaped(PageName(sub, command.name)) << " (1).\n";
  }
  WriteOptionEntries(page, command);
  if (!command.footer.empty()) page << ".SH NOTES\n.nf\n" << Escaped(command.footer) << "\n.fi\n";
  page << ".SH EXIT STATUS\n0, or 1 after one line on standard error. After a failure there is no "
          "file left that was begun.\n";
  if (!program.empty()) page << ".SH SEE ALSO\n.BR " << Escaped(program) << " (1)\n";
  return page.str();
}

}  // namespace vn::tool
