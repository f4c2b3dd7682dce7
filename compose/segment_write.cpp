// Writing runs of pixels of a row: the one primitive by which pixel writers honour a region.
#include <algorithm>
#include <cstring>

#include <vncore/vncore.h>
#include "kernel/row_position.h"

namespace {

using namespace vn;

// Bytes of a run, one after the other, into memory.
class MemoryRun {
 public:
  explicit MemoryRun(BitmapHandle* bitmap) : bits_(bitmap->Bits) {}
  VnStatus Begin(uint32_t position) {
    at_ = bits_ + position;
    return OK;
  }
  VnStatus Merge(uint8_t byte, uint32_t mask) {
    *at_ = static_cast<uint8_t>((*at_ & ~mask) | (byte & mask));
    ++at_;
    return OK;
  }
  VnStatus Copy(const uint8_t* bytes, uint32_t count) {
    std::memcpy(at_, bytes, count);
    at_ += count;
    return OK;
  }

 private:
  uint8_t* bits_;
  uint8_t* at_ = nullptr;
};

// The same into the temporary file, whose own position moves along.
class FileRun {
 public:
  explicit FileRun(BitmapHandle* bitmap) : file_(bitmap->Storage) {}
  VnStatus Begin(uint32_t position) {
    return Vn_OsSeek(file_, static_cast<int32_t>(position), 0) == position ? OK : ERR_FILE_SEEK;
  }
  VnStatus Merge(uint8_t byte, uint32_t mask) {
    uint8_t merged;
    if (Vn_OsRead(file_, &merged, 1) != 1) return ERR_FILE_READ;
    if (Vn_OsSeek(file_, -1, 1) == UINT32_MAX) return ERR_FILE_SEEK;
    merged = static_cast<uint8_t>((merged & ~mask) | (byte & mask));
    return Vn_OsWrite(file_, &merged, 1) == 1 ? OK : ERR_FILE_WRITE;
  }
  VnStatus Copy(const uint8_t* bytes, uint32_t count) {
    return Vn_OsWrite(file_, bytes, count) == static_cast<int32_t>(count) ? OK : ERR_FILE_WRITE;
  }

 private:
  HANDLE file_;
};

// Pixels that share a byte: the ends of a run are merged by mask, a set bit being a pixel of the
// run. The masks go by the source columns, which lie in their bytes as the target's do.
template <int Bits, class Run>
VnStatus PutPacked(Run& run, const uint8_t* source, uint32_t left, uint32_t right) {
  constexpr uint32_t kPerByte = 8 / Bits;
  const uint32_t first = 0xFFu >> left % kPerByte * Bits;
  const uint32_t tail = right % kPerByte * Bits;  // bits of the run in its last byte, 0 for all
  const uint32_t last = tail ? 0xFFu << (8 - tail) & 0xFF : 0xFF;
  uint32_t whole = (right + kPerByte - 1) / kPerByte - left / kPerByte;
  source += left / kPerByte;
  if (whole < 2)
    return (first & last) == 0xFF ? run.Copy(source, whole) : run.Merge(*source, first & last);
  if (first != 0xFF) {
    const VnStatus status = run.Merge(*source++, first);
    if (status != OK) return status;
    --whole;
  }
  if (last != 0xFF) --whole;
  if (whole) {
    const VnStatus status = run.Copy(source, whole);
    if (status != OK) return status;
  }
  return last == 0xFF ? static_cast<VnStatus>(OK) : run.Merge(source[whole], last);
}

template <class Run>
VnStatus PutRun(Run& run, int32_t bits, const uint8_t* source, uint32_t left, uint32_t right) {
  if (bits == 1) return PutPacked<1>(run, source, left, right);
  if (bits == 4) return PutPacked<4>(run, source, left, right);
  const uint32_t bytes = static_cast<uint32_t>(bits) / 8;
  return run.Copy(source + static_cast<size_t>(left) * bytes, (right - left) * bytes);
}

template <class Run>
VnStatus PutSegments(BitmapHandle* bitmap, const uint8_t* source, uint32_t row,
                     int32_t columnOffset, const int32_t* segments, int32_t count) {
  Run run(bitmap);
  const uint32_t start = MoveToRow(bitmap, row);
  // Source columns that go to columns of the row.
  const int64_t offset = columnOffset;
  const int64_t low = std::max<int64_t>(-offset, 0), high = ColumnsInRow(*bitmap) - offset;
  for (; count >= 2; count -= 2, segments += 2) {
    const int64_t first = std::max<int64_t>(segments[0], low);
    const int64_t end = std::min<int64_t>(segments[1], high);
    if (first >= end) continue;
    const auto left = static_cast<uint32_t>(first), right = static_cast<uint32_t>(end);
    const uint32_t column = left + static_cast<uint32_t>(columnOffset);
    VnStatus status = run.Begin(start + ByteOfColumn(bitmap->BitsPerPixel, column));
    if (status == OK) status = PutRun(run, bitmap->BitsPerPixel, source, left, right);
    if (status != OK) return status;
  }
  return OK;
}

}  // namespace

VnStatus VN_CALL Vn_PutBitmapRowSegments(BitmapHandle* bitmap, const void* source, uint32_t row,
                                         int32_t columnOffset, const int32_t* segments,
                                         int32_t count) {
  // The rows of a region can outlive those of its bitmap.
  if (count == 0 || static_cast<int64_t>(row) >= bitmap->Height) return OK;
  if (!HasPixels(*bitmap)) return ERR_FILE_SEEK;
  const auto* bytes = static_cast<const uint8_t*>(source);
  const bool inMemory = bitmap->Flags & FLAG_IN_MEMORY;
  if (inMemory && !bitmap->Bits) return ERR_NO_MEMORY;
  return inMemory ? PutSegments<MemoryRun>(bitmap, bytes, row, columnOffset, segments, count)
                  : PutSegments<FileRun>(bitmap, bytes, row, columnOffset, segments, count);
}
