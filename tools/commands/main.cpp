// vncore: the kernel's command-line tool. Every failure is one line on standard error and status 1.
#include "tools/commands/commands.h"
#include "tools/terminal/program.h"

namespace vn::tool {
namespace {

void Run(int argc, char** argv) {
  CLI::App app("VNCORE32, a raster-image kernel: paint, convert and inspect pictures", "vncore");
  app.set_version_flag("--version", [] { return VersionLine("vncore"); });
  app.require_subcommand(1);
  AddPaintCommand(app);
  AddEffectCommand(app);
  AddConvertCommand(app);
  AddChartCommand(app);
  AddInfoCommand(app);
  AddPrintCommand(app);
  ParseCommandLine(app, argc, argv);
}

}  // namespace
}  // namespace vn::tool

int main(int argc, char** argv) {
  return vn::tool::RunProgram("vncore", [=] { vn::tool::Run(argc, argv); });
}
