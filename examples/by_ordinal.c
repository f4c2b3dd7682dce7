/* Loads VNCORE32.DLL and calls it by number, as programs do that were linked so. */
#include <stdio.h>
#include <string.h>

#include <vncore/vncore.h>

/* The numbers of the functions that this program calls. They never change. */
enum {
  ORDINAL_ALLOCATE_BITMAP = 101,
  ORDINAL_FREE_BITMAP = 132,
  ORDINAL_GET_BITMAP_ROW = 135,
  ORDINAL_INIT_BITMAP = 145,
  ORDINAL_LOCK_BITMAP = 147,
  ORDINAL_PUT_BITMAP_ROW = 154,
  ORDINAL_UNLOCK_BITMAP = 176,
  ORDINAL_VERSION_INFO = 179
};

static HMODULE library;

static void* ByOrdinal(int ordinal, const char* name) {
  void* function = (void*)GetProcAddress(library, MAKEINTRESOURCEA(ordinal));
  if (!function || function != (void*)GetProcAddress(library, name)) {
    fprintf(stderr, "number %d is not %s\n", ordinal, name);
    return NULL;
  }
  return function;
}

/* Declares a pointer to an exported function and finds it. */
#define FIND(name, ordinal) __typeof__(&name) name##_ = (__typeof__(&name))ByOrdinal(ordinal, #name)

int main(void) {
  library = LoadLibraryA("VNCORE32.DLL");
  if (!library) {
    fprintf(stderr, "VNCORE32.DLL does not load: %lu\n", GetLastError());
    return 1;
  }
  FIND(Vn_VersionInfo, ORDINAL_VERSION_INFO);
  FIND(Vn_InitBitmap, ORDINAL_INIT_BITMAP);
  FIND(Vn_AllocateBitmap, ORDINAL_ALLOCATE_BITMAP);
  FIND(Vn_LockBitmap, ORDINAL_LOCK_BITMAP);
  FIND(Vn_PutBitmapRow, ORDINAL_PUT_BITMAP_ROW);
  FIND(Vn_GetBitmapRow, ORDINAL_GET_BITMAP_ROW);
  FIND(Vn_UnlockBitmap, ORDINAL_UNLOCK_BITMAP);
  FIND(Vn_FreeBitmap, ORDINAL_FREE_BITMAP);
  if (!Vn_VersionInfo_ || !Vn_InitBitmap_ || !Vn_AllocateBitmap_ || !Vn_LockBitmap_ ||
      !Vn_PutBitmapRow_ || !Vn_GetBitmapRow_ || !Vn_UnlockBitmap_ || !Vn_FreeBitmap_) {
    return 1;
  }

  VersionRecord version;
  Vn_VersionInfo_(&version);
  printf("VNCORE32 %ld.%ld\n", (long)version.MajorVersion, (long)version.MinorVersion);

  BitmapHandle bitmap;
  char row[12] = "by ordinal", back[12] = "";
  int good = Vn_InitBitmap_(&bitmap, sizeof row, 3, 8) == OK &&
             Vn_AllocateBitmap_(&bitmap, STORAGE_AUTO) == OK;
  if (good) {
    const int32_t state = Vn_LockBitmap_(&bitmap);
    good = Vn_PutBitmapRow_(&bitmap, row, 2, sizeof row) == (int32_t)sizeof row &&
           Vn_GetBitmapRow_(&bitmap, back, 2, sizeof back) == (int32_t)sizeof back &&
           memcmp(row, back, sizeof row) == 0;
    Vn_UnlockBitmap_(&bitmap, state);
    Vn_FreeBitmap_(&bitmap);
  }
  printf("%s\n", good ? back : "rows do not come back");
  FreeLibrary(library);
  return good ? 0 : 1;
}
