// vncore print: pictures on pages, in files as a printer would have them or to a printer of the system.
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/commands/picture_options.h"
#include "tools/desktop/queue_pages.h"
#include "tools/operations/lengths.h"
#include "tools/operations/load_bitmap.h"
#include "tools/operations/print_job.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/option_values.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

constexpr int32_t kUsualDots = 300;

struct PrintOptions {
  std::vector<std::string> in;
  std::string out;
  std::optional<std::string> printer;
  std::optional<LengthPair> paper;
  bool list = false, landscape = false, mono = false, allPages = false;
  std::optional<int32_t> dotsPerInch;
  int32_t copies = 1;
  LengthPair at, size;
  ReadOptions read;
};

// What goes on a page: one of a file.
struct Page {
  const std::string* in;
  int32_t number;
  std::unique_ptr<PictureSource> picture;  // open already, or null
};

std::unique_ptr<PictureSource> OpenPage(const PrintOptions& options, Page& page) {
  if (page.picture) return std::move(page.picture);
  ReadOptions read = options.read;
  if (!options.allPages) return OpenOnePicture(*page.in, read);
  read.page = page.number;
  return OpenPicture(*page.in, read);
}

std::vector<Page> PagesOf(const PrintOptions& options) {
  std::vector<Page> pages;
  for (const std::string& in : options.in) {
    auto first = options.allPages ? OpenPicture(in, options.read) : nullptr;
    const int32_t count = first ? first->Info().facts.pages : 1;
    if (in != "-") first.reset();  // a pipe brings its picture once
    for (int32_t page = 1; page <= count; ++page)
      pages.push_back({&in, page, std::move(first)});
  }
  return pages;
}

// "default" is the system's, unless a printer is called so.
std::unique_ptr<PrintQueue> OpenQueue(const std::string& name) {
  if (name == "default") {
    for (const QueueSummary& queue : ListQueues()) {
      if (queue.name == name) return std::make_unique<PrintQueue>(name);
    }
    return std::make_unique<PrintQueue>("");
  }
  return std::make_unique<PrintQueue>(name);
}

void ListPrinters() {
  for (const QueueSummary& queue : ListQueues()) {
    std::printf("%-20s %-12s %s%s\n", queue.name.c_str(), queue.state.c_str(),
                queue.isDefault ? "(default) " : "", queue.description.c_str());
  }
}

void ListPapers(const std::string& name) {
  const auto queue = OpenQueue(name);
  if (const auto dots = queue->DotsPerInch()) std::printf("%d dots per inch\n", *dots);
  const std::string usual = queue->UsualPaper().name;
  for (const QueuePaper& paper : queue->Papers()) {
    std::printf("%-32s %g x %g mm, prints on %g x %g from %g, %g%s\n", paper.name.c_str(),
                paper.width, paper.height, paper.width - paper.left - paper.right,
                paper.height - paper.top - paper.bottom, paper.left, paper.top,
                paper.name == usual ? " (default)" : "");
  }
}

// The device that draws pages, and where they go.
struct Destination {
  Paper paper;
  std::unique_ptr<PageSink> pages;
};

Destination FilesOf(const PrintOptions& options, size_t pages) {
  const int32_t dots = options.dotsPerInch.value_or(kUsualDots);
  const LengthPair size = options.paper.value_or(*ParsePaper("A4"));
  Paper paper{size.first.Pixels(dots), size.second.Pixels(dots), dots, options.mono};
  if (options.landscape) std::swap(paper.width, paper.height);
  RequirePossibleSize("--paper", paper.width, paper.height, 24);
  return {paper, CreatePages(options.out, static_cast<int32_t>(pages))};
}

Destination QueueOf(const PrintOptions& options, const PrintQueue& queue, std::string& job) {
  QueueWish wish;
  wish.title = std::filesystem::path(options.in.front()).filename().string();
  wish.paper = options.paper
                   ? queue.PaperOf(options.paper->first.value, options.paper->second.value)
                   : queue.UsualPaper();
  wish.dotsPerInch = options.dotsPerInch.value_or(queue.DotsPerInch().value_or(kUsualDots));
  wish.copies = options.copies;
  wish.landscape = options.landscape;
  wish.mono = options.mono;
  const Paper page = PrintablePage(wish);
  RequirePossibleSize(wish.paper.name, page.width, page.height, 24);
  return {page, CreateQueuePages(queue, wish, job)};
}

void PrintPages(const PrintOptions& options, std::vector<Page> pages, Destination destination) {
  const int32_t dots = destination.paper.dotsPerInch;
  PrintJob job(destination.paper, std::move(destination.pages));
  for (Page& page : pages) {
    const auto picture = OpenPage(options, page);
    const ProgressBar bar("printing " + *page.in);
    Bitmap bitmap;
    LoadBitmap(*picture, STORAGE_AUTO, bitmap);
    job.Print(bitmap, options.at.first.Pixels(dots), options.at.second.Pixels(dots),
              options.size.first.Pixels(dots), options.size.second.Pixels(dots));
  }
  job.Finish();
}

void Print(const PrintOptions& options) {
  if (options.list) return options.printer ? ListPapers(*options.printer) : ListPrinters();
  if (options.in.empty()) throw CLI::RequiredError("IN");
  std::vector<Page> pages = PagesOf(options);
  if (!options.printer) {
    if (options.out.empty()) throw CLI::RequiredError("--output or --printer");
    Destination files = FilesOf(options, pages.size());
    return PrintPages(options, std::move(pages), std::move(files));
  }
  const auto queue = OpenQueue(*options.printer);
  std::string job;
  PrintPages(options, std::move(pages), QueueOf(options, *queue, job));
  std::printf("%s\n", job.c_str());
}

}  // namespace

void AddPrintCommand(CLI::App& app) {
  CLI::App* const print = app.add_subcommand(
      "print",
      "Print pictures, one a page: to a printer, as a PDF or TIFF document, or as pictures");
  const auto options = std::make_shared<PrintOptions>();
  print->add_option("IN", options->in, "The pictures");
  CLI::Option* const output =
      print->add_option("-o,--output", options->out,
                        "PAGES.pdf or PAGES.tif, or PAGES.png for PAGES-1.png and so on");
  CLI::Option* const printer =
      print
          ->add_option("--printer", options->printer,
                       "A printer of the system, or default; its job's name is written")
          ->excludes(output);
  print->add_flag("--list", options->list, "Name the printers, or with --printer its papers");
  print->add_option("--copies", options->copies, "Copies that the printer makes, 1 if not given")
      ->check(CLI::Range(1, 9999))
      ->needs(printer);
  AddParsed(print, "--paper", &options->paper, &ParsePaper, "A4|letter|WxHmm",
            "Paper: A3 to A6, letter, legal, or its size; the printer's own or A4 if not given");
  print->add_flag("--landscape", options->landscape, "Turn the paper on its side");
  print
      ->add_option("--dpi", options->dotsPerInch,
                   "Dots per inch, the printer's own or 300 if not given")
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
