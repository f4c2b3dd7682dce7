/* The shortest whole use of VNCORE32: make a bitmap, draw its rows, paint it scaled, look at it.
 *
 * C99, the same source on Windows and on the embedded platform.
 * usage: example_paint OUT.ppm
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <vncore/vncore.h>

enum { WIDTH = 200, HEIGHT = 100, SHOWN_WIDTH = 320, SHOWN_HEIGHT = 240 };

/* A picture: red grows to the right, green downwards, and a blue frame. */
static VnStatus DrawRows(BitmapHandle* bitmap) {
  uint8_t* row = malloc(bitmap->BytesPerLine);
  if (!row) return ERR_NO_MEMORY;
  const int32_t state = Vn_LockBitmap(bitmap);
  int32_t moved = 0;
  for (int32_t y = 0; y < bitmap->Height && moved >= 0; ++y) {
    memset(row, 0, bitmap->BytesPerLine);
    for (int32_t x = 0; x < bitmap->Width; ++x) {
      const int frame = x < 4 || y < 4 || x >= bitmap->Width - 4 || y >= bitmap->Height - 4;
      row[3 * x] = frame ? 255 : 0; /* blue first: ORDER_BGR */
      row[3 * x + 1] = (uint8_t)(y * 255 / (bitmap->Height - 1));
      row[3 * x + 2] = (uint8_t)(x * 255 / (bitmap->Width - 1));
    }
    moved = Vn_PutBitmapRow(bitmap, row, (uint32_t)y, bitmap->BytesPerLine);
  }
  Vn_UnlockBitmap(bitmap, state);
  free(row);
  return moved < 0 ? moved : OK;
}

/* Paints the bitmap on a surface of true colour and writes what the surface shows. */
static VnStatus PaintTo(BitmapHandle* bitmap, FILE* out) {
  BITMAPINFO info;
  memset(&info, 0, sizeof info);
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = SHOWN_WIDTH;
  info.bmiHeader.biHeight = -SHOWN_HEIGHT; /* top line first */
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  HDC context = CreateCompatibleDC(NULL);
  void* pixels = NULL;
  HBITMAP surface = CreateDIBSection(context, &info, DIB_RGB_COLORS, &pixels, NULL, 0);
  if (!surface) {
    DeleteDC(context);
    return ERR_NO_MEMORY;
  }
  HGDIOBJ before = SelectObject(context, surface);

  /* Let the device reduce colours where it must: this surface shows them all. */
  const uint32_t mode = Vn_SetDisplayMode(MODE_DITHER, 0);
  const RECT whole = {0, 0, SHOWN_WIDTH, SHOWN_HEIGHT};
  const VnStatus status = Vn_PaintDC(context, bitmap, NULL, NULL, &whole, NULL, SRCCOPY);
  Vn_SetDisplayMode((uint32_t)-1, mode);

  const uint8_t* pixel = pixels; /* rows of 320 pixels need no fill */
  fprintf(out, "P6\n%d %d\n255\n", SHOWN_WIDTH, SHOWN_HEIGHT);
  for (int i = 0; i < SHOWN_WIDTH * SHOWN_HEIGHT; ++i, pixel += 3) {
    fputc(pixel[2], out);
    fputc(pixel[1], out);
    fputc(pixel[0], out);
  }
  SelectObject(context, before);
  DeleteObject(surface);
  DeleteDC(context);
  return status;
}

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: %s OUT.ppm\n", argv[0]);
    return 2;
  }
  VersionRecord version;
  Vn_VersionInfo(&version);
  printf("VNCORE32 %d.%d, built %s\n", (int)version.MajorVersion, (int)version.MinorVersion,
         version.BuildDate);

  BitmapHandle bitmap;
  VnStatus status =
      Vn_CreateBitmap(&bitmap, STORAGE_AUTO, WIDTH, HEIGHT, 24, ORDER_BGR, NULL, VIEW_TOP_FIRST);
  if (status != OK) {
    fprintf(stderr, "no bitmap: %d\n", (int)status);
    return 1;
  }
  status = DrawRows(&bitmap);
  FILE* out = fopen(argv[1], "wb");
  if (!out) {
    perror(argv[1]);
    status = ERR_FILE_WRITE;
  } else {
    if (status == OK) status = PaintTo(&bitmap, out);
    if (fclose(out) != 0 && status == OK) status = ERR_FILE_WRITE;
  }
  Vn_FreeBitmap(&bitmap);
  if (status != OK) fprintf(stderr, "failed: %d\n", (int)status);
  return status == OK ? 0 : 1;
}
