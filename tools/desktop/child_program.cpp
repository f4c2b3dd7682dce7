#include "tools/desktop/child_program.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>

#include "tools/desktop/temporary_file.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kPatience = std::chrono::seconds(10);
constexpr int kLongestWait = 200;  // milliseconds; a signal is heard this soon

// How a child starts: its streams, its session, and the signals that this program ignores.
class Start {
 public:
  Start(const std::string& in, const std::string& out, const std::string& error) {
    posix_spawn_file_actions_init(&files_);
    posix_spawnattr_init(&attributes_);
    Open(STDIN_FILENO, in, O_RDONLY);
    Open(STDOUT_FILENO, out, O_WRONLY);
    Open(STDERR_FILENO, error, O_WRONLY);
    sigset_t usual;
    sigemptyset(&usual);
    sigaddset(&usual, SIGPIPE);
    sigaddset(&usual, SIGXFSZ);
    posix_spawnattr_setsigdefault(&attributes_, &usual);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF);
  }
  Start(const Start&) = delete;
  Start& operator=(const Start&) = delete;
  ~Start() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&files_);
  }

  // 0, or an error number.
  int Run(const std::vector<std::string>& words, pid_t& child) const {
    std::vector<char*> arguments;
    for (const std::string& word : words)
      arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    return posix_spawnp(&child, arguments[0], &files_, &attributes_, arguments.data(), environ);
  }

 private:
  void Open(int descriptor, const std::string& path, int how) {
    posix_spawn_file_actions_addopen(&files_, descriptor, path.empty() ? "/dev/null" : path.c_str(),
                                     how, 0);
  }

  posix_spawn_file_actions_t files_;
  posix_spawnattr_t attributes_;
};

// A child that is waited for, or else killed.
class Child {
 public:
  explicit Child(pid_t id) : id_(id), ended_(static_cast<int>(syscall(SYS_pidfd_open, id, 0))) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    if (id_ > 0) {
      kill(id_, SIGKILL);
      waitpid(id_, nullptr, 0);
    }
    if (ended_ >= 0) close(ended_);
  }

  // Its status, as waitpid tells it; nothing when it is still at work after kPatience.
  std::optional<int> Await() {
    for (const auto start = Clock::now(); Clock::now() - start < kPatience;) {
      int status = 0;
      if (waitpid(id_, &status, WNOHANG) == id_) {
        id_ = 0;
        return status;
      }
      ThrowIfInterrupted();
      // Old kernels give no descriptor for a process; then this sleeps.
      pollfd end{ended_, POLLIN, 0};
      poll(&end, 1, kLongestWait);
    }
    return std::nullopt;
  }

 private:
  pid_t id_;
  int ended_;
};

std::string FirstLine(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

}  // namespace

std::optional<ChildOutcome> RunChild(const std::vector<std::string>& words, const std::string& in,
                                     const std::string& out) {
  const TemporaryFile error("words", "");
  pid_t id = 0;
  const int cannot = Start(in, out, error.Path()).Run(words, id);
  if (cannot == ENOENT) return std::nullopt;
  if (cannot) throw Failure("cannot run " + words[0] + ": " + std::strerror(cannot));
  const auto status = Child(id).Await();
  if (!status) throw Failure(words[0] + " does not end");
  return ChildOutcome{WIFEXITED(*status) && WEXITSTATUS(*status) == 0, FirstLine(error.Path())};
}

}  // namespace vn::tool
