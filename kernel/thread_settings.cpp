// The settings block of each thread.
#include "kernel/thread_settings.h"

#include <utility>

#include "kernel/process.h"

namespace vn {
namespace {

constexpr uint32_t kInitialDithering = 7;
constexpr int32_t kInitialResolution = 150;  // dots per inch
constexpr uint32_t kInitialDisplayMode = 12;

DWORD threadSlot = TLS_OUT_OF_INDEXES;

// `settings` is all zero before.
void WriteInitialValues(ThreadSettings& settings) {
  settings.OpenProc = Vn_OsOpen;
  settings.ReadProc = Vn_OsRead;
  settings.WriteProc = Vn_OsWrite;
  settings.SeekProc = Vn_OsSeek;
  settings.CloseProc = Vn_OsClose;
  settings.DefaultDithering = kInitialDithering;
  settings.DefaultXResolution = kInitialResolution;
  settings.DefaultYResolution = kInitialResolution;
  settings.PaintInfo.header.biSize = sizeof(BITMAPINFOHEADER);
  settings.PaintInfo.header.biPlanes = 1;
  settings.PaintInfo.header.biCompression = 0;
  WriteIdentityIndexes(settings.PaintInfo.Indexes());
  settings.DisplayMode = kInitialDisplayMode;
}

// What a thread works with when its block cannot be allocated. Once a thread has begun to set
// things here it stays here, until an attachment gives it a block.
ThreadSettings& FallbackSettings() {
  static thread_local ThreadSettings settings{};
  static thread_local bool ready = false;
  if (!ready) WriteInitialValues(settings);
  ready = true;
  return settings;
}

thread_local bool usesFallback = false;

ThreadSettings* OwnBlock() { return static_cast<ThreadSettings*>(TlsGetValue(threadSlot)); }

}  // namespace

bool TakeThreadSlot() {
  const DWORD earlier = std::exchange(threadSlot, TlsAlloc());
  if (threadSlot != TLS_OUT_OF_INDEXES) {
    if (CreateThreadSettings()) return true;
    TlsFree(threadSlot);
  }
  threadSlot = earlier;
  return false;
}

void ReleaseThreadSlot() {
  TlsFree(threadSlot);
  threadSlot = TLS_OUT_OF_INDEXES;
}

bool CreateThreadSettings() {
  void* block = Vn_OsAllocInit(sizeof(ThreadSettings), 1);
  if (!block) return false;
  if (!TlsSetValue(threadSlot, block)) {
    Vn_OsFree(block);
    return false;
  }
  WriteInitialValues(*static_cast<ThreadSettings*>(block));
  return true;
}

void FreeThreadSettings() {
  ThreadSettings* block = OwnBlock();
  if (!block) return;
  TlsSetValue(threadSlot, nullptr);
  Vn_OsFree(block);
}

ThreadSettings& CurrentThreadSettings() {
  if (ThreadSettings* block = OwnBlock()) return *block;
  if (!usesFallback && CreateThreadSettings()) return *OwnBlock();
  usesFallback = true;
  return FallbackSettings();
}

void WriteIdentityIndexes(uint16_t* indexes) {
  for (uint16_t i = 0; i < 256; ++i)
    indexes[i] = i;
}

}  // namespace vn
