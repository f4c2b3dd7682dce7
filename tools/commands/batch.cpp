#include "tools/commands/batch.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <map>

#include "tools/formats/page_files.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/processes.h"
#include "tools/terminal/program.h"

namespace vn::tool {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void FailAsOne(const std::string& one, const std::string& other,
                            const std::string& result) {
  throw Failure(one + " and " + other + " would both become " + result);
}

// 1 also for what cannot be read, which tells so in its turn.
int32_t CountPages(const std::string& path, const ReadOptions& read) {
  try {
    return OpenPicture(path, read)->Info().facts.pages;
  } catch (const Failure&) {
    return 1;
  }
}

// Pictures by their results. Where pages become files of their own, the only page of a-2.tif is not
// written over the second of a.tif. Pictures are opened for it only where names are so alike.
using Taken = std::map<std::string, std::string>;
void KeepPagesApart(const Conversion& conversion, const Taken& taken) {
  for (const auto& [result, path] : taken) {
    const fs::path name(result);
    const std::string stem = name.stem().string();
    const size_t dash = stem.rfind('-');
    if (dash == std::string::npos || HoldsPages(result, conversion.write.form)) continue;
    const fs::path whole = name.parent_path() / (stem.substr(0, dash) + name.extension().string());
    const auto other = taken.find(whole.string());
    int32_t page = 0;
    std::from_chars(stem.data() + dash + 1, stem.data() + stem.size(), page);
    if (other == taken.end() || NameOfPage(other->first, page) != result) continue;
    const int32_t pages = CountPages(other->second, conversion.read);
    if (pages > 1 && page >= 1 && page <= pages && CountPages(path, conversion.read) == 1)
      FailAsOne(other->second, path, result);
  }
}

// The result of each picture. No two may be one file, and none the picture itself.
std::vector<std::string> ResultsOf(const Conversion& conversion, const Batch& batch,
                                   const std::vector<std::string>& in) {
  const FileForm& form = conversion.write.form;
  std::vector<std::string> results;
  Taken taken;
  for (const std::string& path : in) {
    if (path == "-") throw Failure("standard input has no name in " + batch.into);
    fs::path name = fs::path(path).filename();
    if (!form.format.empty()) name.replace_extension(form.format);
    const std::string result = (fs::path(batch.into) / name).string();
    const auto [other, fresh] = taken.emplace(result, path);
    if (!fresh) FailAsOne(other->second, path, result);
    std::error_code apart;
    if (fs::equivalent(path, result, apart)) throw Failure(path + " would become itself");
    HoldsPages(result, form);  // or is of no known format
    results.push_back(result);
  }
  if (conversion.allPages) KeepPagesApart(conversion, taken);
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
  const std::vector<std::string> results = ResultsOf(conversion, batch, in);
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
