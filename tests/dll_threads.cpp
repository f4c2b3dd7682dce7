// Windows only: the DLL under the system's own loader. Threads from before the load and after it
// have settings of their own, and loading again starts afresh.
#include <cstdio>

#include <vncore/vncore.h>

namespace {

HMODULE library;
HANDLE loaded;
int faults = 0;

template <class Function>
Function* Find(const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

void Expect(const char* what, int32_t expected, int32_t found) {
  if (expected == found) return;
  std::printf("%s: %d, not %d\n", what, static_cast<int>(found), static_cast<int>(expected));
  ++faults;
}

// The first value that the thread finds, and the one that it leaves for itself.
void UseSettings(const char* what, int32_t value) {
  auto* set = Find<decltype(Vn_SetDefaultXResolution)>("Vn_SetDefaultXResolution");
  auto* get = Find<decltype(Vn_GetDefaultXResolution)>("Vn_GetDefaultXResolution");
  Expect(what, 150, set(value));
  Expect(what, value, get());
}

DWORD WINAPI EarlyThread(void*) {
  WaitForSingleObject(loaded, INFINITE);
  UseSettings("a thread from before the load", 111);
  return 0;
}

DWORD WINAPI LateThread(void*) {
  UseSettings("a thread from after the load", 222);
  return 0;
}

bool Load() {
  library = LoadLibraryA("VNCORE32.DLL");
  if (!library) std::printf("VNCORE32.DLL does not load: %lu\n", GetLastError());
  return library != nullptr;
}

}  // namespace

int main() {
  loaded = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  HANDLE early = CreateThread(nullptr, 0, EarlyThread, nullptr, 0, nullptr);
  if (!Load()) return 1;
  UseSettings("the loading thread", 333);
  SetEvent(loaded);
  WaitForSingleObject(early, INFINITE);
  HANDLE late = CreateThread(nullptr, 0, LateThread, nullptr, 0, nullptr);
  WaitForSingleObject(late, INFINITE);
  Expect("the loading thread, afterwards", 333,
         Find<decltype(Vn_GetDefaultXResolution)>("Vn_GetDefaultXResolution")());
  FreeLibrary(library);
  if (!Load()) return 1;
  UseSettings("the loading thread, loaded again", 444);
  FreeLibrary(library);
  std::printf("%d faults\n", faults);
  return faults ? 1 : 0;
}
