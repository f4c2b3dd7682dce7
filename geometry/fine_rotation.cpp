#include "geometry/fine_rotation.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "color/color_match.h"
#include "geometry/fixed_sine.h"
#include "geometry/pick_pixels.h"
#include "geometry/pixel_tile.h"
#include "kernel/row_position.h"

namespace vn {
namespace {

// Pixels are picked in blocks, so that the source pixels of a block stay in the nearest cache.
constexpr uint32_t kBlockRows = 32;
uint32_t BlockColumns(int32_t bits) { return bits < 8 ? 512 : 256; }
constexpr uint32_t kMostBlockBytes = 256 * 4;

// Tiles of pictures in files are twice as wide as high: the first write of a piece of a row costs
// more than a read. Those for which no memory is asked are square; their box in the source is at
// most this large, at any angle.
constexpr uint32_t kFileTileBytes = 4u << 20;
constexpr uint32_t kSmallEdge = 32;
constexpr uint32_t kSmallBoxEdge = 64;

struct TileSize {
  uint32_t rows, columns;
  uint64_t Bytes(int32_t bits) const { return uint64_t{PixelTile::RowBytes(bits, columns)} * rows; }
};

// The box that holds every source pixel of a tile of the result: its span, a margin for the
// rounding of either end, and the pixels of a byte that the box begins with.
TileSize BoxOf(const InverseWalk& walk, TileSize tile) {
  const auto span = [](int32_t step, uint32_t count) {
    return static_cast<uint64_t>(std::abs(step)) * count;
  };
  const auto edge = [](uint64_t spans) { return static_cast<uint32_t>((spans >> 14) + 8 + 8); };
  return {edge(span(walk.stepY(), tile.columns) + span(walk.stepX(), tile.rows)),
          edge(span(walk.stepX(), tile.columns) + span(walk.stepY(), tile.rows))};
}

// The largest tile that the bytes of its box allow, and no higher than what is there to turn.
TileSize FileTile(const InverseWalk& walk, int32_t bits, uint32_t most) {
  TileSize tile = {kBlockRows, 2 * kBlockRows};
  while (tile.rows < most) {
    const TileSize larger = {tile.rows + kBlockRows, tile.columns + 2 * kBlockRows};
    if (BoxOf(walk, larger).Bytes(bits) > kFileTileBytes) break;
    tile = larger;
  }
  return tile;
}

class FineRotation {
 public:
  FineRotation(BitmapHandle* source, BitmapHandle* target, const InverseWalk& walk,
               COLORREF fillColor)
      : source_(source),
        target_(target),
        walk_(walk),
        bits_(source->BitsPerPixel),
        oldWidth_(static_cast<uint32_t>(source->Width)),
        oldHeight_(static_cast<uint32_t>(source->Height)),
        width_(static_cast<uint32_t>(target->Width)),
        height_(static_cast<uint32_t>(target->Height)),
        pick_(PickerOf(bits_)) {
    FillRowColor(target, fillColor, fill_, BlockColumns(bits_));
    ChooseTiles();
  }

  VnStatus Run(Progress progress) {
    if (!progress.Begin()) return progress.Result();
    for (uint32_t row = 0; row < height_;) {
      const uint32_t rows = std::min(tileRows_, height_ - row);
      for (uint32_t column = 0; column < width_;) {
        const uint32_t columns = std::min(tileColumns_, width_ - column);
        TurnTile(row, column, rows, columns);
        column += columns;
      }
      for (uint32_t i = 0; i < rows; ++i) {
        if (!progress.Step()) return progress.Result();
      }
      row += rows;
    }
    return OK;
  }

 private:
  void ChooseTiles() {
    tileRows_ = kBlockRows;
    tileColumns_ = width_;
    if (source_.InMemory() && target_.InMemory()) return;
    const TileSize tile = FileTile(walk_, bits_, std::max(width_, height_));
    tileRows_ = tile.rows;
    tileColumns_ = tile.columns;
    if ((source_.InMemory() || source_.Allocate(BoxOf(walk_, tile).Bytes(bits_))) &&
        (target_.InMemory() || target_.Allocate(tile.Bytes(bits_)))) {
      return;
    }
    tileRows_ = tileColumns_ = kSmallEdge;
    source_.UseBuffer(smallBox_);
    target_.UseBuffer(smallTile_);
  }

  void TurnTile(uint32_t row, uint32_t column, uint32_t rows, uint32_t columns) {
    target_.Place(row, column, rows, columns);
    tileRow_ = row;
    tileColumn_ = column;
    PlaceSource(row, column, rows, columns);
    for (uint32_t done = 0; done < rows; done += kBlockRows)
      TurnBand(row + done, std::min(kBlockRows, rows - done), columns);
    target_.Write();
  }

  // The part of the source that a tile needs: all of it where it lies in memory.
  void PlaceSource(uint32_t row, uint32_t column, uint32_t rows, uint32_t columns) {
    boxColumn_ = boxRow_ = 0;
    if (source_.InMemory()) return source_.Place(0, 0, oldHeight_, oldWidth_);
    int64_t left = INT64_MAX, right = INT64_MIN, top = INT64_MAX, bottom = INT64_MIN;
    for (const uint32_t r : {row, row + rows - 1}) {
      const WalkRow line = walk_.Row(r);
      for (const uint32_t c : {column, column + columns - 1}) {
        const int64_t x = walk_.ColumnAt(line, c).whole, y = walk_.RowAt(line, c).whole;
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
      }
    }
    // Rounding, which differs along a line and from line to line, moves a pixel by one at most.
    const auto clamp = [](int64_t value, uint32_t size) {
      return static_cast<uint32_t>(std::clamp<int64_t>(value, 0, size));
    };
    boxColumn_ = clamp(left - 1, oldWidth_) & ~7u;
    boxRow_ = clamp(top - 1, oldHeight_);
    const uint32_t endColumn = clamp(right + 2, oldWidth_), endRow = clamp(bottom + 2, oldHeight_);
    if (boxColumn_ >= endColumn || boxRow_ >= endRow) return;  // nothing there to be picked
    source_.Place(boxRow_, boxColumn_, endRow - boxRow_, endColumn - boxColumn_);
    source_.Read();
  }

  // Rows of the tile, block by block.
  void TurnBand(uint32_t row, uint32_t rows, uint32_t columns) {
    for (uint32_t i = 0; i < rows; ++i)
      lines_[i] = walk_.Row(row + i);
    const uint32_t blockColumns = BlockColumns(bits_);
    for (uint32_t done = 0; done < columns; done += blockColumns) {
      const uint32_t count = std::min(blockColumns, columns - done);
      for (uint32_t i = 0; i < rows; ++i) {
        Prefetch(lines_[i], tileColumn_ + std::min(done + blockColumns, columns),
                 tileColumn_ + columns);
        uint8_t* at = target_.Row(row + i - tileRow_) + ByteOfColumn(bits_, done);
        TurnPiece(lines_[i], tileColumn_ + done, count, at);
      }
    }
  }

  // Asks for the source pixels of the next block's row. A walk leaves every source row after a few
  // cache lines, so that the processor does not see by itself where it goes.
  void Prefetch(const WalkRow& line, uint32_t column, uint32_t end) const {
    const int64_t first = std::max<int64_t>(column, line.inside.first);
    const int64_t last =
        std::min<int64_t>(std::min(column + BlockColumns(bits_), end), line.inside.end);
    if (first >= last) return;
    const int64_t apart = 384 / bits_;  // pixels, in less than a line of 64 bytes
    const WalkCoordinate x = walk_.ColumnAt(line, first), y = walk_.RowAt(line, first);
    int64_t column14 = x.whole * kFixedOne, row14 = y.whole * kFixedOne;
    for (int64_t at = first; at < last; at += apart) {
      const uint8_t* row = source_.Row(0) + ((row14 >> 14) - boxRow_) * source_.Stride();
      __builtin_prefetch(row + ((column14 >> 14) - boxColumn_) * bits_ / 8, 0, 2);
      column14 += apart * walk_.stepX();
      row14 += apart * walk_.stepY();
    }
  }

  // `count` pixels of a row from `column` on, to be written from the start of `at` on.
  void TurnPiece(const WalkRow& line, uint32_t column, uint32_t count, uint8_t* at) {
    const int64_t begin = column, end = begin + count;
    const int64_t first = std::clamp(line.inside.first, begin, end);
    const int64_t last = std::clamp(line.inside.end, first, end);
    FillOutside(at, static_cast<uint32_t>(first - begin), static_cast<uint32_t>(last - begin),
                count);
    for (int64_t from = first; from < last;) {
      // A coordinate that lags stands still.
      const bool lagsX = from < line.lagX, lagsY = from < line.lagY;
      int64_t to = last;
      if (lagsX) to = std::min(to, line.lagX);
      if (lagsY) to = std::min(to, line.lagY);
      PickPiece(line, from, to - from, lagsX, lagsY, at, static_cast<size_t>(from - begin));
      from = to;
    }
  }

  void PickPiece(const WalkRow& line, int64_t from, int64_t count, bool lagsX, bool lagsY,
                 uint8_t* at, size_t place) {
    const WalkCoordinate column = walk_.ColumnAt(line, from), row = walk_.RowAt(line, from);
    const int32_t stepX = lagsX ? 0 : walk_.stepX(), stepY = lagsY ? 0 : walk_.stepY();
    const int64_t x = lagsX ? column.whole * kFixedOne : column.Position(stepX);
    const int64_t y = lagsY ? row.whole * kFixedOne : row.Position(stepY);
    // Counted from a byte before all of them, the columns are small numbers.
    const int64_t base = (std::min(x, x + (count - 1) * stepX) >> 14) & ~int64_t{7};
    const int64_t baseRow = y >> 14;
    PickLine pick;
    pick.stride = source_.Stride();
    pick.origin = source_.Row(0) + (baseRow - boxRow_) * pick.stride +
                  ByteOfColumn(bits_, static_cast<uint32_t>(base - boxColumn_));
    pick.x = static_cast<int32_t>(x - base * kFixedOne);
    pick.y = static_cast<int32_t>(y - baseRow * kFixedOne);
    pick.stepX = stepX;
    pick.stepY = stepY;
    pick_(pick, at, place, static_cast<size_t>(count));
  }

  // All of a piece but the pixels from `first` to `last`. Where pixels share bytes these are filled
  // whole, and the rest behind a row's last pixel becomes 0.
  void FillOutside(uint8_t* at, uint32_t first, uint32_t last, uint32_t count) const {
    if (bits_ >= 8) {
      const uint32_t bytes = static_cast<uint32_t>(bits_) / 8;
      std::memcpy(at, fill_, first * bytes);
      std::memcpy(at + last * bytes, fill_, (count - last) * bytes);
      return;
    }
    const uint32_t bytes = PixelTile::RowBytes(bits_, count);
    const uint32_t rest = bytes * 8 - count * static_cast<uint32_t>(bits_);
    if (first == 0 && last == count && rest == 0) return;
    std::memcpy(at, fill_, bytes);
    at[bytes - 1] = static_cast<uint8_t>(at[bytes - 1] & 0xFFu << rest);
  }

  PixelTile source_, target_;
  const InverseWalk& walk_;
  int32_t bits_;
  uint32_t oldWidth_, oldHeight_, width_, height_;
  Picker pick_;
  uint32_t tileRows_, tileColumns_;
  uint32_t tileRow_ = 0, tileColumn_ = 0;  // the tile at work
  uint32_t boxRow_ = 0, boxColumn_ = 0;    // where the source's part begins
  WalkRow lines_[kBlockRows];
  uint8_t fill_[kMostBlockBytes];
  uint8_t smallBox_[kSmallBoxEdge * kSmallBoxEdge * 4] = {};
  uint8_t smallTile_[kSmallEdge * kSmallEdge * 4] = {};
};

}  // namespace

VnStatus TurnByWalk(BitmapHandle* source, BitmapHandle* target, const InverseWalk& walk,
                    COLORREF fillColor, Progress progress) {
  ClearRowEnds(target);
  return FineRotation(source, target, walk, fillColor).Run(progress);
}

}  // namespace vn
