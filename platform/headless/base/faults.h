// Failure injection: which call of a family fails, so that every failure path can be walked.
#ifndef VNCORE_PLATFORM_HEADLESS_FAULTS_H
#define VNCORE_PLATFORM_HEADLESS_FAULTS_H

#include <vncore/platform/headless/headless.h>

namespace headless {

// Counts one operation of the family; true when it is the one that was chosen to fail. Called once,
// first thing, by every operation that headless.h lists under the family. Safe on all threads.
bool FailsNow(Headless_Operation family);

}  // namespace headless

#endif
