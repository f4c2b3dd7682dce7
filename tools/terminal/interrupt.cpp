#include "tools/terminal/interrupt.h"

#include <signal.h>
#include <stdlib.h>

#include <initializer_list>

#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

volatile sig_atomic_t pendingSignal = 0;

void Note(int signal) { pendingSignal = signal; }

}  // namespace

void CatchSignals() {
  struct sigaction note = {};
  note.sa_handler = Note;  // without SA_RESTART: a blocked read or write comes back
  sigemptyset(&note.sa_mask);
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    struct sigaction before = {};
    sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(number, &note, nullptr);  // nohup stays nohup
  }
  signal(SIGXFSZ, SIG_IGN);
  signal(SIGPIPE, SIG_IGN);
}

int PendingSignal() { return pendingSignal; }

void ThrowIfInterrupted() {
  if (pendingSignal) throw Interruption{pendingSignal};
}

void RequireGoOn(bool goOn) {
  if (goOn) return;
  ThrowIfInterrupted();
  throw Failure("stopped");
}

void DieOf(int number) {
  signal(number, SIG_DFL);
  raise(number);
  exit(1);
}

}  // namespace vn::tool
