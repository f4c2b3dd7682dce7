// Universal thunk of Win32s: set-up, and the requests in both directions.
#include "device/bridge.h"

namespace vn {
namespace {

constexpr char kLibrary[] = "VNBRDG32.DLL";
constexpr char kInitEntry[] = "UTInit";
constexpr char kProcEntry[] = "UTProc";

// Shapes of the calls that KERNEL32 exports on Win32s alone.
using BridgeProcType = BridgeWord(WINAPI*)(void* arguments, DWORD request, void** translations);
using BridgeCallbackType = int32_t(WINAPI*)(const BridgeWord* arguments, uint32_t request);
using RegisterProc = BOOL(WINAPI*)(HINSTANCE instance, LPCSTR library, LPCSTR initEntry,
                                   LPCSTR procEntry, BridgeProcType* proc,
                                   BridgeCallbackType callback, void* initData);

// Process-wide, written at attachment and detachment only.
BridgeProcType bridgeProc = nullptr;
FARPROC registerProc = nullptr;
FARPROC unregisterProc = nullptr;  // looked up as a sign of a whole thunk layer; never called

// No message box when a library is missing, for the length of a search.
class QuietErrors {
 public:
  QuietErrors() : before_(SetErrorMode(SEM_NOOPENFILEERRORBOX | SEM_FAILCRITICALERRORS)) {}
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors() { SetErrorMode(before_); }

 private:
  UINT before_;
};

class LoadedLibrary {
 public:
  explicit LoadedLibrary(LPCSTR name) : module_(LoadLibraryA(name)) {}
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;
  ~LoadedLibrary() {
    if (module_) FreeLibrary(module_);
  }
  FARPROC Find(LPCSTR name) const { return module_ ? GetProcAddress(module_, name) : nullptr; }

 private:
  HMODULE module_;
};

template <class Type>
Type Cast(FARPROC proc) {
  return reinterpret_cast<Type>(reinterpret_cast<void (*)()>(proc));
}

BitmapHandle* BitmapOf(BridgeWord word) { return reinterpret_cast<BitmapHandle*>(word); }

}  // namespace

int32_t SetUpBridge(HINSTANCE instance) {
  const QuietErrors quiet;
  const LoadedLibrary kernel("KERNEL32.DLL");
  registerProc = kernel.Find("UTRegister");
  unregisterProc = kernel.Find("UTUnRegister");
  if (!registerProc || !unregisterProc) return 0;
  const auto enter = Cast<RegisterProc>(registerProc);
  return enter(instance, kLibrary, kInitEntry, kProcEntry, &bridgeProc, BridgeCallback, nullptr)
             ? 1
             : 0;
}

int32_t WINAPI BridgeCallback(const BridgeWord* arguments, uint32_t request) {
  const auto number = [&](int i) { return static_cast<uint32_t>(arguments[i]); };
  switch (request) {
    case kBridgeAccess:
      Vn_AccessBitmap(BitmapOf(arguments[0]));
      return 0;
    case kBridgeRelease:
      Vn_ReleaseBitmap(BitmapOf(arguments[0]));
      return 0;
    case kBridgeGetRow:
      return Vn_GetBitmapRowCol(BitmapOf(arguments[0]), reinterpret_cast<void*>(arguments[1]),
                                number(2), number(3), number(4));
    case kBridgePutRow:
      return Vn_PutBitmapRowCol(BitmapOf(arguments[0]), reinterpret_cast<const void*>(arguments[1]),
                                number(2), number(3), number(4));
    default:
      return ERR_UNSUPPORTED;
  }
}

BridgeWord CallBridge(BridgeWord* arguments, BridgeRequest request, void** translations) {
  return bridgeProc(arguments, request, translations);
}

HDC CreateBridgeContext(BitmapHandle* bitmap) {
  BridgeWord arguments[] = {reinterpret_cast<BridgeWord>(bitmap)};
  void* translations[] = {arguments, nullptr};
  return reinterpret_cast<HDC>(CallBridge(arguments, kBridgeCreateContext, translations));
}

int32_t DeleteBridgeContext(HDC context) {
  BridgeWord arguments[] = {reinterpret_cast<BridgeWord>(context)};
  void* translations[] = {nullptr};
  return static_cast<int32_t>(CallBridge(arguments, kBridgeDeleteContext, translations));
}

}  // namespace vn
