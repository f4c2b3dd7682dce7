#include "tools/terminal/documents.h"

#include <filesystem>
#include <fstream>

#include "tools/terminal/completion.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/manual.h"

namespace vn::tool {
namespace {

void Write(const std::filesystem::path& path, const std::string& text) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw Failure("cannot write " + path.string());
}

void WriteDocuments(const std::filesystem::path& folder, const CommandEntry& program,
                    const std::string& version) {
  const std::filesystem::path manual = folder / "man" / "man1";
  Write(manual / (program.name + ".1"), ManualPage(program, "", version));
  for (const CommandEntry& sub : program.commands) {
    Write(manual / (program.name + "-" + sub.name + ".1"), ManualPage(sub, program.name, version));
  }
  Write(folder / "bash-completion" / "completions" / program.name, BashCompletion(program));
  Write(folder / "zsh" / "site-functions" / ("_" + program.name), ZshCompletion(program));
  Write(folder / "fish" / "vendor_completions.d" / (program.name + ".fish"),
        FishCompletion(program));
}

}  // namespace

void AddDocumentsOption(CLI::App& app, const std::string& version) {
  const auto write = [&app, version](const std::string& folder) {
    WriteDocuments(folder, ReadCommand(app), version);
    throw CLI::Success();
  };
  app.add_option_function<std::string>("--documents", write)->group("")->trigger_on_parse();
}

}  // namespace vn::tool
