// The kernel's rows: frame, system layer, storage and rows, copies, single pixels.
#include "kernel/process.h"
#include "tests/failures/failure_rows.h"

namespace vn::test {
namespace {

// The calls of one kind of file traffic.
struct FileCalls {
  VnOpenProc open;
  VnReadProc read;
  VnWriteProc write;
  VnSeekProc seek;
  VnCloseProc close;
};
constexpr FileCalls kDirect = {Vn_OsOpen, Vn_OsRead, Vn_OsWrite, Vn_OsSeek, Vn_OsClose};
constexpr FileCalls kRedirected = {Vn_RedirectedOpen, Vn_RedirectedRead, Vn_RedirectedWrite,
                                   Vn_RedirectedSeek, Vn_RedirectedClose};

// Writes the scene's bytes to a file and reads them back.
VnStatus PassThrough(const FileCalls& calls, Scene& s, const char* name) {
  constexpr uint32_t kReadWrite = 2, kShareAll = 0x180;
  const auto count = static_cast<uint32_t>(s.bytes.size());
  s.file = calls.open(name, kReadWrite, kShareAll);
  if (s.file == INVALID_HANDLE_VALUE) return ERR_FILE_READ;
  VnStatus status = OK;
  if (calls.write(s.file, s.bytes.data(), count) < 0) status = ERR_FILE_WRITE;
  if (status == OK && calls.seek(s.file, 0, 0) != 0) status = ERR_FILE_SEEK;
  if (status == OK && calls.read(s.file, s.bytes.data(), count) < 0) status = ERR_FILE_READ;
  calls.close(std::exchange(s.file, INVALID_HANDLE_VALUE));
  return status;
}

VnStatus ThroughNewFile(const FileCalls& calls, Scene& s) {
  char name[MAX_PATH];
  Vn_OsGetTempName(name);
  if (!*name) return ERR_FILE_WRITE;
  const HANDLE made = Vn_OsCreat(name, 0);
  VnStatus status = ERR_FILE_WRITE;
  if (made != INVALID_HANDLE_VALUE) {
    Vn_OsClose(made);
    status = PassThrough(calls, s, name);
  }
  Vn_OsDelete(name);
  return status;
}

void GiveBytes(Scene& s) { s.bytes.assign(s.bitmap->BytesPerLine, 0x5A); }

// A row call inside the lock that it asks for.
template <class Call>
VnStatus RowCall(Scene& s, Call call) {
  const int32_t state = Vn_LockBitmap(s.bitmap);
  const int32_t count = call(s.bytes.data());
  Vn_UnlockBitmap(s.bitmap, state);
  return Moved(count, static_cast<uint32_t>(s.bytes.size()));
}

VnStatus KeepColor(Scene& s, COLORREF color) {
  s.bytes.assign(1, static_cast<uint8_t>(color));
  return OK;
}

const AddRows rows({
    {"DllMain, thread",
     [](Scene&) -> VnStatus {
       OnLoaderCall(nullptr, DLL_THREAD_DETACH);
       if (OnLoaderCall(nullptr, DLL_THREAD_ATTACH)) return OK;
       OnLoaderCall(nullptr, DLL_THREAD_ATTACH);  // the test's thread goes on
       return ERR_NO_MEMORY;
     }},
    {"Vn_InitBitmap", [](Scene& s) { return Vn_InitBitmap(s.result, 3, 4, 8); }},
    {"Vn_VersionInfo",
     [](Scene&) {
       VersionRecord version;
       return Vn_VersionInfo(&version);
     }},
    {"Vn_SetStatusCallBack Vn_GetStatusCallBack",
     [](Scene&) -> VnStatus {
       Vn_SetStatusCallBack(Vn_GetStatusCallBack());
       return OK;
     }},
    {"Vn_DefaultDithering Vn_SetDefaultXResolution Vn_GetDefaultXResolution "
     "Vn_SetDefaultYResolution Vn_GetDefaultYResolution",
     [](Scene&) {
       Vn_SetDefaultXResolution(Vn_GetDefaultXResolution());
       Vn_SetDefaultYResolution(Vn_GetDefaultYResolution());
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
     [](Scene& s) -> VnStatus {
       Vn_OsFree(std::exchange(s.block, nullptr));
       return OK;
     },
     {.prepare = [](Scene& s) { s.block = Vn_OsAlloc(100); }}},
    {"Vn_OsGetTempName Vn_OsCreat Vn_OsOpen Vn_OsWrite Vn_OsSeek Vn_OsRead Vn_OsClose Vn_OsDelete",
     [](Scene& s) { return ThroughNewFile(kDirect, s); },
     {.prepare = GiveBytes}},
    {"Vn_RedirectedOpen Vn_RedirectedWrite Vn_RedirectedSeek Vn_RedirectedRead Vn_RedirectedClose",
     [](Scene& s) { return ThroughNewFile(kRedirected, s); },
     {.prepare = GiveBytes}},
    {"Vn_RedirectIO Vn_FilterIO",
     [](Scene&) -> VnStatus {
       Vn_RedirectIO(nullptr, nullptr, nullptr, nullptr, nullptr);
       Vn_FilterIO(nullptr, nullptr, nullptr, nullptr, nullptr);
       return OK;
     }},

    {"Vn_AllocateBitmap",
     [](Scene& s) { return Vn_AllocateBitmap(s.result, s.kind.request); },
     {.open = kResult, .prepare = [](Scene& s) { Vn_InitBitmap(s.result, 100, 100, 24); }}},
    {"Vn_FreeBitmap",
     [](Scene& s) -> VnStatus {
       Vn_FreeBitmap(s.bitmap);
       return OK;
     }},
    {"Vn_FreeImage", [](Scene& s) { return Vn_FreeImage(s.bitmap, 1); }},
    {"Vn_AccessBitmap Vn_ReleaseBitmap Vn_LockBitmap Vn_UnlockBitmap",
     [](Scene& s) -> VnStatus {
       Vn_AccessBitmap(s.bitmap);
       Vn_UnlockBitmap(s.bitmap, Vn_LockBitmap(s.bitmap));
       Vn_ReleaseBitmap(s.bitmap);
       return OK;
     }},
    {"Vn_ChangeBitmapHeight, up",
     [](Scene& s) { return Vn_ChangeBitmapHeight(s.bitmap, 3000); },
     {.open = kPixels}},
    {"Vn_ChangeBitmapHeight, down", [](Scene& s) { return Vn_ChangeBitmapHeight(s.bitmap, 5); }},
    {"Vn_GetBitmapRow",
     [](Scene& s) {
       return RowCall(s, [&](void* to) { return Vn_GetBitmapRow(s.bitmap, to, 5, 20); });
     },
     {.prepare = GiveBytes}},
    {"Vn_PutBitmapRow",
     [](Scene& s) {
       return RowCall(s, [&](void* from) { return Vn_PutBitmapRow(s.bitmap, from, 5, 20); });
     },
     {.prepare = GiveBytes}},
    {"Vn_GetBitmapRowCol",
     [](Scene& s) {
       return RowCall(s, [&](void* to) { return Vn_GetBitmapRowCol(s.bitmap, to, 5, 8, 20); });
     },
     {.prepare = GiveBytes}},
    {"Vn_PutBitmapRowCol",
     [](Scene& s) {
       return RowCall(s, [&](void* from) { return Vn_PutBitmapRowCol(s.bitmap, from, 5, 8, 20); });
     },
     {.prepare = GiveBytes}},

    {"Vn_CopyBitmapHandle",
     [](Scene& s) -> VnStatus {
       Vn_CopyBitmapHandle(s.result, s.bitmap);
       *s.result.get() = {};
       return OK;
     }},
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
     [](Scene& s) { return KeepColor(s, Vn_GetPixelColor(s.bitmap, 5, 15)); },
     {.hides = kFiles}},
    {"Vn_PutPixelColor",
     [](Scene& s) { return Vn_PutPixelColor(s.bitmap, 5, 15, 0x1020F0); },
     {.hides = kFiles}},
});

}  // namespace
}  // namespace vn::test
