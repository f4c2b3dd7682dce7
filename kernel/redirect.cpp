// File calls that a caller can divert, thread by thread.
#include <utility>

#include "kernel/thread_settings.h"

namespace {

// One slot of Vn_FilterIO: the variable's function, if any, goes in; the slot's comes out.
template <class Proc>
void Chain(Proc& slot, Proc* variable) {
  if (!variable) return;
  const Proc before = slot;
  if (*variable) slot = *variable;
  *variable = before;
}

}  // namespace

void VN_CALL Vn_RedirectIO(VnOpenProc open, VnReadProc read, VnWriteProc write, VnSeekProc seek,
                           VnCloseProc close) {
  vn::ThreadSettings& settings = vn::CurrentThreadSettings();
  settings.OpenProc = open ? open : Vn_OsOpen;
  settings.ReadProc = read ? read : Vn_OsRead;
  settings.WriteProc = write ? write : Vn_OsWrite;
  settings.SeekProc = seek ? seek : Vn_OsSeek;
  settings.CloseProc = close ? close : Vn_OsClose;
}

void VN_CALL Vn_FilterIO(VnOpenProc* open, VnReadProc* read, VnWriteProc* write, VnSeekProc* seek,
                         VnCloseProc* close) {
  vn::ThreadSettings& settings = vn::CurrentThreadSettings();
  Chain(settings.OpenProc, open);
  Chain(settings.ReadProc, read);
  Chain(settings.WriteProc, write);
  Chain(settings.SeekProc, seek);
  Chain(settings.CloseProc, close);
}

HANDLE VN_CALL Vn_RedirectedOpen(const char* name, uint32_t access, uint32_t share) {
  return vn::CurrentThreadSettings().OpenProc(name, access, share);
}
int32_t VN_CALL Vn_RedirectedRead(HANDLE file, void* buffer, uint32_t count) {
  return vn::CurrentThreadSettings().ReadProc(file, buffer, count);
}
int32_t VN_CALL Vn_RedirectedWrite(HANDLE file, const void* buffer, uint32_t count) {
  return vn::CurrentThreadSettings().WriteProc(file, buffer, count);
}
uint32_t VN_CALL Vn_RedirectedSeek(HANDLE file, int32_t offset, int32_t origin) {
  return vn::CurrentThreadSettings().SeekProc(file, offset, origin);
}
int32_t VN_CALL Vn_RedirectedClose(HANDLE file) {
  return vn::CurrentThreadSettings().CloseProc(file);
}
