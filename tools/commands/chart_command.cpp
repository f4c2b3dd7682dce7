// vncore chart: the test card as a file.
#include <memory>
#include <string>

#include "tools/commands/chart.h"
#include "tools/commands/commands.h"
#include "tools/commands/picture_options.h"
#include "tools/operations/row_streams.h"
#include "tools/terminal/option_values.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

struct ChartOptions {
  std::string out;
  Size size{1024, 768};
  std::string format;
};

void DrawChart(const ChartOptions& options) {
  Chart chart(options.size.width, options.size.height);
  const auto sink =
      CreatePicture(OpenPictureFile(options.out, {options.format, std::nullopt}), chart.Info());
  const ProgressBar bar("drawing " + options.out);
  CopyRows(chart, *sink);
  sink->Finish();
}

}  // namespace

void AddChartCommand(CLI::App& app) {
  CLI::App* const chart = app.add_subcommand("chart", "Draw a test card");
  const auto options = std::make_shared<ChartOptions>();
  chart->add_option("OUT", options->out, "The test card")->required();
  AddParsed(chart, "--size", &options->size, &ParseSize, "WxH", "Its size, 1024x768 if not given");
  AddFormatOption(chart, &options->format);
  chart->callback([options] { DrawChart(*options); });
}

}  // namespace vn::tool
