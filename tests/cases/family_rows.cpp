// Rows: walks, jumps and columns over all depths and storages, locks, changes of height.
#include "tests/cases/bitmaps.h"

namespace vn::cases {

namespace {

// Reads or writes part of a row, within the row.
void MoveRow(Case& test, Bitmap& bitmap) {
  const auto row = static_cast<uint32_t>(test.Pick(0, bitmap->Height - 1));
  const auto column = static_cast<uint32_t>(test.Pick(0, bitmap->Width - 1));
  const auto columnByte = column * static_cast<uint32_t>(bitmap->BitsPerPixel) / 8;
  std::vector<uint8_t> bytes(bitmap->BytesPerLine);
  test.random.Fill(bytes.data(), bytes.size());
  const int32_t kind = test.Pick(0, 3);
  const uint32_t limit = bitmap->BytesPerLine - (kind < 2 ? 0 : columnByte);
  const auto count = static_cast<uint32_t>(test.Pick(0, static_cast<int32_t>(limit)));
  test.Note("kind %d, row %u, column %u, count %u", kind, row, column, count);
  int32_t result = 0;
  switch (kind) {
    case 0:
      result = Vn_GetBitmapRow(bitmap, bytes.data(), row, count);
      break;
    case 1:
      result = Vn_PutBitmapRow(bitmap, bytes.data(), row, count);
      break;
    case 2:
      result = Vn_GetBitmapRowCol(bitmap, bytes.data(), row, column, count);
      break;
    case 3:
      result = Vn_PutBitmapRowCol(bitmap, bytes.data(), row, column, count);
      break;
  }
  test.Fold("moved", result);
  test.FoldBytes("bytes", bytes.data(), bytes.size());
}

// A run of neighbouring rows under one lock, and what the position cache says at each.
void WalkRows(Case& test, Bitmap& bitmap) {
  std::vector<uint8_t> bytes(bitmap->BytesPerLine);
  const int32_t step = test.OneOf({-2, -1, 1, 2});
  int32_t row = test.Pick(0, bitmap->Height - 1);
  for (int32_t i = 0; i < 6 && row >= 0 && row < bitmap->Height; ++i, row += step) {
    Vn_GetBitmapRow(bitmap, bytes.data(), static_cast<uint32_t>(row), bitmap->BytesPerLine);
    test.Fold("CurrentRow", bitmap->CurrentRow);
    test.Fold("CurrentOffset", bitmap->CurrentOffset);
    test.FoldBytes("bytes", bytes.data(), bytes.size());
  }
}

void ChangeHeight(Case& test, Bitmap& bitmap) {
  const int32_t before = bitmap->Height;
  const VnStatus status = Vn_ChangeBitmapHeight(bitmap, static_cast<uint32_t>(test.Pick(1, 40)));
  test.Fold("Vn_ChangeBitmapHeight", status);
  // New rows are not cleared.
  if (status == OK && bitmap->Height > before) FillRandom(test, bitmap, before);
}

void Run(Case& test) {
  Bitmap bitmap(test, RandomShape(test, 70, 40));
  for (int32_t i = test.Pick(2, 12); i > 0; --i) {
    const int32_t state = Vn_LockBitmap(bitmap);
    test.Fold("Vn_LockBitmap", state);
    switch (test.Pick(0, 4)) {
      case 0:
        WalkRows(test, bitmap);
        break;
      case 1: {
        // A temporary file is never locked, so only memory refuses.
        const bool memory = (bitmap->Flags & FLAG_IN_MEMORY) != 0;
        test.Fold("locked", memory ? Vn_ChangeBitmapHeight(bitmap, 9) : ERR_INVALID_PARAMETER);
        break;
      }
      default:
        MoveRow(test, bitmap);
        break;
    }
    Vn_UnlockBitmap(bitmap, state);
    if (test.random.Chance(4)) ChangeHeight(test, bitmap);
  }
  FoldRecord(test, bitmap);
  FoldPixels(test, bitmap);
}

const Registration registration({"rows", 3000, 0x5E1090A1AAC20B0Fu, Run});

}  // namespace

}  // namespace vn::cases
