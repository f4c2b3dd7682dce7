// vncore chart: the test card as a file.
#include <memory>
#include <string>
#include <vector>

#include "kernel/progress.h"
#include "tools/commands/chart.h"
#include "tools/commands/commands.h"
#include "tools/operations/option_values.h"
#include "tools/terminal/interrupt.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

struct ChartOptions {
  std::string out;
  Size size{1024, 768};
};

void DrawChart(const ChartOptions& options) {
  Chart chart(options.size.width, options.size.height);
  const auto sink = CreatePicture(OpenPictureFile(options.out), chart.Info());
  const ProgressBar bar("drawing " + options.out);
  std::vector<uint8_t> row(StrideOf(static_cast<uint32_t>(options.size.width), 24));
  Progress progress(static_cast<uint32_t>(options.size.height));
  for (int32_t y = 0; y < options.size.height; ++y) {
    ThrowIfInterrupted();
    chart.ReadRow(row.data());
    sink->WriteRow(row.data());
    progress.Step();
  }
  sink->Finish();
}

}  // namespace

void AddChartCommand(CLI::App& app) {
  CLI::App* const chart = app.add_subcommand("chart", "Draw a test card");
  const auto options = std::make_shared<ChartOptions>();
  chart->add_option("OUT", options->out, "The test card")->required();
  AddParsed(chart, "--size", &options->size, &ParseSize, "WxH", "Its size, 1024x768 if not given");
  chart->callback([options] { DrawChart(*options); });
}

}  // namespace vn::tool
