// vncore print: pictures on pages, as a printer would have them.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/commands/picture_options.h"
#include "tools/operations/load_bitmap.h"
#include "tools/operations/option_values.h"
#include "tools/operations/print_job.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

constexpr double kMillimetresPerInch = 25.4;

// A length in pixels of the page, or in millimetres.
struct Length {
  double value = 0;
  bool millimetres = false;

  int32_t Pixels(int32_t dotsPerInch) const {
    const double pixels = millimetres ? value / kMillimetresPerInch * dotsPerInch : value;
    return static_cast<int32_t>(std::lround(pixels));
  }
};

struct LengthPair {
  Length first, second;
};

constexpr double kMostLength = 1'000'000;

std::optional<Length> ParseLength(std::string_view text, bool millimetres) {
  Length length{0, millimetres};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length.value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  if (!(std::abs(length.value) <= kMostLength)) return std::nullopt;
  return length;
}

// Two lengths with `separator` between them; "mm" behind the second one holds for both.
std::optional<LengthPair> ParsePair(std::string_view text, char separator) {
  const bool millimetres = text.ends_with("mm");
  if (millimetres) text.remove_suffix(2);
  const size_t middle = text.find(separator);
  if (middle == text.npos) return std::nullopt;
  const auto first = ParseLength(text.substr(0, middle), millimetres);
  const auto second = ParseLength(text.substr(middle + 1), millimetres);
  if (!first || !second) return std::nullopt;
  return LengthPair{*first, *second};
}

std::optional<LengthPair> ParsePosition(const std::string& text) { return ParsePair(text, ','); }

std::optional<LengthPair> ParseExtent(const std::string& text) {
  const auto pair = ParsePair(text, 'x');
  return pair && pair->first.value >= 0 && pair->second.value >= 0 ? pair : std::nullopt;
}

struct NamedPaper {
  std::string_view name;
  double width, height;  // millimetres
};
constexpr NamedPaper kPapers[] = {{"A3", 297, 420},         {"A4", 210, 297},
                                  {"A5", 148, 210},         {"A6", 105, 148},
                                  {"letter", 215.9, 279.4}, {"legal", 215.9, 355.6}};

std::optional<LengthPair> ParsePaper(const std::string& text) {
  for (const NamedPaper& paper : kPapers) {
    if (paper.name == text) return LengthPair{{paper.width, true}, {paper.height, true}};
  }
  const auto extent = ParseExtent(text);
  return extent && extent->first.millimetres ? extent : std::nullopt;
}

struct PrintOptions {
  std::vector<std::string> in;
  std::string out;
  LengthPair paper = *ParsePaper("A4");
  bool landscape = false, mono = false, allPages = false;
  int32_t dotsPerInch = 300;
  LengthPair at, size;
  ReadOptions read;

  Paper WantedPaper() const {
    Paper wanted{paper.first.Pixels(dotsPerInch), paper.second.Pixels(dotsPerInch), dotsPerInch,
                 mono};
    if (landscape) std::swap(wanted.width, wanted.height);
    return wanted;
  }
};

// What goes on a page: one of a file.
struct Page {
  const std::string* in;
  int32_t number;
};

std::unique_ptr<PictureSource> OpenPage(const PrintOptions& options, const Page& page) {
  ReadOptions read = options.read;
  if (!options.allPages) return OpenOnePicture(*page.in, read);
  read.page = page.number;
  return OpenPicture(*page.in, read);
}

std::vector<Page> PagesOf(const PrintOptions& options) {
  std::vector<Page> pages;
  for (const std::string& in : options.in) {
    const int32_t count = options.allPages ? OpenPicture(in, options.read)->Info().facts.pages : 1;
    for (int32_t page = 1; page <= count; ++page)
      pages.push_back({&in, page});
  }
  return pages;
}

void Print(const PrintOptions& options) {
  const std::vector<Page> pages = PagesOf(options);
  const Paper paper = options.WantedPaper();
  RequirePossibleSize("--paper", paper.width, paper.height, 24);
  PrintJob job(paper, CreatePages(options.out, static_cast<int32_t>(pages.size())));
  const int32_t dots = paper.dotsPerInch;
  for (const Page& page : pages) {
    const auto picture = OpenPage(options, page);
    const ProgressBar bar("printing " + *page.in);
    Bitmap bitmap;
    LoadBitmap(*picture, STORAGE_AUTO, bitmap);
    job.Print(bitmap, options.at.first.Pixels(dots), options.at.second.Pixels(dots),
              options.size.first.Pixels(dots), options.size.second.Pixels(dots));
  }
  job.Finish();
}

}  // namespace

void AddPrintCommand(CLI::App& app) {
  CLI::App* const print = app.add_subcommand(
      "print", "Print pictures, one a page, as a PDF or TIFF document or as pictures");
  const auto options = std::make_shared<PrintOptions>();
  print->add_option("IN", options->in, "The pictures")->required();
  print
      ->add_option("-o,--output", options->out,
                   "PAGES.pdf or PAGES.tif, or PAGES.png for PAGES-1.png and so on")
      ->required();
  AddParsed(print, "--paper", &options->paper, &ParsePaper, "A4|letter|WxHmm",
            "Paper: A3 to A6, letter, legal, or its size; A4 if not given");
  print->add_flag("--landscape", options->landscape, "Turn the paper on its side");
  print->add_option("--dpi", options->dotsPerInch, "Dots per inch, 300 if not given")
      ->check(CLI::Range(30, 2400));
  print->add_flag("--mono", options->mono, "A printer of black dots, clustered for gray");
  AddParsed(print, "--at", &options->at, &ParsePosition, "X,Y[mm]",
            "Top left corner in dots or millimetres; 0 centres");
  AddParsed(print, "--size", &options->size, &ParseExtent, "WxH[mm]",
            "Printed size; a 0 follows from the other by the aspect, both from the page");
  AddReadOptions(print, &options->read);
  AddAllPagesOption(print, &options->allPages);
  print->callback([options] { Print(*options); });
}

}  // namespace vn::tool
