#include "tools/terminal/program.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include <vncore/vn_frame.h>
#include "tools/terminal/documents.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

[[noreturn]] void EndInterrupted(const std::string& program, int signal) {
  Complain(program, "interrupted");
  DieOf(signal);
}

}  // namespace

void Complain(const std::string& program, std::string message) {
  std::replace(message.begin(), message.end(), '\n', ' ');
  std::fprintf(stderr, "%s: %s\n", program.c_str(), message.c_str());
}

int RunProgram(const std::string& program, const std::function<void()>& run) {
  CatchSignals();
  try {
    run();
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
      throw Failure("cannot write standard output");
    }
    return 0;
  } catch (const Interruption& interruption) {
    EndInterrupted(program, interruption.signal);
  } catch (const Failure& failure) {
    // A blocked read or write that a signal ended looks like a failed one.
    if (const int signal = PendingSignal()) EndInterrupted(program, signal);
    Complain(program, failure.what());
  } catch (const std::bad_alloc&) {
    Complain(program, "there is not enough memory");
  } catch (const std::exception& error) {
    Complain(program, error.what());
  }
  return 1;
}

bool ParseCommandLine(CLI::App& app, int argc, char** argv) {
  AddDocumentsOption(app, VersionLine(app.get_name()));
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) {
      throw Failure(std::string(error.what()) + " (see " + app.get_name() + " --help)");
    }
    app.exit(error);
    return false;
  }
  return true;
}

std::string VersionLine(const std::string& program) {
  VersionRecord version;
  Vn_VersionInfo(&version);
  return program + " " + std::to_string(version.MajorVersion) + "." +
         std::to_string(version.MinorVersion);
}

}  // namespace vn::tool
