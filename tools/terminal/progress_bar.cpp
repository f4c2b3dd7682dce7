#include "tools/terminal/progress_bar.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

constexpr auto kPatience = std::chrono::milliseconds(400);
constexpr int32_t kCells = 40;

}  // namespace

ProgressBar* ProgressBar::current_ = nullptr;

ProgressBar::ProgressBar(std::string label)
    : before_(Vn_SetStatusCallBack(&OnPercent)),
      label_(std::move(label)),
      start_(std::chrono::steady_clock::now()),
      terminal_(isatty(STDERR_FILENO) == 1) {
  current_ = this;
}

ProgressBar::~ProgressBar() {
  if (drawn_ >= 0) std::fputs("\r\x1b[K", stderr);
  current_ = nullptr;
  Vn_SetStatusCallBack(before_);
}

VnStatus VN_CALL ProgressBar::OnPercent(int32_t percent) {
  // A shear to the left asks beyond its end until it may go on.
  if (PendingSignal() && percent <= 100) return kStopped;
  if (current_ && current_->terminal_) current_->Draw(percent);
  return OK;
}

void ProgressBar::Draw(int32_t percent) {
  percent = (stage_ * 100 + percent) / stages_;
  if (percent == drawn_ || std::chrono::steady_clock::now() - start_ < kPatience) return;
  drawn_ = percent;
  const int32_t full = percent * kCells / 100;
  std::string cells(static_cast<size_t>(full), '#');
  cells.resize(kCells, '.');
  std::fprintf(stderr, "\r%s [%s] %3d%%", label_.c_str(), cells.c_str(), percent);
  std::fflush(stderr);
}

}  // namespace vn::tool
