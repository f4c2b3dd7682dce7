/* KERNEL32 of the subset: memory, mappings, files, thread-local storage, version, modules, profile. */
#ifndef VNCORE_PLATFORM_WIN32_KERNEL32_H
#define VNCORE_PLATFORM_WIN32_KERNEL32_H

#include "win32_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Global memory. */
#define GMEM_FIXED 0x0000
#define GMEM_MOVEABLE 0x0002
#define GMEM_ZEROINIT 0x0040
#define GMEM_DDESHARE 0x2000
VNW_DECLARE(HGLOBAL, GlobalAlloc, (UINT flags, SIZE_T bytes));
VNW_DECLARE(HGLOBAL, GlobalReAlloc, (HGLOBAL memory, SIZE_T bytes, UINT flags));
VNW_DECLARE(HGLOBAL, GlobalFree, (HGLOBAL memory));
VNW_DECLARE(LPVOID, GlobalLock, (HGLOBAL memory));
VNW_DECLARE(BOOL, GlobalUnlock, (HGLOBAL memory));
VNW_DECLARE(HGLOBAL, GlobalHandle, (LPCVOID address));
VNW_DECLARE(SIZE_T, GlobalSize, (HGLOBAL memory));

/* File mappings. */
#define PAGE_READWRITE 0x04
#define SEC_COMMIT 0x08000000
#define SEC_NOCACHE 0x10000000
#define FILE_MAP_WRITE 0x0002
typedef struct _SECURITY_ATTRIBUTES* LPSECURITY_ATTRIBUTES;
VNW_DECLARE(HANDLE, CreateFileMappingA,
            (HANDLE file, LPSECURITY_ATTRIBUTES security, DWORD protection, DWORD sizeHigh,
             DWORD sizeLow, LPCSTR name));
VNW_DECLARE(LPVOID, MapViewOfFile,
            (HANDLE mapping, DWORD access, DWORD offsetHigh, DWORD offsetLow, SIZE_T bytes));
VNW_DECLARE(BOOL, UnmapViewOfFile, (LPCVOID address));

/* Files. */
#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define FILE_SHARE_READ 1
#define FILE_SHARE_WRITE 2
#define CREATE_NEW 1
#define CREATE_ALWAYS 2
#define OPEN_EXISTING 3
#define OPEN_ALWAYS 4
#define TRUNCATE_EXISTING 5
#define FILE_ATTRIBUTE_READONLY 0x01
#define FILE_ATTRIBUTE_NORMAL 0x80
#define FILE_BEGIN 0
#define FILE_CURRENT 1
#define FILE_END 2
#define INVALID_SET_FILE_POINTER 0xFFFFFFFFu
typedef struct _OVERLAPPED* LPOVERLAPPED;
VNW_DECLARE(HANDLE, CreateFileA,
            (LPCSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
             DWORD disposition, DWORD attributes, HANDLE templateFile));
VNW_DECLARE(BOOL, ReadFile,
            (HANDLE file, LPVOID buffer, DWORD bytes, LPDWORD done, LPOVERLAPPED overlapped));
VNW_DECLARE(BOOL, WriteFile,
            (HANDLE file, LPCVOID buffer, DWORD bytes, LPDWORD done, LPOVERLAPPED overlapped));
VNW_DECLARE(DWORD, SetFilePointer, (HANDLE file, LONG offset, PLONG offsetHigh, DWORD origin));
VNW_DECLARE(BOOL, SetEndOfFile, (HANDLE file));
VNW_DECLARE(BOOL, CloseHandle, (HANDLE object));
VNW_DECLARE(BOOL, DeleteFileA, (LPCSTR name));
VNW_DECLARE(DWORD, GetTempPathA, (DWORD size, LPSTR buffer));
VNW_DECLARE(UINT, GetTempFileNameA, (LPCSTR path, LPCSTR prefix, UINT unique, LPSTR buffer));

/* Process, threads, modules. */
#define DLL_PROCESS_DETACH 0
#define DLL_PROCESS_ATTACH 1
#define DLL_THREAD_ATTACH 2
#define DLL_THREAD_DETACH 3
#define TLS_OUT_OF_INDEXES 0xFFFFFFFFu
VNW_DECLARE(DWORD, TlsAlloc, (void));
VNW_DECLARE(BOOL, TlsFree, (DWORD slot));
VNW_DECLARE(LPVOID, TlsGetValue, (DWORD slot));
VNW_DECLARE(BOOL, TlsSetValue, (DWORD slot, LPVOID value));
VNW_DECLARE(DWORD, GetVersion, (void));

typedef Vn_FARPROC FARPROC;
#define SEM_FAILCRITICALERRORS 0x0001
#define SEM_NOOPENFILEERRORBOX 0x8000
VNW_DECLARE(HMODULE, LoadLibraryA, (LPCSTR name));
VNW_DECLARE(BOOL, FreeLibrary, (HMODULE module));
VNW_DECLARE(HMODULE, GetModuleHandleA, (LPCSTR name));
VNW_DECLARE(FARPROC, GetProcAddress, (HMODULE module, LPCSTR name));
VNW_DECLARE(UINT, SetErrorMode, (UINT mode));

/* Profile and arithmetic. */
VNW_DECLARE(DWORD, GetProfileStringA,
            (LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR buffer, DWORD size));
VNW_DECLARE(int, MulDiv, (int number, int numerator, int denominator));

#ifdef __cplusplus
}
#endif

#endif
