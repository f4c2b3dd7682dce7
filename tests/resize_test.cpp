// Scaling by stream, into a bitmap and of a bitmap, against slow models.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/bitmaps.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

size_t RowBytes(size_t width, int32_t bits) {
  return (width * static_cast<size_t>(bits) + 31) / 32 * 4;
}

size_t SourceOf(size_t d, size_t oldSize, size_t newSize) { return d * oldSize / newSize; }

// One streamed resize.
class Stream {
 public:
  Stream(int32_t oldWidth, int32_t oldHeight, int32_t newWidth, int32_t newHeight) {
    EXPECT_EQ(Vn_StartResize(oldWidth, oldHeight, newWidth, newHeight, &state_), OK);
  }
  ~Stream() { EXPECT_EQ(Vn_StopResize(state_), OK); }
  uint32_t Row(Bytes* buffer, uint32_t row, int32_t bits) {
    uint32_t width = 0, count = ~0u;
    const uint32_t result = Vn_Resize(buffer->data(), row, bits, &width, &count, state_);
    EXPECT_EQ(result, count);
    lastWidth_ = width;
    return result;
  }
  uint32_t lastWidth() const { return lastWidth_; }

 private:
  ResizeState* state_ = nullptr;
  uint32_t lastWidth_ = 0;
};

// What a streamed row looks like, all bits of it: the scaled pixels, and at 1 and 4 bits the old
// bits that shine through. `old` is the buffer before.
Bytes StreamedRow(const Bytes& old, int32_t bits, size_t oldWidth, size_t newWidth) {
  Bytes row = old;
  const auto source = [&](size_t d) {
    return PixelBits(old, SourceOf(d, oldWidth, newWidth), bits);
  };
  if (bits >= 8 || oldWidth == newWidth) {
    for (size_t d = 0; d < newWidth; ++d)
      SetPixelBits(&row, d, bits, source(d));
  } else if (oldWidth < newWidth) {
    const size_t perByte = 8 / static_cast<size_t>(bits);
    const size_t lastByte = newWidth / perByte;
    const bool shared = lastByte == oldWidth / perByte;
    for (size_t d = 0; d < newWidth; ++d) {
      // At 4 bits only an odd last pixel meets its old byte.
      const bool over = shared && d / perByte == lastByte;
      SetPixelBits(&row, d, bits, source(d) | (over ? PixelBits(old, d, bits) : 0));
    }
    if (!shared) {
      for (size_t d = newWidth; d % perByte; ++d)
        SetPixelBits(&row, d, bits, 0);
    }
  } else if (bits == 1) {
    for (size_t d = 0; d < newWidth; ++d)
      SetPixelBits(&row, d, 1, source(d));
  } else {
    for (size_t d = 0; d < newWidth; ++d) {
      const size_t p = SourceOf(d, oldWidth, newWidth);
      const uint32_t now = PixelBits(row, p, 4);
      if (p / 2 != d / 2) {
        const bool left = d % 2 == 0;  // a left pixel clears its neighbour, a right one is ORed in
        SetPixelBits(&row, d, 4, left ? now : PixelBits(row, d, 4) | now);
        if (left) SetPixelBits(&row, d + 1, 4, 0);
      } else if (p != d) {  // the right pixel of the byte onto the left one
        SetPixelBits(&row, d, 4, PixelBits(row, d, 4) | now);
        SetPixelBits(&row, p, 4, 0);
      }
    }
  }
  return row;
}

TEST(StreamedResize, RowsAreAsTheSlowModelMakesThem) {
  Random random(31);
  for (int32_t i = 0; i < 3000; ++i) {
    const int32_t bits = kDepths[random.Between(0, 5)];
    const int32_t oldWidth = random.Between(1, 40), newWidth = random.Between(1, 40);
    SCOPED_TRACE(Told(bits, "bits,", oldWidth, "to", newWidth));
    Stream stream(oldWidth, 3, newWidth, 3);
    Bytes buffer(RowBytes(static_cast<size_t>(std::max(oldWidth, newWidth)), bits));
    random.Fill(buffer.data(), buffer.size());
    const Bytes expected = StreamedRow(buffer, bits, oldWidth, newWidth);
    ASSERT_EQ(stream.Row(&buffer, 0, bits), 1u);
    ASSERT_EQ(stream.lastWidth(), static_cast<uint32_t>(newWidth));
    ASSERT_EQ(buffer, expected);
  }
}

// In rising order, and after a jump, a row yields the destination rows of its own cell; in falling
// order those of the cell before it.
TEST(StreamedResize, CountsFollowRowsInAnyOrder) {
  Random random(33);
  for (int32_t i = 0; i < 300; ++i) {
    const int32_t height = random.Between(1, 20), newHeight = random.Between(1, 45);
    // Destination rows of all cells above; rounded down below 0 as well.
    const auto before = [&](int32_t row) {
      return (row * newHeight + height * newHeight) / height - newHeight;
    };
    Stream stream(9, height, 5, newHeight);
    Bytes buffer(12);
    int32_t last = -1;
    for (int32_t row = random.Between(0, height - 1), n = 0; n < 40; ++n) {
      const int32_t cell = last == row + 1 ? row - 1 : row;
      ASSERT_EQ(static_cast<int32_t>(stream.Row(&buffer, row, 8)), before(cell + 1) - before(cell))
          << height << " to " << newHeight << ", row " << last << " then " << row;
      ASSERT_EQ(stream.lastWidth(), 5u);
      last = row;
      const int32_t way = random.Between(0, 7);
      row = way < 3 ? row + 1 : way < 6 ? row - 1 : random.Between(0, height - 1);
      row = std::clamp(row, 0, height - 1);
    }
  }
}

// Each destination pixel is the first source pixel of its cell; opposite row orders turn rows over.
Pixels Resized(BitmapHandle* source, BitmapHandle* result) {
  const Pixels pixels = StoredPixels(source);
  const auto width = static_cast<size_t>(result->Width);
  const auto height = static_cast<size_t>(result->Height);
  Pixels expected(height);
  for (size_t row = 0; row < height; ++row) {
    const size_t line = source->ViewOrigin != result->ViewOrigin ? height - 1 - row : row;
    for (size_t d = 0; d < width; ++d)
      expected[row].push_back(
          pixels[SourceOf(line, pixels.size(), height)][SourceOf(d, pixels[0].size(), width)]);
  }
  return expected;
}

TEST(ResizeBitmap, PicksTheFirstPixelOfEachCell) {
  WithEachStorage([](const StorageKind& kind) {
    Random random(34);
    for (int32_t i = 0; i < 120; ++i) {
      const int32_t bits = kDepths[i % 6];
      const int32_t width = random.Between(1, i % 3 ? 60 : 250), height = random.Between(1, 30);
      const bool same = random.Chance(8);
      const int32_t newWidth = same ? width : random.Between(1, i % 5 ? 90 : 300);
      const int32_t newHeight = same ? height : random.Between(1, 60);
      RandomBitmap source(random, width, height, bits, kind.request);
      RandomBitmap result(random, newWidth, newHeight, bits, kind.request);
      SCOPED_TRACE(Told(bits, "bits,", width, "x", height, "to", newWidth, "x", newHeight));
      ASSERT_EQ(Vn_ResizeBitmap(source, result), OK);
      ASSERT_EQ(StoredPixels(result), Resized(source, result));
    }
  });
}

TEST(SizeBitmap, RefusesAndKeeps) {
  Random random(36);
  RandomBitmap bitmap(random, 5, 6, 8);
  const Bytes before = ReadAll(bitmap);
  EXPECT_EQ(Vn_SizeBitmap(bitmap, 0, 6), ERR_EMPTY_BITMAP);
  EXPECT_EQ(Vn_SizeBitmap(bitmap, -1, 6), ERR_EMPTY_BITMAP);       // the stride wraps to 0
  EXPECT_EQ(Vn_SizeBitmap(bitmap, 0x20000004, 1), ERR_NO_MEMORY);  // the stride would wrap
  EXPECT_EQ(Vn_SizeBitmap(bitmap, 70000, 70000), ERR_NO_MEMORY);   // the size would
  EXPECT_EQ(ReadAll(bitmap), before);
  EXPECT_NE(bitmap->PaintPalette, nullptr);
}

}  // namespace
}  // namespace vn::test
