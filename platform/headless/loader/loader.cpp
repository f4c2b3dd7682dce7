// The loader's part: the library sees the process come and go, and threads as they first need it.
//
// Attachment runs from a constructor ahead of all ordinary static objects, and detachment after
// them, so a static object of the program may hold a bitmap. A thread is attached at its first look
// into thread-local storage, which covers threads that are older than the library, and detached by
// a POSIX key's destructor, after the thread's own C++ objects.
#include "platform/headless/loader/loader.h"

#include <pthread.h>

#include <atomic>
#include <mutex>

#include <vncore/platform/headless/headless.h>
#include "platform/headless/memory/pages.h"

// The library that is loaded defines it; a loader knows it by name alone.
namespace vn {
BOOL OnLoaderCall(HINSTANCE instance, DWORD reason);
}

namespace headless {
namespace {

constinit std::atomic<uint32_t> version{HEADLESS_VERSION_WIN32};

// Counts attachments of the process; 0 while it is not attached. A thread is attached when it
// bears the same number.
constinit std::atomic<uint32_t> attachment{0};
constinit uint32_t attachmentsSoFar = 0;
constinit thread_local uint32_t threadAttachment = 0;

constinit std::mutex callMutex;  // the library hears one call at a time
constinit pthread_key_t threadEndKey = 0;
constinit bool hasThreadEndKey = false;

BOOL CallLibrary(DWORD reason) {
  // Any address that is the library's own will do as its instance.
  return vn::OnLoaderCall(reinterpret_cast<HINSTANCE>(&attachment), reason);
}

// Marks the calling thread as belonging to an attachment, to be detached at its end.
void MarkAttached(uint32_t number) {
  threadAttachment = number;
  if (hasThreadEndKey) pthread_setspecific(threadEndKey, &threadAttachment);
}

void DetachThread(void*) {
  const std::lock_guard lock(callMutex);
  if (threadAttachment == 0 || threadAttachment != attachment) return;
  CallLibrary(DLL_THREAD_DETACH);
  threadAttachment = 0;
}

BOOL AttachProcess() {
  const std::lock_guard lock(callMutex);
  if (!hasThreadEndKey) hasThreadEndKey = pthread_key_create(&threadEndKey, DetachThread) == 0;
  MarkAttached(++attachmentsSoFar);
  attachment = threadAttachment;
  const BOOL attached = CallLibrary(DLL_PROCESS_ATTACH);
  if (!attached) attachment = threadAttachment = 0;
  return attached;
}

void DetachProcess() {
  const std::lock_guard lock(callMutex);
  if (attachment == 0) return;
  threadAttachment = attachment;  // a thread that never looked in must not be attached by this
  CallLibrary(DLL_PROCESS_DETACH);
  attachment = threadAttachment = 0;
}

// 101 is the earliest that is left to a program: before every static object without a priority.
__attribute__((constructor(101))) void OnLoad() { AttachProcess(); }

__attribute__((destructor(101))) void OnUnload() {
  DetachProcess();
  if (hasThreadEndKey) pthread_key_delete(threadEndKey);  // its destructor goes with the library
  hasThreadEndKey = false;
  ReleaseCachedPages();
}

}  // namespace

void AttachThreadOnce() {
  const uint32_t process = attachment.load(std::memory_order_acquire);
  if (threadAttachment == process || process == 0) return;
  const std::lock_guard lock(callMutex);
  MarkAttached(process);  // first, because the library looks into thread-local storage itself
  CallLibrary(DLL_THREAD_ATTACH);
}

}  // namespace headless

int32_t Headless_Restart(void) {
  headless::DetachProcess();
  return headless::AttachProcess();
}

void Headless_SetVersion(uint32_t version) { headless::version = version; }

DWORD GetVersion(void) { return headless::version; }
