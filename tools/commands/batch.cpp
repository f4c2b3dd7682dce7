#include "tools/commands/batch.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>

#include "tools/terminal/failure.h"
#include "tools/terminal/processes.h"
#include "tools/terminal/program.h"

namespace vn::tool {
namespace {

namespace fs = std::filesystem;

// The result of each picture. No two may be one file, and none the picture itself.
std::vector<std::string> ResultsOf(const Batch& batch, const FileForm& form,
                                   const std::vector<std::string>& in) {
  std::vector<std::string> results;
  std::map<std::string, std::string> taken;
  for (const std::string& path : in) {
    if (path == "-") throw Failure("standard input has no name in " + batch.into);
    fs::path name = fs::path(path).filename();
    if (!form.format.empty()) name.replace_extension(form.format);
    const std::string result = (fs::path(batch.into) / name).string();
    const auto [other, fresh] = taken.emplace(result, path);
    if (!fresh) throw Failure(other->second + " and " + path + " would both become " + result);
    std::error_code apart;
    if (fs::equivalent(path, result, apart)) throw Failure(path + " would become itself");
    HoldsPages(result, form);  // or is of no known format
    results.push_back(result);
  }
  return results;
}

// A line that is written over, on terminals, also by what a picture's own process has to tell.
class StatusLine {
 public:
  explicit StatusLine(size_t all) : all_(all), terminal_(isatty(STDERR_FILENO) == 1) {}
  ~StatusLine() {
    if (terminal_) std::fputs("\x1b[K", stderr);
  }
  void Tell(size_t done) const {
    if (terminal_) std::fprintf(stderr, "\x1b[K%zu of %zu pictures\r", done, all_);
  }

 private:
  const size_t all_;
  const bool terminal_;
};

void TellResult(const std::vector<std::string>& in, const std::vector<Piece>& pieces) {
  for (size_t i = 0; i < in.size(); ++i) {
    if (pieces[i] == Piece::kKilled) Complain("vncore", in[i] + ": its process was killed");
  }
  const auto count = [&](Piece piece) { return std::count(pieces.begin(), pieces.end(), piece); };
  const auto failed = count(Piece::kFailed) + count(Piece::kKilled), left = count(Piece::kNotBegun);
  if (failed == 0) return;
  std::string text = std::to_string(failed);
  text += " of " + std::to_string(pieces.size()) + " pictures failed";
  if (left > 0) text += ", " + std::to_string(left) + " were not begun (see --keep-going)";
  throw Failure(text);
}

}  // namespace

void Batch::AddTo(CLI::App* command) {
  CLI::Option* const folder = command->add_option(
      "--into", into, "Convert all pictures that are named, each into a file of its name in DIR");
  folder->type_name("DIR");
  command->add_option("--jobs", jobs, "With --into: pictures at once, as many as processors")
      ->check(CLI::Range(1, 1000))
      ->needs(folder);
  command->add_flag("--keep-going", keepGoing, "With --into: also after a failure")->needs(folder);
}

void ConvertBatch(const Conversion& conversion, const Batch& batch,
                  const std::vector<std::string>& in) {
  const std::vector<std::string> results = ResultsOf(batch, conversion.write.form, in);
  MakeFolder(batch.into);
  std::vector<Piece> pieces;
  {
    const StatusLine line(in.size());
    const auto processors = static_cast<int32_t>(sysconf(_SC_NPROCESSORS_ONLN));
    pieces = RunSideBySide(
        {in.size(), batch.jobs ? batch.jobs : std::max(processors, 1), batch.keepGoing,
         [&](size_t piece) { ConvertPicture(conversion, in[piece], results[piece]); },
         [&](size_t done) { line.Tell(done); }});
  }
  TellResult(in, pieces);
}

}  // namespace vn::tool
