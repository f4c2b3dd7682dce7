/* The headless platform's own controls: what a test or a tool sets and watches, since there is no
 * display, printer or Windows version to be found.
 *
 * Rooms of the library never include this header; tests, tools and examples may. C99 and C++.
 * The settings are process-wide. Nothing here is safe against calls from several threads at once
 * unless it says so.
 */
#ifndef VNCORE_PLATFORM_HEADLESS_HEADLESS_H
#define VNCORE_PLATFORM_HEADLESS_HEADLESS_H

#include "../win32.h" /* so that it is also found where it is installed */

#ifdef __cplusplus
extern "C" {
#endif

#ifdef _WIN32
#define HEADLESS_API /* declared so that tests compile; there is nothing to link with */
#else
#define HEADLESS_API __attribute__((visibility("default")))
#endif

/* The screen. */
typedef struct Headless_Display {
  int32_t width, height;  /* pixels, 1 to 2^20 */
  int32_t bitsPerPixel;   /* BITSPIXEL: 1, 4, 8, 16, 24 or 32 (with one plane) */
  int32_t paletteDevice;  /* nonzero: RC_PALETTE with 256 settable entries; needs 8 bits */
  int32_t reservedColors; /* NUMRESERVED of a palette device, 20 on the usual display */
  int32_t technology;     /* DT_RASDISPLAY as a rule; DT_RASPRINTER, DT_METAFILE for tests */
  int32_t dotsPerInch;    /* LOGPIXELSX and LOGPIXELSY */
} Headless_Display;

/* Replaces the screen: its surface is made anew, all zero, with the system palette of its depth.
 * Contexts on the earlier screen die. Returns 1, or 0 for an impossible display (the screen is then
 * as it was). At start the screen is 1024 by 768 with 24 bits. */
HEADLESS_API int32_t Headless_SetDisplay(const Headless_Display* display);
HEADLESS_API void Headless_GetDisplay(Headless_Display* display);

/* A look at the screen's pixels. Rows run from the top of the screen down; layout of a row as in a
 * DIB of that depth (24 and 32 bits: blue first; 16 bits: 5-5-5, blue low). */
typedef struct Headless_Surface {
  const uint8_t* bits;   /* first row; owned by the platform, until the next SetDisplay */
  int32_t width, height; /* pixels */
  int32_t bitsPerPixel;
  uint32_t stride;     /* bytes from row to row */
  RGBQUAD colors[256]; /* what each pixel value shows, up to 8 bits */
} Headless_Surface;
HEADLESS_API void Headless_GetScreen(Headless_Surface* surface);

/* What GetVersion answers. Takes effect on the library when it is next attached, see Restart. */
#define HEADLESS_VERSION_WIN32 0x0A280105u  /* a Windows NT line system */
#define HEADLESS_VERSION_WIN32S 0xC0000A03u /* top bit set, major version 3 */
HEADLESS_API void Headless_SetVersion(uint32_t version);

/* Detaches and attaches the process again, on the calling thread: DllMain sees both, and reads the
 * version anew. Bitmaps and thread settings of the earlier attachment must be gone. Returns what
 * the attachment returned. */
HEADLESS_API int32_t Headless_Restart(void);

/* What GetProcAddress finds under a name that the library looks up: "CreateDIBSection" in "GDI32",
 * and "UTRegister", "UTUnRegister" in "KERNEL32", which are absent at start. Null makes a name
 * absent. Returns 1, or 0 for any other name. */
HEADLESS_API int32_t Headless_SetProcedure(const char* module, const char* name, FARPROC address);

/* Watching StretchDIBits. `bits` points to the rows of the call as given. The observer runs on the
 * calling thread, before the pixels are drawn. Null turns it off. */
typedef struct Headless_StretchCall {
  HDC context;
  int32_t x, y, width, height;
  int32_t srcX, srcY, srcWidth, srcHeight;
  const void* bits;
  const BITMAPINFO* info;
  uint32_t usage;
  uint32_t rasterOp;
} Headless_StretchCall;
typedef void (*Headless_StretchObserver)(void* data, const Headless_StretchCall* call);
HEADLESS_API void Headless_ObserveStretch(Headless_StretchObserver observer, void* data);

/* Failure injection, per family of operations and on all threads. */
typedef enum Headless_Operation {
  HEADLESS_MEMORY = 0, /* GlobalAlloc, GlobalReAlloc, CreateFileMappingA, MapViewOfFile */
  HEADLESS_FILE = 1,   /* CreateFileA, ReadFile, WriteFile, SetFilePointer, SetEndOfFile */
  HEADLESS_OBJECT = 2, /* CreatePalette, regions, bitmaps, brushes, contexts */
  HEADLESS_OPERATIONS = 3
} Headless_Operation;

/* The n-th operation of the family from now on fails, the first being 1, and only that one. 0 turns
 * injection off. Either way the family's count starts again at 0. */
HEADLESS_API void Headless_FailNth(Headless_Operation family, uint32_t n);
/* Operations of the family since the last Headless_FailNth. */
HEADLESS_API uint32_t Headless_OperationCount(Headless_Operation family);

/* What the platform takes for the free memory of the machine, in bytes, when it decides whether a
 * file mapping gets memory or an unlinked temporary file; 0, as at start, asks the machine. */
HEADLESS_API void Headless_SetFreeMemory(uint64_t bytes);
/* The largest block that GlobalAlloc and GlobalReAlloc give, in bytes; 0, as at start, sets no
 * limit. A small machine of the Win32s kind: there, bitmaps that are larger go to temporary
 * files. */
HEADLESS_API void Headless_SetLargestBlock(uint64_t bytes);

/* What is alive. Stock objects, the screen and the screen's surface do not count. */
typedef struct Headless_Counts {
  uint32_t globalBlocks; /* blocks of GlobalAlloc */
  uint32_t mappings;     /* file mapping handles */
  uint32_t views;        /* mapped views */
  uint32_t files;        /* open files */
  uint32_t objects;      /* palettes, regions, bitmaps, brushes */
  uint32_t contexts;     /* device contexts, also those of GetDC */
} Headless_Counts;
HEADLESS_API void Headless_GetCounts(Headless_Counts* counts);

#ifdef __cplusplus
}
#endif

#endif
