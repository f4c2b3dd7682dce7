// The kernel's rows: frame, system layer, storage and rows, copies, single pixels.
#include "kernel/process.h"
#include "tests/failures/failure_rows.h"

namespace vn::test {
namespace {

// Writes the scene's bytes to a file and reads them back, by the redirected calls, which go on to the
// direct ones.
VnStatus PassThrough(Scene& s, const char* name) {
  constexpr uint32_t kReadWrite = 2, kShareAll = 0x180;
  const auto count = static_cast<uint32_t>(s.bytes.size());
  s.file = Vn_RedirectedOpen(name, kReadWrite, kShareAll);
  if (s.file == INVALID_HANDLE_VALUE) return ERR_FILE_READ;
  VnStatus status = OK;
  if (Vn_RedirectedWrite(s.file, s.bytes.data(), count) < 0) status = ERR_FILE_WRITE;
  if (status == OK && Vn_RedirectedSeek(s.file, 0, 0) != 0) status = ERR_FILE_SEEK;
  if (status == OK && Vn_RedirectedRead(s.file, s.bytes.data(), count) < 0) status = ERR_FILE_READ;
  Vn_RedirectedClose(std::exchange(s.file, INVALID_HANDLE_VALUE));
  return status;
}

VnStatus ThroughNewFile(Scene& s) {
  char name[MAX_PATH];
  Vn_OsGetTempName(name);
  if (!*name) return ERR_FILE_WRITE;
  const HANDLE made = Vn_OsCreat(name, 0);
  VnStatus status = ERR_FILE_WRITE;
  if (made != INVALID_HANDLE_VALUE) {
    Vn_OsClose(made);
    status = PassThrough(s, name);
  }
  Vn_OsDelete(name);
  return status;
}

void GiveBytes(Scene& s) { s.bytes.assign(s.bitmap->BytesPerLine, 0x5A); }

// A row call on the scene's bytes, inside the lock that it asks for.
template <class RowCall>
Call OnRow(RowCall call) {
  return [call](Scene& s) {
    const int32_t state = Vn_LockBitmap(s.bitmap);
    const int32_t count = call(s.bitmap, s.bytes.data());
    Vn_UnlockBitmap(s.bitmap, state);
    return Moved(count, s.bytes.size());
  };
}

const AddRows kernelRows({
    {"DllMain, thread",
     [](Scene&) -> VnStatus {
       OnLoaderCall(nullptr, DLL_THREAD_DETACH);
       if (OnLoaderCall(nullptr, DLL_THREAD_ATTACH)) return OK;
       OnLoaderCall(nullptr, DLL_THREAD_ATTACH);  // the test's thread goes on
       return ERR_NO_MEMORY;
     }},
    {"Vn_InitBitmap", [](Scene& s) { return Vn_InitBitmap(s.result, 3, 4, 8); }},
    {"Vn_VersionInfo Vn_SetStatusCallBack Vn_GetStatusCallBack Vn_DefaultDithering "
     "Vn_SetDefaultXResolution Vn_GetDefaultXResolution Vn_SetDefaultYResolution "
     "Vn_GetDefaultYResolution Vn_RedirectIO Vn_FilterIO Vn_SetDisplayMode Vn_GetDisplayMode",
     [](Scene&) {
       VersionRecord version;
       EXPECT_EQ(Vn_VersionInfo(&version), OK);
       Vn_SetStatusCallBack(Vn_GetStatusCallBack());
       Vn_SetDefaultXResolution(Vn_GetDefaultXResolution());
       Vn_SetDefaultYResolution(Vn_GetDefaultYResolution());
       Vn_RedirectIO(nullptr, nullptr, nullptr, nullptr, nullptr);
       Vn_FilterIO(nullptr, nullptr, nullptr, nullptr, nullptr);
       Vn_SetDisplayMode(~0u, Vn_GetDisplayMode());
       return Vn_DefaultDithering(DITHER_ORDERED);
     }},

    {"Vn_OsAlloc", [](Scene& s) { return s.Keep(Vn_OsAlloc(1000)); }},
    {"Vn_OsAllocInit", [](Scene& s) { return s.Keep(Vn_OsAllocInit(1000, 1)); }},
    {"Vn_OsReAlloc",
     [](Scene& s) -> VnStatus {
       void* larger = Vn_OsReAlloc(s.block, 90000);
       return larger ? s.Keep(larger) : ERR_NO_MEMORY;
     },
     {.prepare = [](Scene& s) { s.block = Vn_OsAlloc(100); }}},
    {"Vn_OsFree",
     Done([](Scene& s) { Vn_OsFree(std::exchange(s.block, nullptr)); }),
     {.prepare = [](Scene& s) { s.block = Vn_OsAlloc(100); }}},
    {"Vn_OsGetTempName Vn_OsCreat Vn_OsOpen Vn_OsWrite Vn_OsSeek Vn_OsRead Vn_OsClose Vn_OsDelete "
     "Vn_RedirectedOpen Vn_RedirectedWrite Vn_RedirectedSeek Vn_RedirectedRead Vn_RedirectedClose",
     ThroughNewFile,
     {.prepare = GiveBytes}},

    {"Vn_AllocateBitmap",
     [](Scene& s) { return Vn_AllocateBitmap(s.result, s.kind.request); },
     {.open = kResult, .prepare = [](Scene& s) { Vn_InitBitmap(s.result, 100, 100, 24); }}},
    {"Vn_FreeBitmap", Done([](Scene& s) { Vn_FreeBitmap(s.bitmap); })},
    {"Vn_FreeImage", [](Scene& s) { return Vn_FreeImage(s.bitmap, 1); }},
    {"Vn_AccessBitmap Vn_ReleaseBitmap Vn_LockBitmap Vn_UnlockBitmap", Done([](Scene& s) {
       Vn_AccessBitmap(s.bitmap);
       Vn_UnlockBitmap(s.bitmap, Vn_LockBitmap(s.bitmap));
       Vn_ReleaseBitmap(s.bitmap);
     })},
    {"Vn_ChangeBitmapHeight, up",
     [](Scene& s) { return Vn_ChangeBitmapHeight(s.bitmap, 3000); },
     {.open = kPixels}},
    {"Vn_ChangeBitmapHeight, down", [](Scene& s) { return Vn_ChangeBitmapHeight(s.bitmap, 5); }},
    {"Vn_GetBitmapRow",
     OnRow([](BitmapHandle* b, void* to) { return Vn_GetBitmapRow(b, to, 5, 20); }),
     {.prepare = GiveBytes}},
    {"Vn_PutBitmapRow",
     OnRow([](BitmapHandle* b, void* from) { return Vn_PutBitmapRow(b, from, 5, 20); }),
     {.prepare = GiveBytes}},
    {"Vn_GetBitmapRowCol",
     OnRow([](BitmapHandle* b, void* to) { return Vn_GetBitmapRowCol(b, to, 5, 8, 20); }),
     {.prepare = GiveBytes}},
    {"Vn_PutBitmapRowCol",
     OnRow([](BitmapHandle* b, void* from) { return Vn_PutBitmapRowCol(b, from, 5, 8, 20); }),
     {.prepare = GiveBytes}},

    {"Vn_CopyBitmapHandle", Done([](Scene& s) {
       Vn_CopyBitmapHandle(s.result, s.bitmap);
       *s.result.get() = {};
     })},
    {"Vn_DupBitmapNewDim, all its own",
     [](Scene& s) {
       return Vn_DupBitmapNewDim(s.result, s.bitmap, 5, 5, 8,
                                 DUP_ALLOCATE | DUP_PALETTE | DUP_REGION);
     },
     {.hides = kMemory | kObjects, .open = kResult}},
    // Without its own palettes a failing record must not take the shared ones along.
    {"Vn_DupBitmapNewDim, shared palettes",
     [](Scene& s) {
       const VnStatus status = Vn_DupBitmapNewDim(s.result, s.bitmap, 5, 5, 8, DUP_REGION);
       if (status == OK) s.result->Palette = s.result->PaintPalette = nullptr;
       return status;
     },
     {.hides = kObjects}},
    {"Vn_CopyBitmapData",
     [](Scene& s) { return Vn_CopyBitmapData(s.result, s.bitmap); },
     {.hides = kFiles, .prepare = [](Scene& s) { Vn_CopyBitmap(s.result, s.bitmap); }}},
    {"Vn_CopyBitmap",
     [](Scene& s) { return Vn_CopyBitmap(s.result, s.bitmap); },
     {.hides = kMemory | kFiles | kObjects}},
    {"Vn_CopyBitmapRect",
     [](Scene& s) { return Vn_CopyBitmapRect(s.result, s.bitmap, 3, 2, 20, 7); },
     {.hides = kMemory | kFiles | kObjects}},
    {"Vn_GetPixelColor",
     Done([](Scene& s) { s.bytes = {GetRValue(Vn_GetPixelColor(s.bitmap, 5, 15))}; }),
     {.hides = kFiles}},
    {"Vn_PutPixelColor",
     [](Scene& s) { return Vn_PutPixelColor(s.bitmap, 5, 15, 0x1020F0); },
     {.hides = kFiles}},
});

}  // namespace
}  // namespace vn::test
