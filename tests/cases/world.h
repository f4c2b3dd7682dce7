// The world that the cases run in: the headless platform or Windows.
#ifndef VNCORE_TESTS_CASES_WORLD_H
#define VNCORE_TESTS_CASES_WORLD_H

#include "tests/cases/case.h"

namespace vn::cases {

// Attaches the library for the length of the program.
class World {
 public:
  // `win32s`: the run must be one on Win32s; natively the platform then claims to be.
  explicit World(bool win32s);
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World();

  // False, with a line on standard error, when this is not the world that the caller asked for.
  bool ok() const { return ok_; }

  // Whether a family with this need can run here. Natively the screen is set first.
  bool Provide(Screen screen);

  // Whether nothing more is alive than at the last call; where the platform does not count, true.
  bool Balanced();

 private:
  bool ok_ = false;
};

}  // namespace vn::cases

#endif
