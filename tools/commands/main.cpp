// vncore: the kernel's command-line tool. Every failure is one line on standard error and status 1.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <new>
#include <string>

#include <vncore/vn_frame.h>
#include "tools/commands/commands.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

int Complain(std::string message) {
  std::replace(message.begin(), message.end(), '\n', ' ');
  std::fprintf(stderr, "vncore: %s\n", message.c_str());
  return 1;
}

std::string VersionLine() {
  VersionRecord version;
  Vn_VersionInfo(&version);
  return "vncore " + std::to_string(version.MajorVersion) + "." +
         std::to_string(version.MinorVersion);
}

int Run(int argc, char** argv) {
  CLI::App app("VNCORE32, a raster-image kernel: paint, convert and inspect pictures", "vncore");
  app.set_version_flag("--version", &VersionLine);
  app.require_subcommand(1);
  AddPaintCommand(app);
  AddEffectCommand(app);
  AddConvertCommand(app);
  AddChartCommand(app);
  AddInfoCommand(app);
  AddPrintCommand(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) {
      return Complain(std::string(error.what()) + " (see vncore --help)");
    }
    app.exit(error);  // help and version
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    throw Failure("cannot write standard output");
  }
  return 0;
}

}  // namespace
}  // namespace vn::tool

int main(int argc, char** argv) {
  using namespace vn::tool;
  CatchSignals();
  try {
    return Run(argc, argv);
  } catch (const Interruption& interruption) {
    Complain("interrupted");
    DieOf(interruption.signal);
  } catch (const Failure& failure) {
    // A blocked read or write that a signal ended looks like a failed one.
    if (const int signal = PendingSignal()) {
      Complain("interrupted");
      DieOf(signal);
    }
    return Complain(failure.what());
  } catch (const std::bad_alloc&) {
    return Complain("there is not enough memory");
  } catch (const std::exception& error) {
    return Complain(error.what());
  }
}
