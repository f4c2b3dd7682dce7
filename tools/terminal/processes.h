// Independent pieces of work side by side, each in a process of its own: the library's settings, the
// screen and whatever a damaged file does to a decoder stay within it.
#ifndef VNCORE_TOOLS_PROCESSES_H
#define VNCORE_TOOLS_PROCESSES_H

#include <functional>
#include <vector>

namespace vn::tool {

struct Work {
  size_t pieces;
  int32_t atOnce;
  bool keepGoing;  // after a failure; otherwise what runs is finished and nothing more begins
  // In the piece's own process; a failure is told there, as the program tells its own.
  std::function<void(size_t piece)> run;
  // Here, with the number of pieces that are done, each time one is.
  std::function<void(size_t done)> tell;
};

enum class Piece {
  kNotBegun,
  kDone,
  kFailed,  // it has told why
  kKilled   // its process ended by a signal and told nothing
};

// Throws Interruption after a signal, which the processes then got as well and have heeded.
std::vector<Piece> RunSideBySide(const Work& work);

}  // namespace vn::tool

#endif
