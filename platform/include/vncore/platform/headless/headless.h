/* The headless platform's own controls: what a test or a tool sets and watches, since there is no
 * display, printer or Windows version to be found.
 *
 * Rooms of the library never include this header; tests, tools and examples may. C99 and C++.
 * The settings are process-wide. Nothing here is safe against calls from several threads at once
 * unless it says so.
 */
#include <stdint.h>

#include <vncore/platform/types.h>
#ifndef VNCORE_PREFIXED
#include <vncore/platform/win32.h>
#endif

#ifndef VNCORE_PLATFORM_HEADLESS_HEADLESS_H
#define VNCORE_PLATFORM_HEADLESS_HEADLESS_H

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

/* A look at pixels. Layout of a row as in a DIB of that depth (24 and 32 bits: blue first; 16 bits:
 * 5-5-5, blue low, where no DIB section has other fields). */
typedef struct Headless_Surface {
  uint8_t* bits;         /* the uppermost row; owned by the platform or by a mapping */
  int32_t width, height; /* pixels */
  int32_t bitsPerPixel;
  int32_t stride;         /* bytes from a row to the one below; negative over bottom-up rows */
  Vn_RGBQUAD colors[256]; /* what each pixel value shows, up to 8 bits */
} Headless_Surface;
/* The screen's pixels, until the next SetDisplay. */
HEADLESS_API void Headless_GetScreen(Headless_Surface* surface);
/* The pixels that a context draws on, while the context lives and its bitmap stays selected; so a
 * program draws on them with any library, beside the context's own calls and past its clip. The
 * pixels of a bitmap of Vn_CreateVornDC are the bitmap's own. Returns 1, or 0 for a dead context. */
HEADLESS_API int32_t Headless_GetSurface(Vn_HDC context, Headless_Surface* surface);

/* The printer. */
typedef struct Headless_Printer {
  const char* device;    /* "name,driver,port", what the profile says of the default printer */
  Headless_Display page; /* printable area and abilities; DT_RASPRINTER as a rule */
  int32_t colors;        /* NUMCOLORS; 0: as the depth has it */
} Headless_Printer;

/* Installs the printer as the default one, in place of any other; null, as at start: there is none.
 * Contexts on an earlier printer go on with it. Returns 1, or 0 for an impossible page or not enough
 * memory (nothing has changed then). */
HEADLESS_API int32_t Headless_SetPrinter(const Headless_Printer* printer);

/* What a job tells its sink: each page that has ended, in order, and then how the document ended. */
typedef enum Headless_PrintEvent {
  HEADLESS_PRINT_PAGE = 0,
  HEADLESS_PRINT_DONE = 1,
  HEADLESS_PRINT_ABORTED = 2 /* AbortDoc, or the context was deleted: the pages count for nothing */
} Headless_PrintEvent;
typedef struct Headless_Page {
  Vn_HDC context;
  const char* document; /* its name */
  int32_t number;       /* of the page, from 1; at the document's end that of its last page */
  int32_t dotsPerInch;
  Headless_Surface surface; /* the page's pixels, until the sink returns; none at the end */
} Headless_Page;
/* Runs on the thread that prints. Returns nonzero, or 0 to make the printer's call fail. */
typedef int32_t (*Headless_PrintSink)(void* data, Headless_PrintEvent event,
                                      const Headless_Page* page);
/* Null, as at start: pages are lost. */
HEADLESS_API void Headless_SetPrintSink(Headless_PrintSink sink, void* data);

/* What GetVersion answers. Takes effect on the library when it is next attached, see Restart. */
#define HEADLESS_VERSION_WIN32 0x0A280105u  /* a Windows NT line system */
#define HEADLESS_VERSION_WIN32S 0xC0000A03u /* top bit set, major version 3 */
HEADLESS_API void Headless_SetVersion(uint32_t version);

/* Detaches and attaches the process again, on the calling thread: the library sees both, and reads
 * the version anew. Bitmaps and thread settings of the earlier attachment must be gone. Returns what
 * the attachment returned. */
HEADLESS_API int32_t Headless_Restart(void);

/* What GetProcAddress finds under a name that the library looks up: "CreateDIBSection" in "GDI32",
 * and "UTRegister", "UTUnRegister" in "KERNEL32", which are absent at start. Null makes a name
 * absent. Returns 1, or 0 for any other name. */
HEADLESS_API int32_t Headless_SetProcedure(const char* module, const char* name,
                                           Vn_FARPROC address);

/* Watching StretchDIBits. `bits` points to the rows of the call as given. The observer runs on the
 * calling thread, before the pixels are drawn. Null turns it off. */
typedef struct Headless_StretchCall {
  Vn_HDC context;
  int32_t x, y, width, height;
  int32_t srcX, srcY, srcWidth, srcHeight;
  const void* bits;
  const Vn_BITMAPINFO* info;
  uint32_t usage;
  uint32_t rasterOp;
} Headless_StretchCall;
typedef void (*Headless_StretchObserver)(void* data, const Headless_StretchCall* call);
HEADLESS_API void Headless_ObserveStretch(Headless_StretchObserver observer, void* data);

/* Failure injection, per family of operations and on all threads. */
typedef enum Headless_Operation {
  HEADLESS_MEMORY = 0, /* GlobalAlloc, GlobalReAlloc, CreateFileMappingA, MapViewOfFile */
  HEADLESS_FILE = 1,   /* CreateFileA, ReadFile, WriteFile, SetFilePointer, SetEndOfFile */
  HEADLESS_OBJECT = 2, /* CreatePalette, regions, bitmaps, brushes, contexts, StartDocA */
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
