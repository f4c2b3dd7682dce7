// Words of the process, and the part of attachment that makes and frees a thread's settings.
#ifndef VNCORE_KERNEL_PROCESS_H
#define VNCORE_KERNEL_PROCESS_H

#include <vncore/platform/win32.h>

namespace vn {

// What the loader tells the library: the process, or a thread of it, comes or goes (a DLL_ value).
// Process attachment detects Win32s, takes the thread-local slot and makes the thread's settings;
// thread attachment makes a thread's settings; the detachments give them back. FALSE when an
// attachment failed.
BOOL OnLoaderCall(HINSTANCE instance, DWORD reason);

// Takes the thread-local slot under which each thread's settings are kept, in place of any earlier
// one, and makes the calling thread's block under it. False when there is no slot or no memory;
// nothing has changed then.
bool TakeThreadSlot();
// Gives the slot back. Blocks under it must be gone.
void ReleaseThreadSlot();

// Makes the calling thread's block with its initial values. False when memory fails.
bool CreateThreadSettings();
// Frees the calling thread's block, if it has one.
void FreeThreadSettings();

// True when the first attachment established the bridge to the 16-bit library.
bool BridgeActive();

}  // namespace vn

#endif
