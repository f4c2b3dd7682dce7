// Peers that run as scripts in a process of their own.
#ifndef VNCORE_BENCH_SCRIPT_SECONDS_H
#define VNCORE_BENCH_SCRIPT_SECONDS_H

#include <cstdio>
#include <string>

namespace vn::bench {

// The seconds that a command prints, or 0 when it fails.
inline double SecondsOfScript(const std::string& command) {
  FILE* answer = popen(command.c_str(), "r");
  if (!answer) return 0;
  double seconds = 0;
  if (std::fscanf(answer, "%lf", &seconds) != 1) seconds = 0;
  return pclose(answer) == 0 ? seconds : 0;
}

}  // namespace vn::bench

#endif
