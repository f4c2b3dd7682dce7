/* A DLL that uses the library. With OWN_ENTRY it has an entry point, which counts its calls. */
#include <vncore/vncore.h>

#ifdef OWN_ENTRY
static LONG calls[4];

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
  (void)instance;
  (void)reserved;
  InterlockedIncrement(&calls[reason]);
  return TRUE;
}

__declspec(dllexport) int Client_Calls(int reason) { return (int)calls[reason]; }
#endif

__declspec(dllexport) int Client_Resolution(void) { return Vn_GetDefaultXResolution(); }
