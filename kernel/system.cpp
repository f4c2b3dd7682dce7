// The system layer: global memory known by its address, and files.
#include <vncore/vn_system.h>

#include <vncore/vncore.h>

namespace {

constexpr UINT kBlockFlags = GMEM_MOVEABLE | GMEM_DDESHARE;

// How the access flags of Vn_OsOpen read, which are shaped like those of a POSIX open call.
constexpr uint32_t kAccessMask = 3;
constexpr uint32_t kCreateBit = 0x100;
constexpr uint32_t kTruncateBit = 0x200;
// And its share flags, shaped like permissions.
constexpr uint32_t kShareWriteBit = 0x80;
constexpr uint32_t kShareReadBit = 0x100;

DWORD AccessOf(uint32_t flags) {
  switch (flags & kAccessMask) {
    case 0:
      return GENERIC_READ;
    case 1:
      return GENERIC_WRITE;
    default:
      return GENERIC_READ | GENERIC_WRITE;
  }
}

DWORD DispositionOf(uint32_t flags) {
  if (flags & kCreateBit) return CREATE_ALWAYS;
  return flags & kTruncateBit ? TRUNCATE_EXISTING : OPEN_EXISTING;
}

// Write permission without read permission shares nothing. No caller passes neither; that shares
// nothing as well.
DWORD ShareModeOf(uint32_t flags) {
  if (!(flags & kShareReadBit)) return 0;
  return flags & kShareWriteBit ? FILE_SHARE_READ | FILE_SHARE_WRITE : FILE_SHARE_READ;
}

}  // namespace

void* VN_CALL Vn_OsAlloc(uint32_t size) { return Vn_OsAllocInit(size, 0); }

// A block is locked once, here, and stays so for its life.
void* VN_CALL Vn_OsAllocInit(uint32_t size, uint32_t zeroFill) {
  const HGLOBAL memory = GlobalAlloc(zeroFill ? kBlockFlags | GMEM_ZEROINIT : kBlockFlags, size);
  void* block = GlobalLock(memory);
  // Nobody could free a block without an address (one of 0 bytes).
  if (!block && memory) GlobalFree(memory);
  return block;
}

void* VN_CALL Vn_OsReAlloc(void* block, uint32_t size) {
  const HGLOBAL memory = GlobalHandle(block);
  GlobalUnlock(memory);
  if (size == 0) return nullptr;  // a block without bytes would have no address to be freed by
  return GlobalLock(GlobalReAlloc(memory, size, GMEM_MOVEABLE));
}

int32_t VN_CALL Vn_OsFree(void* block) {
  const HGLOBAL memory = GlobalHandle(block);
  GlobalUnlock(memory);
  GlobalFree(memory);
  return 0;
}

HANDLE VN_CALL Vn_OsCreat(const char* name, uint32_t attributes) {
  constexpr uint32_t kCountingBits = 7;  // read-only, hidden, system
  const DWORD access =
      attributes & FILE_ATTRIBUTE_READONLY ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
  return CreateFileA(name, access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS,
                     attributes & kCountingBits, nullptr);
}

int32_t VN_CALL Vn_OsGetTempName(char* buffer) {
  char path[MAX_PATH] = "";
  GetTempPathA(MAX_PATH, path);
  // An empty name is all that a caller sees of a failure.
  if (!GetTempFileNameA(path, "VN", 0, buffer)) *buffer = '\0';
  return 0;
}

HANDLE VN_CALL Vn_OsOpen(const char* name, uint32_t access, uint32_t share) {
  const DWORD attributes =
      (access & kAccessMask) == 0 ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL;
  return CreateFileA(name, AccessOf(access), ShareModeOf(share), nullptr, DispositionOf(access),
                     attributes, nullptr);
}

int32_t VN_CALL Vn_OsRead(HANDLE file, void* buffer, uint32_t count) {
  DWORD done = 0;
  return ReadFile(file, buffer, count, &done, nullptr) ? static_cast<int32_t>(done) : -1;
}

int32_t VN_CALL Vn_OsWrite(HANDLE file, const void* buffer, uint32_t count) {
  DWORD done = 0;
  return WriteFile(file, buffer, count, &done, nullptr) ? static_cast<int32_t>(done) : -1;
}

uint32_t VN_CALL Vn_OsSeek(HANDLE file, int32_t offset, int32_t origin) {
  const DWORD from = origin == 0 ? FILE_BEGIN : origin == 1 ? FILE_CURRENT : FILE_END;
  return SetFilePointer(file, offset, nullptr, from);
}

int32_t VN_CALL Vn_OsClose(HANDLE file) { return CloseHandle(file) ? 0 : -1; }

int32_t VN_CALL Vn_OsDelete(const char* name) { return DeleteFileA(name) ? 0 : -1; }
