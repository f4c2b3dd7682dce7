/* A user's program in C, with the prefixed names alone: paints a bitmap into another one, twice as
 * large, through a context on the second one's pixels, and compares. The same on every system. */
#define VNCORE_PREFIXED
#include <stdio.h>

#include <vncore/vncore.h>

enum { SIDE = 8, BITS = 32 };

static uint32_t PixelOf(uint32_t x, uint32_t y) { return x * 29 | y * 31 << 8 | (x ^ y) << 16; }

int main(void) {
  Vn_BitmapHandle small, large;
  if (Vn_CreateBitmap(&small, VN_STORAGE_AUTO, SIDE, SIDE, BITS, VN_ORDER_BGR, NULL,
                      VN_VIEW_BOTTOM_FIRST) != VN_OK ||
      Vn_CreateBitmap(&large, VN_STORAGE_AUTO, 2 * SIDE, 2 * SIDE, BITS, VN_ORDER_BGR, NULL,
                      VN_VIEW_BOTTOM_FIRST) != VN_OK) {
    return 1;
  }
  uint32_t row[2 * SIDE];
  for (uint32_t y = 0; y < SIDE; ++y) {
    for (uint32_t x = 0; x < SIDE; ++x)
      row[x] = PixelOf(x, y);
    Vn_PutBitmapRow(&small, row, y, sizeof row / 2);
  }

  Vn_HDC context = Vn_CreateVornDC(&large);
  const Vn_RECT whole = {0, 0, 2 * SIDE, 2 * SIDE};
  const Vn_Status status = Vn_PaintDC(context, &small, NULL, NULL, &whole, NULL, VN_SRCCOPY);
  Vn_DeleteVornDC(context);

  int faults = status != VN_OK;
  for (uint32_t y = 0; y < 2 * SIDE; ++y) {
    Vn_GetBitmapRow(&large, row, y, sizeof row);
    for (uint32_t x = 0; x < 2 * SIDE; ++x)
      faults += (row[x] & 0xFFFFFF) != PixelOf(x / 2, y / 2);
  }
  Vn_FreeBitmap(&small);
  Vn_FreeBitmap(&large);
  Vn_VersionRecord version;
  Vn_VersionInfo(&version);
  printf("consumer: VNCORE32 %d.%d, status %d, %d faults\n", (int)version.MajorVersion,
         (int)version.MinorVersion, (int)status, faults);
  return faults != 0;
}
