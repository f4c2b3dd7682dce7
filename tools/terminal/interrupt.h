// The signals that ask for an end: noted by a handler, heeded between rows, so that every owner on the way out
// removes what it made.
#ifndef VNCORE_TOOLS_INTERRUPT_H
#define VNCORE_TOOLS_INTERRUPT_H

namespace vn::tool {

// Thrown from row loops; main() ends the process by the signal itself.
struct Interruption {
  int signal;
};

// Also makes writes beyond a file size limit and into closed pipes fail instead of killing.
void CatchSignals();
// The signal that came, or 0.
int PendingSignal();
void ThrowIfInterrupted();
// What a status callback answers, heeded: throws, where it stopped the work, the Interruption that it
// did so for, or else Failure.
void RequireGoOn(bool goOn);
// Ends the process as the signal would have.
[[noreturn]] void DieOf(int signal);

}  // namespace vn::tool

#endif
