// What each function that takes a bitmap answers for one without storage, be it freed, initialised
// only, or all zero; and that it leaves the record alone.
#include <gtest/gtest.h>

#include <cstring>

#include "kernel/platform_objects.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"
#include "tests/support/test_printer.h"

namespace vn::test {
namespace {

// What the calls need beside the record.
struct Others {
  Bitmap good{9, 7, 8};
  BitmapHandle made{};
  ScreenDC screen;
  const RECT box{0, 0, 4, 4};
  uint8_t bytes[1200] = {};
  RGBQUAD colors[256] = {};
  int32_t numbers[64] = {0, 4};
};

using Answer = int64_t;
struct Row {
  Answer expected;
  const char* call;
  Answer (*ask)(Others& o, BitmapHandle* b);
};

#define ASKS(expected, ...)                                            \
  Row {                                                                \
    expected, #__VA_ARGS__, [](Others& o, BitmapHandle* b) -> Answer { \
      (void)o;                                                         \
      return Answer(__VA_ARGS__);                                      \
    }                                                                  \
  }
#define PAINT o.screen.get(), b, nullptr, nullptr, &o.box, nullptr, SRCCOPY

const Row kRefused[] = {
    ASKS(ERR_NO_BITMAP, Vn_ChangeBitmapHeight(b, 5)),
    ASKS(ERR_NO_BITMAP, Vn_DupBitmapNewDim(&o.made, b, 4, 4, 8, DUP_ALLOCATE)),
    ASKS(ERR_NO_BITMAP, Vn_CopyBitmapData(b, o.good)),
    ASKS(ERR_NO_BITMAP, Vn_CopyBitmapData(o.good, b)),
    ASKS(ERR_NO_BITMAP, Vn_CopyBitmap(&o.made, b)),
    ASKS(ERR_NO_BITMAP, Vn_CopyBitmapRect(&o.made, b, 0, 0, 2, 2)),
    ASKS(VN_NO_PIXEL, Vn_GetPixelColor(b, 0, 0)),
    ASKS(ERR_NO_BITMAP, Vn_PutPixelColor(b, 0, 0, 0)),
    ASKS(ERR_INVALID_PARAMETER, Vn_GetBitmapColors(b, 0, 1, o.colors)),
    ASKS(ERR_NO_BITMAP, Vn_PutBitmapColors(b, 0, 1, o.colors)),
    ASKS(ERR_INVALID_PARAMETER, Vn_ColorResBitmap(b, &o.made, 8, 0, nullptr, 0, nullptr, 0)),
    ASKS(ERR_NO_BITMAP, Vn_GrayScaleBitmap(b)),
    ASKS(ERR_NO_BITMAP, Vn_HalfToneBitmap(b, HALFTONE_ORDERED)),
    ASKS(ERR_NO_BITMAP, Vn_HalfToneBitmapExt(b, HALFTONE_CLUSTERED, 30)),
    ASKS(ERR_NO_BITMAP, Vn_ResizeBitmap(b, o.good)),
    ASKS(ERR_NO_BITMAP, Vn_ResizeBitmap(o.good, b)),
    ASKS(ERR_INVALID_PARAMETER, Vn_SizeBitmap(b, 3, 3)),
    ASKS(ERR_NO_BITMAP, Vn_ResampleBitmap(b, 3, 3)),
    ASKS(ERR_NO_BITMAP, Vn_FlipBitmap(b)),
    ASKS(ERR_NO_BITMAP, Vn_ReverseBitmap(b)),
    ASKS(ERR_NO_BITMAP, Vn_RotateBitmap(b, 90, 1)),
    ASKS(ERR_NO_BITMAP, Vn_RotateBitmapFine(b, 0, 0, 0)),
    ASKS(ERR_NO_BITMAP, Vn_IntRotateBitmapFine(b, 100, 1, 0, 0, 100)),
    ASKS(ERR_NO_BITMAP, Vn_ShearBitmap(b, 0, 1, 0)),
    ASKS(ERR_INVALID_PARAMETER, Vn_CombineBitmap(b, 0, 0, 2, 2, o.good, 0, 0, COMBINE_OR)),
    ASKS(ERR_INVALID_PARAMETER, Vn_CombineBitmap(o.good, 0, 0, 2, 2, b, 0, 0, COMBINE_OR)),
    ASKS(ERR_NO_BITMAP, Vn_UnderlayBitmap(b, o.good, UNDERLAY_TILE)),
    ASKS(ERR_NO_BITMAP, Vn_UnderlayBitmap(o.good, b, UNDERLAY_TILE)),
    ASKS(ERR_NO_BITMAP, Vn_SetBitmapRgnColor(b, 0, REGION_COMBINE_REPLACE)),
    ASKS(ERR_NO_BITMAP, Vn_PaintDC(PAINT)),
    ASKS(ERR_INVALID_PARAMETER, Vn_PaintDCEffect(PAINT, EFFECT_PLAIN)),
    ASKS(0, Vn_ConvertToDIB(b) != nullptr),
    ASKS(0, Vn_ChangeToDIB(b) != nullptr),
    ASKS(0, Vn_ConvertToDDB(nullptr, b) != nullptr),
    ASKS(0, Vn_ChangeToDDB(nullptr, b) != nullptr),
    ASKS(ERR_NO_BITMAP, Vn_CopyToClipboardExt(nullptr, b, 0)),
    ASKS(0, Vn_CopyToClipboard(nullptr, b)),
    ASKS(0, Vn_CreateVornDC(b) != nullptr),
    ASKS(ERR_NO_MEMORY, Vn_GetBitmapRow(b, o.bytes, 0, 4)),
    ASKS(ERR_NO_MEMORY, Vn_PutBitmapRow(b, o.bytes, 0, 4)),
    ASKS(ERR_NO_MEMORY, Vn_GetBitmapRowCol(b, o.bytes, 0, 0, 4)),
    ASKS(ERR_NO_MEMORY, Vn_PutBitmapRowCol(b, o.bytes, 0, 0, 4)),
    // These have nothing to do.
    ASKS(OK, Vn_CombineBitmap(o.good, 0, 0, 2, 2, b, 0, 0, COMBINE_SRC_0 | COMBINE_AND)),
    ASKS(OK, Vn_FillBitmap(b, 0x123456)),
    ASKS(OK, Vn_ClearBitmap(b)),
    ASKS(OK, Vn_PutBitmapRowSegments(b, o.bytes, 0, 0, o.numbers, 0)),
    ASKS(OK, Vn_FreeImage(b, 1)),
    ASKS(0, Vn_LockBitmap(b)),
    ASKS(0, (Vn_UnlockBitmap(b, 0), 0)),
    ASKS(0, (Vn_AccessBitmap(b), Vn_ReleaseBitmap(b), 0)),
    ASKS(0, (Vn_FreeBitmap(b), 0)),
    ASKS(OK, Vn_StopDithering(b)),
    ASKS(0, Vn_IsGrayScaleBitmap(b)),
    ASKS(0, Vn_BitmapHasRgn(b)),
};

// Functions to which width, height and depth are enough. They may write the record.
const Row kServed[] = {
    ASKS(ERR_FILE_SEEK, Vn_PutBitmapRowSegments(b, o.bytes, 0, 0, o.numbers, 2)),
    ASKS(ERR_NO_BITMAP, Vn_PaintRgnDC(PAINT)),
    ASKS(OK, Vn_PaintDCBuffer(PAINT, o.bytes, 0, 7)),
    ASKS(OK, Vn_PaintRgnDCBuffer(PAINT, o.bytes, 0, 7)),
    ASKS(ERR_INVALID_PARAMETER, Vn_PaintRgnDCEffect(PAINT, EFFECT_PLAIN)),
    ASKS(OK, Vn_StartDithering(b, nullptr, 16)),
    ASKS(OK, Vn_DitherLine(b, o.bytes, o.bytes + 600)),
    ASKS(OK, Vn_StopDithering(b)),
    ASKS(OK, Vn_SetBitmapRgnRect(b, nullptr, &o.box, REGION_COMBINE_REPLACE)),
    ASKS(OK, Vn_OffsetBitmapRgn(b, 1, 2)),
    ASKS(1, Vn_IsPtInBitmapRgn(b, 1, 2)),
    ASKS(OK, Vn_GetBitmapClipSegments(b, 1, o.numbers, o.numbers + 62)),
    ASKS(OK, Vn_FillBitmap(b, 0x123456)),
    ASKS(OK, Vn_FreeBitmapRgn(b)),
    ASKS(OK, Vn_AllocateBitmap(b, STORAGE_AUTO)),
};

class Unallocated : public testing::Test {
 protected:
  void AskAll(const BitmapHandle& record) {
    for (const Row& row : kRefused) {
      SCOPED_TRACE(row.call);
      BitmapHandle asked = record;
      EXPECT_EQ(row.ask(others_, &asked), row.expected);
      asked.CurrentRow = record.CurrentRow;  // row access moves its cache all the same
      asked.CurrentOffset = record.CurrentOffset;
      EXPECT_EQ(std::memcmp(&asked, &record, sizeof asked), 0) << "the record changed";
      EXPECT_FALSE(others_.made.Flags & FLAG_ALLOCATED);
    }
  }
  Others others_;
};

TEST_F(Unallocated, EachFunctionAnswersAsItsHeaderTells) {
  BitmapHandle zero{};
  AskAll(zero);
  for (const int32_t bits : kDepths) {
    for (const bool freed : {false, true}) {
      SCOPED_TRACE(testing::Message() << bits << " bits, " << (freed ? "freed" : "initialised"));
      BitmapHandle record;
      if (freed) {
        ASSERT_EQ(
            Vn_CreateBitmap(&record, STORAGE_AUTO, 9, 7, bits, ORDER_BGR, nullptr, VIEW_TOP_FIRST),
            OK);
        Vn_FreeBitmap(&record);
      } else {
        ASSERT_EQ(Vn_InitBitmap(&record, 9, 7, bits), OK);
      }
      AskAll(record);
      for (const Row& row : kServed) {
        EXPECT_EQ(row.ask(others_, &record), row.expected) << row.call;
      }
      Vn_FreeBitmap(&record);
    }
  }
}

// A moveable block has no address until it is locked, and one that is gone never has.
HEADLESS_TEST(WithoutAddress, NothingIsReadOrWrittenThroughNull) {
  const Win32sScope win32s;
  Others others;
  for (const int32_t bits : kDepths) {
    Bitmap bitmap(9, 7, bits);
    EXPECT_EQ(Vn_GetBitmapRow(bitmap, others.bytes, 3, 2), ERR_NO_MEMORY);
    EXPECT_EQ(Vn_PutBitmapRow(bitmap, others.bytes, 3, 2), ERR_NO_MEMORY);
    EXPECT_EQ(Vn_GetBitmapRowCol(bitmap, others.bytes, 3, 1, 1), ERR_NO_MEMORY);
    EXPECT_EQ(Vn_PutBitmapRowCol(bitmap, others.bytes, 3, 1, 1), ERR_NO_MEMORY);
    EXPECT_EQ(Vn_PutBitmapRowSegments(bitmap, others.bytes, 3, 0, others.numbers, 2),
              ERR_NO_MEMORY);
    for (const Row& row : kRefused) {
      if (row.expected >= 0) continue;  // what makes a handle makes it of nothing
      Bitmap gone(9, 7, bits);
      GlobalFree(gone->Storage);
      row.ask(others, gone);  // whatever it answers
      Vn_FreeBitmap(&others.made);
      if (OpenClipboard(nullptr)) EmptyClipboard(), CloseClipboard();
    }
  }
}

// Of a print job the page is left empty.
HEADLESS_TEST(UnallocatedOnPaper, ThePageStaysEmpty) {
  const TestPrinter printer(24);
  BitmapHandle bitmap;
  Vn_InitBitmap(&bitmap, 9, 7, 24);
  const HDC job = Vn_PrintBitmapFast(nullptr, &bitmap, 1, 1, 9, 7, 0);
  EXPECT_NE(job, nullptr);
  EXPECT_EQ(Vn_PrintBitmapExt(job, &bitmap, 1, 1, 9, 7, 1), job);
  EXPECT_NE(Vn_PrintBitmap(&bitmap, 1, 1, 9, 7, 1), nullptr);
}

}  // namespace
}  // namespace vn::test
