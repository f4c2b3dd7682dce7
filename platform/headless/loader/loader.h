// The loader's knowledge: whether the process is attached, and the calling thread's attachment.
#ifndef VNCORE_PLATFORM_HEADLESS_LOADER_H
#define VNCORE_PLATFORM_HEADLESS_LOADER_H

namespace headless {

// Lets the library see a new thread before the thread's first look into its local storage.
void AttachThreadOnce();

}  // namespace headless

#endif
