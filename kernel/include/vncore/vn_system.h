/* System layer: memory blocks found again from their address, files, and their redirection. */
#include "vn_status.h"

#ifndef VNCORE_VN_SYSTEM_H
#define VNCORE_VN_SYSTEM_H

VN_BEGIN_C

/* Memory. Blocks belong to the caller, who gives them back through Vn_OsFree. */

/* A block of `size` bytes, not cleared, or null. */
VN_API void* VN_CALL Vn_OsAlloc(uint32_t size);
/* As Vn_OsAlloc, zero-filled when `zeroFill` is not 0. */
VN_API void* VN_CALL Vn_OsAllocInit(uint32_t size, uint32_t zeroFill);
/* Resizes `block`, which must come from one of the two above. Returns its new address, or null
 * (also for a size of 0): the old block then still exists, but is no longer locked. */
VN_API void* VN_CALL Vn_OsReAlloc(void* block, uint32_t size);
/* Frees `block`, which must not be null. Returns 0. */
VN_API int32_t VN_CALL Vn_OsFree(void* block);

/* Files. A file is a platform handle; INVALID_HANDLE_VALUE (-1) means none. */

/* Creates or truncates the file `name`, shared for reading and writing. The low three bits of
 * `attributes` (read-only 1, hidden 2, system 4) become the file's; with read-only the handle can
 * only read. Returns the handle, or INVALID_HANDLE_VALUE. */
VN_API Vn_HANDLE VN_CALL Vn_OsCreat(const char* name, uint32_t attributes);
/* Writes the name of a new, empty temporary file (prefix "VN") into `buffer`, which holds at least
 * 260 characters. Returns 0 always; a failure leaves the name empty. */
VN_API int32_t VN_CALL Vn_OsGetTempName(char* buffer);
/* Opens the file `name`. `access`: low two bits 0 read, 1 write, 2 or 3 both; bit 0x100 creates or
 * truncates, else bit 0x200 truncates an existing file. `share`: bits 0x80 and 0x100 together share
 * for reading and writing, 0x80 alone does not share, 0x100 alone shares for reading.
 * Returns the handle, or INVALID_HANDLE_VALUE. */
VN_API Vn_HANDLE VN_CALL Vn_OsOpen(const char* name, uint32_t access, uint32_t share);
/* Returns the bytes read, 0 at the end of the file, or -1. */
VN_API int32_t VN_CALL Vn_OsRead(Vn_HANDLE file, void* buffer, uint32_t count);
/* Returns the bytes written, or -1. */
VN_API int32_t VN_CALL Vn_OsWrite(Vn_HANDLE file, const void* buffer, uint32_t count);
/* Moves to `offset` from the start (`origin` 0), the present position (1) or the end (any other).
 * Returns the new position, or 0xFFFFFFFF. */
VN_API uint32_t VN_CALL Vn_OsSeek(Vn_HANDLE file, int32_t offset, int32_t origin);
/* Returns 0, or -1. */
VN_API int32_t VN_CALL Vn_OsClose(Vn_HANDLE file);
/* Returns 0, or -1. */
VN_API int32_t VN_CALL Vn_OsDelete(const char* name);

/* Redirection, per thread. The library itself never reads or writes through the redirected calls;
 * they divert the file traffic of other libraries of the toolkit and of applications. */

typedef Vn_HANDLE(VN_CALL* Vn_OpenProc)(const char* name, uint32_t access, uint32_t share);
typedef int32_t(VN_CALL* Vn_ReadProc)(Vn_HANDLE file, void* buffer, uint32_t count);
typedef int32_t(VN_CALL* Vn_WriteProc)(Vn_HANDLE file, const void* buffer, uint32_t count);
typedef uint32_t(VN_CALL* Vn_SeekProc)(Vn_HANDLE file, int32_t offset, int32_t origin);
typedef int32_t(VN_CALL* Vn_CloseProc)(Vn_HANDLE file);

/* Sets the calling thread's five file functions; null restores the direct one (Vn_OsOpen ...). */
VN_API void VN_CALL Vn_RedirectIO(Vn_OpenProc open, Vn_ReadProc read, Vn_WriteProc write,
                                  Vn_SeekProc seek, Vn_CloseProc close);
/* Chains a filter into the calling thread's file functions. Each argument is null (slot left alone)
 * or points to a variable: a function in it goes into the slot, null in it leaves the slot; the
 * variable receives the function that was in the slot. */
VN_API void VN_CALL Vn_FilterIO(Vn_OpenProc* open, Vn_ReadProc* read, Vn_WriteProc* write,
                                Vn_SeekProc* seek, Vn_CloseProc* close);

/* Call the calling thread's slot; arguments and results as of the Vn_Os function. */
VN_API Vn_HANDLE VN_CALL Vn_RedirectedOpen(const char* name, uint32_t access, uint32_t share);
VN_API int32_t VN_CALL Vn_RedirectedRead(Vn_HANDLE file, void* buffer, uint32_t count);
VN_API int32_t VN_CALL Vn_RedirectedWrite(Vn_HANDLE file, const void* buffer, uint32_t count);
VN_API uint32_t VN_CALL Vn_RedirectedSeek(Vn_HANDLE file, int32_t offset, int32_t origin);
VN_API int32_t VN_CALL Vn_RedirectedClose(Vn_HANDLE file);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_SYSTEM_NAMES)
#define VNCORE_VN_SYSTEM_NAMES
typedef Vn_OpenProc VnOpenProc;
typedef Vn_ReadProc VnReadProc;
typedef Vn_WriteProc VnWriteProc;
typedef Vn_SeekProc VnSeekProc;
typedef Vn_CloseProc VnCloseProc;
#endif
