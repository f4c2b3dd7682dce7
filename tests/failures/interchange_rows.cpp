// The device room's rows that exchange pictures with the windowing system. Functions that answer a
// handle or a truth tell no code, and painting on a device bitmap is not looked at.
#include <cstring>

#include "tests/failures/failure_rows.h"

namespace vn::test {
namespace {

VnStatus Truth(bool done) { return done ? OK : ERR_NO_MEMORY; }

// Takes the bytes of the DIB that `make` gives into the scene.
template <class Make>
Call Dib(Make make) {
  return [=](Scene& s) -> VnStatus {
    const HGLOBAL dib = make(s.bitmap);
    if (!dib) return ERR_NO_MEMORY;
    const auto* at = static_cast<const uint8_t*>(GlobalLock(dib));
    s.bytes.assign(at, at + GlobalSize(dib));
    GlobalUnlock(dib);
    GlobalFree(dib);
    return OK;
  };
}

VnStatus ThroughDib(Scene& s) {
  const HGLOBAL dib = Vn_ConvertToDIB(s.bitmap);
  if (!dib) return ERR_NO_MEMORY;
  const VnStatus status = Vn_ChangeFromDIB(s.result, dib);
  if (status != OK) GlobalFree(dib);
  return status;
}

// By `to` and `from`, with the palette of the system.
template <class To, class From>
Call ThroughDdb(To to, From from, bool moves) {
  return [=](Scene& s) -> VnStatus {
    const HBITMAP object = to(s.screen(), s.bitmap);
    if (!object) return ERR_NO_MEMORY;
    const VnStatus status = from(s.screen(), s.result, object, nullptr);
    if (status != OK || !moves) DeleteObject(object);
    return status;
  };
}

// Nothing stays on the clipboard, so that nothing counts as lost.
VnStatus ThroughClipboard(Scene& s, uint32_t flags) {
  bool done = Vn_CopyToClipboardExt(nullptr, s.bitmap, flags) == OK;
  done = done && Vn_ClipboardReady() && Vn_CopyFromClipboard(nullptr, s.result);
  OpenClipboard(nullptr);
  EmptyClipboard();
  CloseClipboard();
  return Truth(done);
}

constexpr unsigned kUnreported = kMemory | kFiles | kObjects;

const AddRows interchangeRows({
    {"Vn_ConvertToDIB", Dib(Vn_ConvertToDIB), {.hides = kFiles}},
    {"Vn_ConvertToDIB, widened", Dib(Vn_ConvertToDIB), {.bits = 32, .hides = kFiles}},
    {"Vn_ChangeToDIB", Dib(Vn_ChangeToDIB), {.hides = kFiles}},
    {"Vn_ChangeToDIB, widened", Dib(Vn_ChangeToDIB), {.bits = 16, .hides = kFiles}},
    {"Vn_ConvertFromDIB",
     [](Scene& s) {
       const auto* info = reinterpret_cast<const BITMAPINFO*>(s.bytes.data());
       return Vn_ConvertFromDIB(s.result, info, s.bytes.data() + 40 + 64);
     },
     {.hides = kFiles | kObjects, .prepare = [](Scene& s) { Dib(Vn_ConvertToDIB)(s); }}},
    {"Vn_ConvertToDIB Vn_ChangeFromDIB, one after the other",
     ThroughDib,
     {.hides = kFiles | kObjects}},
    {"Vn_ConvertToDDB Vn_ConvertFromDDB",
     ThroughDdb(Vn_ConvertToDDB, Vn_ConvertFromDDB, false),
     {.hides = kUnreported}},
    {"Vn_ChangeToDDB Vn_ChangeFromDDB",
     ThroughDdb(Vn_ChangeToDDB, Vn_ChangeFromDDB, true),
     {.hides = kUnreported, .spoils = kRecord | kPixels | kAttachments}},
    {"Vn_CopyToClipboardExt Vn_CopyFromClipboard Vn_ClipboardReady, DIB",
     [](Scene& s) { return ThroughClipboard(s, COPY_DIB); },
     {.hides = kFiles | kObjects}},
    {"Vn_CopyToClipboardExt Vn_CopyFromClipboard, device bitmap",
     [](Scene& s) { return ThroughClipboard(s, COPY_EMPTY | COPY_DDB | COPY_PALETTE); },
     {.hides = kUnreported}},
    {"Vn_CopyToClipboard",
     [](Scene& s) {
       const bool done = Vn_CopyToClipboard(nullptr, s.bitmap) == 1;
       return done ? ThroughClipboard(s, COPY_EMPTY | COPY_DIB) : ERR_NO_MEMORY;
     },
     {.hides = kUnreported}},
    {"Vn_CreateVornDC Vn_DeleteVornDC",
     [](Scene& s) -> VnStatus {
       // Only a mapped section has one.
       const HDC context = Vn_CreateVornDC(s.bitmap);
       if (!context) return s.kind.win32s ? OK : ERR_NO_MEMORY;
       return Truth(Vn_DeleteVornDC(context) || Vn_DeleteVornDC(context));  // 0: call again
     },
     {.hides = kUnreported}},
    {"Vn_ScreenCaptureBitmap",
     [](Scene& s) { return Truth(Vn_ScreenCaptureBitmap(s.screen(), s.result, &s.box) == OK); },
     {.hides = kFiles | kObjects}},
});

}  // namespace
}  // namespace vn::test
