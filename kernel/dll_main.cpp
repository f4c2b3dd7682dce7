// Where the loader reaches the library, and the words of the process that are written here alone.
// This file is compiled once for each form of the library: the shared one has an entry point.
//
// On Win32s one copy of these words serves all processes; the count keeps the work of the first
// attachment to the first.
#include "device/bridge.h"
#include "kernel/process.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

int32_t processRefCount = 0;
bool onWin32s = false;
bool bridgeActive = false;

// Win32s answers with the top bit set and the major version, in the low byte, of Windows 3; the
// Windows 95 line sets the bit too, but counts from 4.
bool IsWin32s(uint32_t version) { return (version & 0x80000000u) && (version & 0xFF) < 4; }

BOOL AttachProcess(HINSTANCE instance) {
  if (processRefCount == 0) {
    onWin32s = IsWin32s(GetVersion());
    // Without the bridge the library works, but for what only the bridge can do.
    bridgeActive = onWin32s && SetUpBridge(instance);
  }
  if (!TakeThreadSlot()) return FALSE;
  ++processRefCount;
  return TRUE;
}

BOOL DetachProcess(HINSTANCE instance) {
  --processRefCount;
  FreeThreadSettings();
  ReleaseThreadSlot();
  // The bridge has no routine for its end: its set-up runs once more, as its other side expects.
  if (processRefCount == 0 && bridgeActive) SetUpBridge(instance);
  return TRUE;
}

}  // namespace

bool OnWin32s() { return onWin32s; }
bool BridgeActive() { return bridgeActive; }

BOOL OnLoaderCall(HINSTANCE instance, DWORD reason) {
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      return AttachProcess(instance);
    case DLL_PROCESS_DETACH:
      return DetachProcess(instance);
    case DLL_THREAD_ATTACH:
      return CreateThreadSettings();
    case DLL_THREAD_DETACH:
      FreeThreadSettings();
      return TRUE;
    default:
      return TRUE;
  }
}

}  // namespace vn

#ifndef VNCORE_STATIC_FORM

extern "C" VN_API BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  return vn::OnLoaderCall(instance, reason);
}

#elif defined(_WIN32)

// A program or DLL that holds the static form has an entry point of its own. The loader calls, ahead
// of that one and with the same reasons, what lies between the C runtime's marks .CRT$XLA and
// .CRT$XLZ. (Elsewhere the headless platform's loader calls.)
static void NTAPI OnTlsEvent(PVOID instance, DWORD reason, PVOID) {
  vn::OnLoaderCall(static_cast<HINSTANCE>(instance), reason);
}
extern "C" __attribute__((section(".CRT$XLB"), used)) const PIMAGE_TLS_CALLBACK vn_onTlsEvent =
    OnTlsEvent;

#endif
