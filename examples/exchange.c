/* A picture on its way through the system: read or made, drawn on with the system's own calls, copied
 * to the clipboard, pasted from it, printed, and written to a BMP file.
 *
 * C99, the same source on Windows and on the embedded platform.
 * usage: example_exchange OUT.bmp [IN.bmp]
 * On the embedded platform the page goes to OUT.bmp.page.bmp.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <vncore/vncore.h>
#ifndef _WIN32
#include <vncore/platform/headless/headless.h>
#endif

enum { WIDTH = 320, HEIGHT = 200, FILE_HEADER = 14 };

static int Fail(const char* what, int code) {
  fprintf(stderr, "%s fails: %d\n", what, code);
  return 0;
}

/* A BMP file is a DIB behind a header of its own: the block goes over to the bitmap. */
static int ReadFileInto(BitmapHandle* bitmap, const char* name) {
  FILE* file = fopen(name, "rb");
  if (!file) return Fail(name, 0);
  fseek(file, 0, SEEK_END);
  const long bytes = ftell(file) - FILE_HEADER;
  HGLOBAL dib = bytes > 0 ? GlobalAlloc(GMEM_MOVEABLE, (SIZE_T)bytes) : NULL;
  void* block = dib ? GlobalLock(dib) : NULL;
  fseek(file, FILE_HEADER, SEEK_SET);
  VnStatus status = ERR_FILE_READ;
  if (block) {
    const int whole = fread(block, 1, (size_t)bytes, file) == (size_t)bytes;
    GlobalUnlock(dib);
    if (whole) status = Vn_ChangeFromDIB(bitmap, dib);
  }
  fclose(file);
  if (status != OK && dib) GlobalFree(dib); /* on success it is the bitmap's */
  return status == OK || Fail("Vn_ChangeFromDIB", status);
}

/* Red grows to the right and green upwards. */
static int MakePicture(BitmapHandle* bitmap) {
  const VnStatus status =
      Vn_CreateBitmap(bitmap, STORAGE_AUTO, WIDTH, HEIGHT, 24, ORDER_BGR, NULL, VIEW_BOTTOM_FIRST);
  if (status != OK) return Fail("Vn_CreateBitmap", status);
  uint8_t row[WIDTH * 3];
  const int32_t state = Vn_LockBitmap(bitmap);
  for (uint32_t y = 0; y < HEIGHT; ++y) {
    for (uint32_t x = 0; x < WIDTH; ++x) {
      row[3 * x] = 96;
      row[3 * x + 1] = (uint8_t)(y * 255 / (HEIGHT - 1));
      row[3 * x + 2] = (uint8_t)(x * 255 / (WIDTH - 1));
    }
    Vn_PutBitmapRow(bitmap, row, y, sizeof row);
  }
  Vn_UnlockBitmap(bitmap, state);
  return 1;
}

static void Bar(HDC context, const RECT* area, COLORREF color) {
  HBRUSH brush = CreateSolidBrush(color);
  HGDIOBJ before = SelectObject(context, brush);
  PatBlt(context, area->left, area->top, area->right - area->left, area->bottom - area->top,
         PATCOPY);
  SelectObject(context, before);
  DeleteObject(brush);
}

/* An inverted ellipse in a frame, and three bars. The context draws on the bitmap's own pixels. */
static int Draw(BitmapHandle* bitmap) {
  HDC context = Vn_CreateVornDC(bitmap);
  if (!context) return Fail("Vn_CreateVornDC", 0);
  const int width = bitmap->Width, height = bitmap->Height;
  const RECT oval = {width / 8, height / 8, width * 5 / 8, height * 7 / 8};
  HRGN ellipse = CreateEllipticRgnIndirect(&oval);
  SelectClipRgn(context, ellipse);
  PatBlt(context, 0, 0, width, height, DSTINVERT);
  SelectClipRgn(context, NULL);
  HBRUSH brush = CreateSolidBrush(RGB(255, 255, 255));
  FrameRgn(context, ellipse, brush, 3, 3);
  DeleteObject(brush);
  DeleteObject(ellipse);
  static const COLORREF colors[] = {RGB(255, 220, 0), RGB(0, 160, 255), RGB(20, 20, 20)};
  for (int i = 0; i < 3; ++i) {
    const int left = width * 11 / 16 + i * width / 12;
    const RECT bar = {left, height * (3 - i) / 8, left + width / 16, height * 7 / 8};
    Bar(context, &bar, colors[i]);
  }
  return Vn_DeleteVornDC(context) != 0 || Fail("Vn_DeleteVornDC", 0);
}

/* A window to own the clipboard, where there are windows. */
static HWND MakeOwner(void) {
#ifdef _WIN32
  return CreateWindowA("STATIC", "", 0, 0, 0, 1, 1, NULL, NULL, GetModuleHandleA(NULL), NULL);
#else
  return NULL;
#endif
}

/* Whether two bitmaps have the same rows, but for the fill at their ends. */
static int SameRows(BitmapHandle* a, BitmapHandle* b) {
  if (a->Width != b->Width || a->Height != b->Height || a->BytesPerLine != b->BytesPerLine)
    return 0;
  uint8_t* rows = malloc(2 * (size_t)a->BytesPerLine);
  if (!rows) return 0;
  int same = 1;
  const int32_t stateA = Vn_LockBitmap(a), stateB = Vn_LockBitmap(b);
  const size_t used = ((size_t)a->Width * (size_t)a->BitsPerPixel + 7) / 8;
  for (uint32_t y = 0; same && y < (uint32_t)a->Height; ++y) {
    Vn_GetBitmapRow(a, rows, y, a->BytesPerLine);
    Vn_GetBitmapRow(b, rows + a->BytesPerLine, y, a->BytesPerLine);
    same = memcmp(rows, rows + a->BytesPerLine, used) == 0;
  }
  Vn_UnlockBitmap(b, stateB);
  Vn_UnlockBitmap(a, stateA);
  free(rows);
  return same;
}

static void DropOwner(HWND window) {
#ifdef _WIN32
  DestroyWindow(window);
#else
  (void)window;
#endif
}

static int CopyAndPaste(BitmapHandle* bitmap, BitmapHandle* pasted) {
  HWND owner = MakeOwner();
  const int copied = Vn_CopyToClipboard(owner, bitmap);
  DropOwner(owner); /* the clipboard keeps what it has */
  if (!copied) return Fail("Vn_CopyToClipboard", 0);
  if (!Vn_ClipboardReady()) return Fail("Vn_ClipboardReady", 0);
  if (!Vn_CopyFromClipboard(NULL, pasted)) return Fail("Vn_CopyFromClipboard", 0);
  if (SameRows(bitmap, pasted)) return 1;
  Vn_FreeBitmap(pasted);
  return Fail("the clipboard: another picture came back", 0);
}

/* A sum over head, colours and rows, by which runs can be compared. */
static uint32_t SumOf(const uint8_t* bytes, size_t count) {
  uint32_t sum = 2166136261u;
  for (size_t i = 0; i < count; ++i)
    sum = (sum ^ bytes[i]) * 16777619u;
  return sum;
}

static void StoreNumber(uint8_t* at, uint32_t value) {
  for (int i = 0; i < 4; ++i)
    at[i] = (uint8_t)(value >> 8 * i);
}

static int WriteBitmap(BitmapHandle* bitmap, const char* name, uint32_t* sum) {
  HGLOBAL dib = Vn_ConvertToDIB(bitmap);
  const uint8_t* block = dib ? GlobalLock(dib) : NULL;
  if (!block) return Fail("Vn_ConvertToDIB", 0);
  BITMAPINFOHEADER header;
  memcpy(&header, block, sizeof header);
  const uint32_t rows =
      (uint32_t)sizeof header + (header.biBitCount <= 8 ? 4u << header.biBitCount : 0u);
  const uint32_t bytes = rows + header.biSizeImage;
  uint8_t start[FILE_HEADER] = {'B', 'M'};
  StoreNumber(start + 2, FILE_HEADER + bytes);
  StoreNumber(start + 10, FILE_HEADER + rows);
  FILE* file = fopen(name, "wb");
  const int written = file && fwrite(start, 1, sizeof start, file) == sizeof start &&
                      fwrite(block, 1, bytes, file) == bytes;
  const int closed = file && fclose(file) == 0;
  *sum = SumOf(block, bytes);
  GlobalUnlock(dib);
  GlobalFree(dib);
  return (written && closed) || Fail(name, 0);
}

#ifdef _WIN32
static int InstallPrinter(const char* out) {
  (void)out;
  char device[81];
  return GetProfileStringA("windows", "device", "", device, sizeof device) > 0;
}
#else
/* A printer of A6 paper at 100 dots per inch, whose pages become BMP files. */
static int32_t KeepPage(void* name, Headless_PrintEvent event, const Headless_Page* page) {
  if (event != HEADLESS_PRINT_PAGE) return 1;
  BitmapHandle sheet;
  const RECT all = {0, 0, page->surface.width, page->surface.height};
  if (Vn_ScreenCaptureBitmap(page->context, &sheet, &all) != OK) return 0;
  uint32_t sum;
  const int written = WriteBitmap(&sheet, name, &sum);
  Vn_FreeBitmap(&sheet);
  return written;
}

static int InstallPrinter(const char* out) {
  static char name[512];
  snprintf(name, sizeof name, "%s.page.bmp", out);
  const Headless_Printer printer = {
      "Paper,PAPER,FILE:", {413, 583, 24, 0, 0, DT_RASPRINTER, 100}, 0};
  Headless_SetPrintSink(KeepPage, name);
  return Headless_SetPrinter(&printer);
}
#endif

/* As large as the page allows, in its middle. */
static int Print(BitmapHandle* bitmap, const char* out) {
  if (!InstallPrinter(out)) {
    printf("there is no printer: nothing is printed\n");
    return 1;
  }
  if (!Vn_PrintBitmap(bitmap, 0, 0, 0, 0, 1)) return Fail("Vn_PrintBitmap", 0);
  printf("printed\n");
  return 1;
}

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    fprintf(stderr, "usage: %s OUT.bmp [IN.bmp]\n", argv[0]);
    return 2;
  }
  BitmapHandle bitmap, pasted;
  if (!(argc == 3 ? ReadFileInto(&bitmap, argv[2]) : MakePicture(&bitmap))) return 1;
  int good = Draw(&bitmap) && CopyAndPaste(&bitmap, &pasted);
  if (good) {
    uint32_t sum;
    good = WriteBitmap(&pasted, argv[1], &sum) && Print(&pasted, argv[1]);
    Vn_FreeBitmap(&pasted);
    if (good) printf("picture %08x\n", (unsigned)sum);
  }
  Vn_FreeBitmap(&bitmap);
  return good ? 0 : 1;
}
