/* Loads the DLLs named, one after the other. Each sees this thread's settings, unless it holds a
 * library of its own ("static" in its name); its entry point ("entry") hears of the process and of
 * threads; and loading and freeing it leave this thread's settings alone. */
#include <stdio.h>
#include <string.h>

#include <vncore/vncore.h>

enum { RESOLUTION = 77 };

static int faults;

static void Expect(const char* dll, const char* what, int good) {
  if (good) return;
  printf("%s: %s\n", dll, what);
  ++faults;
}

static DWORD WINAPI Nothing(LPVOID unused) {
  (void)unused;
  return 0;
}

static void Load(const char* dll) {
  const HMODULE module = LoadLibraryA(dll);
  Expect(dll, "does not load", module != NULL);
  if (!module) return;
  typedef int (*Call)(int);
  typedef int (*Read)(void);
  const Call calls = (Call)(void*)GetProcAddress(module, "Client_Calls");
  const Read resolution = (Read)(void*)GetProcAddress(module, "Client_Resolution");
  const int isStatic = strstr(dll, "static") != NULL;
  Expect(dll, "sees other settings", resolution() == (isStatic ? 150 : RESOLUTION));
  Expect(dll, "its entry point is the wrong one", !calls == !strstr(dll, "entry"));
  if (calls) {
    Expect(dll, "its entry point did not hear of the load", calls(DLL_PROCESS_ATTACH) == 1);
    const HANDLE thread = CreateThread(NULL, 0, Nothing, NULL, 0, NULL);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    Expect(dll, "its entry point did not hear of a thread", calls(DLL_THREAD_ATTACH) == 1);
  }
  Expect(dll, "loading it reset this thread", Vn_GetDefaultXResolution() == RESOLUTION);
  FreeLibrary(module);
  Expect(dll, "freeing it reset this thread", Vn_GetDefaultXResolution() == RESOLUTION);
}

int main(int argc, char** argv) {
  Vn_SetDefaultXResolution(RESOLUTION);
  for (int i = 1; i < argc; ++i)
    Load(argv[i]);
  printf("load_client: %d DLLs, %d faults\n", argc - 1, faults);
  return faults != 0;
}
