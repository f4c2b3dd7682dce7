// A progress bar on standard error, driven by the library's status callback.
#ifndef VNCORE_TOOLS_PROGRESS_BAR_H
#define VNCORE_TOOLS_PROGRESS_BAR_H

#include <chrono>
#include <string>

#include <vncore/vncore.h>

namespace vn::tool {

// What the callback returns to stop an operation after a signal: a value of the tool's own, neither
// OK nor an error of the library.
inline constexpr VnStatus kStopped = 0;

// While it lives it is the thread's status callback; one at a time. It draws only when standard
// error is a terminal and the work has lasted a moment, and it stops operations after a signal.
class ProgressBar {
 public:
  explicit ProgressBar(std::string label);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar();

  // What comes now is part `stage` (the first being 0) of `stages` equal parts of the whole.
  void BeginStage(int32_t stage, int32_t stages) { stage_ = stage, stages_ = stages; }

 private:
  static VnStatus VN_CALL OnPercent(int32_t percent);
  void Draw(int32_t percent);

  static ProgressBar* current_;
  VnStatusCallBack before_;
  std::string label_;
  std::chrono::steady_clock::time_point start_;
  bool terminal_;
  int32_t stage_ = 0, stages_ = 1;
  int32_t drawn_ = -1;
};

}  // namespace vn::tool

#endif
