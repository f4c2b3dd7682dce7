// What the programs of this folder have in common around their work.
#ifndef VNCORE_TOOLS_PROGRAM_H
#define VNCORE_TOOLS_PROGRAM_H

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace vn::tool {

// Writes one line in the name of `program` to standard error.
void Complain(const std::string& program, std::string message);

// Runs the program and returns its exit status: 0, or 1 after one line for whatever it throws. After
// a signal that asks for an end, the process ends as the signal would have ended it.
int RunProgram(const std::string& program, const std::function<void()>& run);

// Parses the command line. False when it asked for nothing but help or the version, which are shown
// then. Throws Failure for a line that cannot be understood.
bool ParseCommandLine(CLI::App& app, int argc, char** argv);

// "vncore 6.2": the version that the library tells, behind the program's name.
std::string VersionLine(const std::string& program);

}  // namespace vn::tool

#endif
