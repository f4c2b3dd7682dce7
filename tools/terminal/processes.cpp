#include "tools/terminal/processes.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>

#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"
#include "tools/terminal/program.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

class Processes {
 public:
  explicit Processes(const Work& work) : work_(work), pieces_(work.pieces, Piece::kNotBegun) {}
  Processes(const Processes&) = delete;
  Processes& operator=(const Processes&) = delete;
  ~Processes() {
    for (const auto& [process, piece] : running_)
      kill(process, SIGTERM);
    while (!running_.empty())
      Await();
  }

  size_t Running() const { return running_.size(); }
  bool Failed() const { return failed_; }
  const std::vector<Piece>& Pieces() const { return pieces_; }

  void Begin(size_t piece) {
    std::fflush(stdout);
    const pid_t process = fork();
    if (process < 0) throw Failure(std::string("cannot start a process: ") + std::strerror(errno));
    if (process == 0) {
      ProgressBar::Hide();
      _exit(RunProgram("vncore", [&] { Run(piece); }));
    }
    running_[process] = piece;
  }

  // For one of them to end.
  void Await() {
    int status = 0;
    const pid_t process = waitpid(-1, &status, 0);
    if (process < 0 && errno == EINTR) return;
    if (process < 0) return running_.clear();  // somebody else has heard of them
    const auto found = running_.find(process);
    if (found == running_.end()) return;
    const bool done = status == 0;
    pieces_[found->second] = done                ? Piece::kDone
                             : WIFEXITED(status) ? Piece::kFailed
                                                 : Piece::kKilled;
    failed_ |= !done;
    running_.erase(found);
  }

 private:
  void Run(size_t piece) const {
    try {
      work_.run(piece);
    } catch (...) {
      // Of a signal the program tells once, and not each of its processes.
      if (const int signal = PendingSignal()) DieOf(signal);
      throw;
    }
  }

  const Work& work_;
  std::vector<Piece> pieces_;
  std::map<pid_t, size_t> running_;
  bool failed_ = false;
};

}  // namespace

std::vector<Piece> RunSideBySide(const Work& work) {
  Processes processes(work);
  for (size_t next = 0;;) {
    ThrowIfInterrupted();
    const bool goOn = next < work.pieces && (work.keepGoing || !processes.Failed());
    if (goOn && processes.Running() < static_cast<size_t>(work.atOnce)) {
      processes.Begin(next++);
      continue;
    }
    if (processes.Running() == 0) break;
    processes.Await();
    work.tell(next - processes.Running());
  }
  return processes.Pieces();
}

}  // namespace vn::tool
