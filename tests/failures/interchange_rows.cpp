// The device room's rows that exchange pictures with the windowing system. Functions that answer a
// handle or a truth tell no code, and painting on a device bitmap is not looked at.
#include <cstring>

#include "tests/failures/failure_rows.h"

namespace vn::test {
namespace {

VnStatus Truth(bool done) { return done ? OK : ERR_NO_MEMORY; }

// Takes the bytes of a DIB into the scene.
VnStatus KeepDib(Scene& s, HGLOBAL dib) {
  if (!dib) return ERR_NO_MEMORY;
  const auto* at = static_cast<const uint8_t*>(GlobalLock(dib));
  s.bytes.assign(at, at + GlobalSize(dib));
  GlobalUnlock(dib);
  GlobalFree(dib);
  return OK;
}

VnStatus ThroughDib(Scene& s) {
  const HGLOBAL dib = Vn_ConvertToDIB(s.bitmap);
  if (!dib) return ERR_NO_MEMORY;
  const VnStatus status = Vn_ChangeFromDIB(s.result, dib);
  if (status != OK) GlobalFree(dib);
  return status;
}

VnStatus ThroughDdb(Scene& s) {
  const HBITMAP object = Vn_ConvertToDDB(nullptr, s.bitmap);
  if (!object) return ERR_NO_MEMORY;
  const VnStatus status = Vn_ConvertFromDDB(s.screen(), s.result, object, nullptr);
  DeleteObject(object);
  return status;
}

VnStatus MovedThroughDdb(Scene& s) {
  const HBITMAP object = Vn_ChangeToDDB(s.screen(), s.bitmap);
  if (!object) return ERR_NO_MEMORY;
  const VnStatus status = Vn_ChangeFromDDB(s.screen(), s.result, object, nullptr);
  if (status != OK) DeleteObject(object);
  return status;
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

const AddRows rows({
    {"Vn_ConvertToDIB",
     [](Scene& s) { return KeepDib(s, Vn_ConvertToDIB(s.bitmap)); },
     {.hides = kFiles}},
    {"Vn_ConvertToDIB, widened",
     [](Scene& s) { return KeepDib(s, Vn_ConvertToDIB(s.bitmap)); },
     {.bits = 32, .hides = kFiles}},
    {"Vn_ChangeToDIB",
     [](Scene& s) { return KeepDib(s, Vn_ChangeToDIB(s.bitmap)); },
     {.hides = kFiles}},
    {"Vn_ChangeToDIB, widened",
     [](Scene& s) { return KeepDib(s, Vn_ChangeToDIB(s.bitmap)); },
     {.bits = 16, .hides = kFiles}},
    {"Vn_ConvertFromDIB",
     [](Scene& s) {
       const auto* info = reinterpret_cast<const BITMAPINFO*>(s.bytes.data());
       return Vn_ConvertFromDIB(s.result, info, s.bytes.data() + 40 + 64);
     },
     {.hides = kFiles | kObjects,
      .prepare = [](Scene& s) { KeepDib(s, Vn_ConvertToDIB(s.bitmap)); }}},
    {"Vn_ConvertToDIB Vn_ChangeFromDIB, one after the other",
     ThroughDib,
     {.hides = kFiles | kObjects}},
    {"Vn_ConvertToDDB Vn_ConvertFromDDB", ThroughDdb, {.hides = kUnreported}},
    {"Vn_ChangeToDDB Vn_ChangeFromDDB",
     MovedThroughDdb,
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
