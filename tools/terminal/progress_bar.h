// A progress bar on standard error, driven by the library's status callback.
#ifndef VNCORE_TOOLS_PROGRESS_BAR_H
#define VNCORE_TOOLS_PROGRESS_BAR_H

#include <chrono>
#include <string>

#include "tools/terminal/status_listener.h"

namespace vn::tool {

// Listens to the thread's operations while it lives. It draws only when standard error is a terminal
// and the work has lasted a moment.
class ProgressBar {
 public:
  explicit ProgressBar(std::string label);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar();

  // From now on none draws.
  static void Hide() { hidden_ = true; }
  // What comes now is part `stage` (the first being 0) of `stages` equal parts of the whole.
  void BeginStage(int32_t stage, int32_t stages) { stage_ = stage, stages_ = stages; }

 private:
  void Draw(int32_t percent);

  static bool hidden_;
  std::string label_;
  std::chrono::steady_clock::time_point start_;
  bool terminal_;
  int32_t stage_ = 0, stages_ = 1;
  int32_t drawn_ = -1;
  StatusListener listener_;
};

}  // namespace vn::tool

#endif
