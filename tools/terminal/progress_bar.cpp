#include "tools/terminal/progress_bar.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace vn::tool {
namespace {

constexpr auto kPatience = std::chrono::milliseconds(400);
constexpr int32_t kCells = 40;

}  // namespace

bool ProgressBar::hidden_ = false;

ProgressBar::ProgressBar(std::string label)
    : label_(std::move(label)),
      start_(std::chrono::steady_clock::now()),
      terminal_(!hidden_ && isatty(STDERR_FILENO) == 1),
      listener_([this](int32_t percent) {
        if (terminal_) Draw(percent);
        return OK;
      }) {}

ProgressBar::~ProgressBar() {
  if (drawn_ >= 0) std::fputs("\r\x1b[K", stderr);
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
