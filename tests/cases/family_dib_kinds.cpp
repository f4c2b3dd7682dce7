// DIBs of strangers: through the library into bitmaps and back, by copy, by move and by way of the
// clipboard; drawn and made to sections by the platform; and device bitmaps of a true-colour screen.
#include <algorithm>
#include <cstring>

#include "tests/cases/bitmaps.h"
#include "tests/cases/foreign_dib.h"
#include "tests/cases/surfaces.h"

namespace vn::cases {

namespace {

// Rows of a DIB, without the fill at their ends.
void FoldRows(Case& test, const uint8_t* row, int32_t width, int32_t height, int32_t bits) {
  const auto used = static_cast<uint32_t>(width * bits);
  for (int32_t y = 0; y < height; ++y, row += DibStride(width, bits)) {
    test.FoldBytes("row", row, used / 8);
    if (used % 8) test.Fold("rest", row[used / 8] >> (8 - used % 8));
  }
}

// What a block of the library's own making holds. Frees it.
void FoldDib(Case& test, const char* what, HGLOBAL dib) {
  test.FoldHandle(what, dib);
  if (!dib) return;
  const auto* const at = static_cast<const uint8_t*>(GlobalLock(dib));
  BITMAPINFOHEADER header;
  std::memcpy(&header, at, sizeof header);
  const size_t table = header.biBitCount <= 8 ? sizeof(RGBQUAD) << header.biBitCount : 0;
  test.FoldBytes("head", at, sizeof header + table);
  FoldRows(test, at + sizeof header + table, header.biWidth, header.biHeight, header.biBitCount);
  GlobalUnlock(dib);
  GlobalFree(dib);
}

// A bitmap that has come from somewhere, and the DIBs that it becomes in either order of its rows.
void FoldAndReturn(Case& test, Bitmap& bitmap) {
  FoldRecord(test, bitmap);
  FoldPixels(test, bitmap);
  bitmap->ViewOrigin = test.OneOf({0u, 2u, 3u});
  FoldDib(test, "Vn_ConvertToDIB", Vn_ConvertToDIB(bitmap));
  FoldDib(test, "Vn_ChangeToDIB", Vn_ChangeToDIB(bitmap));
}

void Change(Case& test) {
  const ForeignDib source(test);
  const HGLOBAL block = source.NewBlock(test.random.Chance(20) ? 2 : 1);
  Bitmap bitmap;
  const VnStatus status = Vn_ChangeFromDIB(bitmap, block);
  test.Fold("Vn_ChangeFromDIB", status);
  if (status != OK) {
    GlobalFree(block);
    return;
  }
  FoldAndReturn(test, bitmap);
}

// The caller vouches for a long header, a full table and rows of any compression as they stand.
void Convert(Case& test) {
  const ForeignDib source(test);
  if (source.core()) return;
  std::vector<uint8_t> head(40 + 256 * sizeof(RGBQUAD));
  std::memcpy(head.data(), source.info(), 40);
  test.random.Fill(head.data() + 40, head.size() - 40);
  std::vector<uint8_t> rows(DibStride(source.width(), source.bits()) *
                            static_cast<uint32_t>(source.height()));
  test.random.Fill(rows.data(), rows.size());
  Bitmap bitmap;
  const VnStatus status =
      Vn_ConvertFromDIB(bitmap, reinterpret_cast<const BITMAPINFO*>(head.data()), rows.data());
  test.Fold("Vn_ConvertFromDIB", status);
  if (status == OK) FoldAndReturn(test, bitmap);
}

// From a bitmap of the library's own through the clipboard, or a stranger's block.
void Paste(Case& test) {
  if (test.random.Chance(2)) {
    const ForeignDib source(test);
    const HGLOBAL block = source.NewBlock();
    OpenClipboard(nullptr);
    EmptyClipboard();
    test.FoldHandle("SetClipboardData", SetClipboardData(CF_DIB, block));
    CloseClipboard();
  } else {
    Bitmap bitmap(test, RandomShape(test, 40, 30));
    test.Fold("Vn_CopyToClipboardExt",
              Vn_CopyToClipboardExt(nullptr, bitmap, COPY_EMPTY | COPY_DIB));
  }
  Bitmap pasted;
  const int32_t done = Vn_CopyFromClipboard(nullptr, pasted);
  test.Fold("Vn_CopyFromClipboard", done);
  if (done) FoldAndReturn(test, pasted);
  OpenClipboard(nullptr);
  EmptyClipboard();
  CloseClipboard();
}

void Draw(Case& test) {
  const int32_t bits = test.OneOf(kDepths);
  const int32_t targetWidth = test.Pick(1, 50), targetHeight = test.Pick(1, 30);
  const Section target(test, targetWidth, targetHeight, bits);
  const ForeignDib source(test);
  int32_t srcX = 0, srcY = 0, width = source.width(), height = source.height();
  if (test.random.Chance(3)) {
    srcX = test.Pick(0, width - 1), srcY = test.Pick(0, height - 1);
    width = test.Pick(1, width - srcX), height = test.Pick(1, height - srcY);
  }
  const int32_t x = test.Pick(-5, 20), y = test.Pick(-5, 15);
  const DWORD operation = test.random.Chance(4) ? test.OneOf({SRCINVERT, SRCAND}) : SRCCOPY;
  test.Note("%dx%d from %d,%d to %d,%d, %08x", width, height, srcX, srcY, x, y,
            static_cast<unsigned>(operation));
  test.Fold("StretchDIBits",
            StretchDIBits(target.context(), x, y, width, height, srcX, srcY, width, height,
                          source.pixels(), source.info(), DIB_RGB_COLORS, operation));
  target.Fold(test);
}

// A section of a stranger's making, and a picture read into his layout.
void MakeAndRead(Case& test) {
  const ForeignDib like(test);
  void* pixels = nullptr;
  const HBITMAP section =
      CreateDIBSection(nullptr, like.info(), DIB_RGB_COLORS, &pixels, nullptr, 0);
  test.FoldHandle("CreateDIBSection", section);
  if (section) DeleteObject(section);
  // Wine answers masks that nobody has written.
  if (like.fields()) return;
  // Not narrower than what is asked for: Wine shows the fill of its rows.
  const int32_t width = test.Pick(like.width(), 45), height = test.Pick(1, 20);
  const Section source(test, width, height, test.OneOf(kDepths));
  std::vector<uint8_t> head(124 + 256 * sizeof(RGBQUAD), 0xA5);
  std::memcpy(head.data(), like.info(),
              static_cast<size_t>(like.pixels() - reinterpret_cast<const uint8_t*>(like.info())));
  const uint32_t stride = DibStride(like.width(), like.bits());
  std::vector<uint8_t> rows(stride * static_cast<uint32_t>(like.height()), 0xA5);
  const int lines =
      GetDIBits(source.context(), source.bitmap(), 0, static_cast<UINT>(like.height()), rows.data(),
                reinterpret_cast<BITMAPINFO*>(head.data()), DIB_RGB_COLORS);
  test.Fold("GetDIBits", lines);
  test.FoldBytes("head", head.data(), head.size());
  FoldRows(test, rows.data(), like.width(), like.height(), like.bits());
}

void Run(Case& test) {
  switch (test.Pick(0, 10)) {
    case 0:
    case 1:
    case 2:
    case 3:
      return Change(test);
    case 4:
      return Convert(test);
    case 5:
      return Paste(test);
    case 6:
    case 7:
    case 8:
      return Draw(test);
    default:
      return MakeAndRead(test);
  }
}

// To a device bitmap and back, by copy and by move, and captured from a context on one.
void RunDevice(Case& test) {
  HDC screen = GetDC(nullptr);
  Bitmap bitmap(test, RandomShape(test, 60, 40));
  const HBITMAP object = Vn_ConvertToDDB(test.random.Chance(2) ? screen : nullptr, bitmap);
  test.FoldHandle("Vn_ConvertToDDB", object);
  Bitmap back;
  test.Fold("Vn_ConvertFromDDB", Vn_ConvertFromDDB(screen, back, object, nullptr));
  FoldRecord(test, back);
  FoldPixels(test, back);

  HDC context = CreateCompatibleDC(screen);
  const HGDIOBJ before = SelectObject(context, object);
  const RECT area = {test.Pick(0, bitmap->Width - 1), 0, bitmap->Width, bitmap->Height};
  Bitmap captured;
  test.Fold("Vn_ScreenCaptureBitmap", Vn_ScreenCaptureBitmap(context, captured, &area));
  FoldRecord(test, captured);
  FoldPixels(test, captured);
  SelectObject(context, before);
  DeleteDC(context);

  Bitmap moved;
  test.Fold("Vn_ChangeFromDDB", Vn_ChangeFromDDB(screen, moved, object, nullptr));
  FoldAndReturn(test, moved);
  ReleaseDC(nullptr, screen);
}

const Registration registration({"dib-kinds", 2000, 0x5B3FC02A8F48071Cu, Run});
const Registration devices({"dib-devices", 400, 0x2A4724384E36662Bu, RunDevice,
                            Screen::kTrueColor});

}  // namespace

}  // namespace vn::cases
