// vncore: the kernel's command-line tool. Every failure is one line on standard error and status 1.
#include "tools/commands/commands.h"
#include "tools/formats/picture.h"
#include "tools/terminal/program.h"

namespace vn::tool {
namespace {

// What differs from build to build.
std::string BuiltWith() {
  std::string text = "formats: " + FormatNames();
#ifdef VNCORE_TOOL_VIPS
  text += ", others through libvips";
#endif
#ifdef VNCORE_TOOL_LCMS
  text += "; colour profiles through lcms2";
#endif
#ifdef VNCORE_TOOL_IMAGEQUANT
  text += "; palettes of libimagequant";
#endif
#ifdef VNCORE_TOOL_PDF
  text += "; PDF through cairo";
#endif
#ifdef VNCORE_TOOL_GIF
  text += "; GIF animations";
#endif
#ifdef VNCORE_TOOL_CUPS
  text += "; printers through libcups";
#endif
  return text;
}

void Run(int argc, char** argv) {
  CLI::App app("VNCORE32, a raster-image kernel: paint, convert and inspect pictures", "vncore");
  app.set_version_flag("--version", [] { return VersionLine("vncore") + "\n" + BuiltWith(); });
  app.require_subcommand(1);
  AddPaintCommand(app);
  AddEffectCommand(app);
  AddConvertCommand(app);
  AddChartCommand(app);
  AddInfoCommand(app);
  AddPalettesCommand(app);
  AddPrintCommand(app);
  AddClipboardCommands(app);
  ParseCommandLine(app, argc, argv);
}

}  // namespace
}  // namespace vn::tool

int main(int argc, char** argv) {
  return vn::tool::RunProgram("vncore", [=] { vn::tool::Run(argc, argv); });
}
