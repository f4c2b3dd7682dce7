#include "tools/formats/png_data.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

namespace vn::tool {
namespace {

constexpr size_t kPixel = 3;              // bytes
constexpr size_t kGroupBytes = 64 << 10;  // more than deflate looks back
constexpr size_t kChunkBytes = 64 << 10;
// Samples come apart as long as they say the same, so that they cost little of the whole.
constexpr int32_t kMostApart = 64;

// Nearly the size of the highest level in a third of its time.
constexpr int kUsualLevel = 5;
constexpr DeflateWay kRunsAlone = {1, Z_RLE};

DeflateWay Matches(int level, bool filtered) {
  return {level, filtered ? Z_FILTERED : Z_DEFAULT_STRATEGY};
}

// The file format's numbers.
enum Filter : uint8_t { kNone, kLeft, kUp };

uint32_t Size(uint8_t difference) {
  return static_cast<uint32_t>(std::abs(static_cast<int8_t>(difference)));
}

size_t DeflatedSize(const std::vector<uint8_t>& bytes, const DeflateWay& way) {
  z_stream stream{};
  if (deflateInit2(&stream, way.level, Z_DEFLATED, MAX_WBITS, MAX_MEM_LEVEL, way.strategy) != Z_OK)
    throw std::bad_alloc();
  std::array<uint8_t, 4096> out;
  stream.next_in = const_cast<uint8_t*>(bytes.data());
  stream.avail_in = static_cast<uInt>(bytes.size());
  do {
    stream.next_out = out.data();
    stream.avail_out = out.size();
  } while (deflate(&stream, Z_FINISH) == Z_OK);
  const size_t size = stream.total_out;
  deflateEnd(&stream);
  return size;
}

}  // namespace

PngData::PngData(size_t rowBytes, bool colors, std::optional<int32_t> level, Chunks* chunks)
    : rowBytes_(rowBytes),
      colors_(colors),
      chunks_(chunks),
      way_(Matches(level.value_or(kUsualLevel), colors)),
      choose_(!level),
      row_(colors ? kPixel + rowBytes : 0),
      above_(row_.size()),
      chunk_(kChunkBytes) {
  group_.reserve(kGroupBytes + 1 + rowBytes);
  if (deflateInit2(&stream_, way_.level, Z_DEFLATED, MAX_WBITS, MAX_MEM_LEVEL, way_.strategy) !=
      Z_OK)
    throw std::bad_alloc();
  stream_.next_out = chunk_.data();
  stream_.avail_out = static_cast<uInt>(chunk_.size());
}

void PngData::WriteRow(const uint8_t* row) {
  if (colors_) {
    TakeColors(row);
    AppendFiltered();
  } else {
    group_.push_back(kNone);
    group_.insert(group_.end(), row, row + rowBytes_);
  }
  if (group_.size() >= kGroupBytes) Deflate(Z_NO_FLUSH);
}

void PngData::TakeColors(const uint8_t* row) {
  std::swap(row_, above_);
  uint8_t* to = row_.data() + kPixel;
  for (const uint8_t* end = row + rowBytes_; row != end; row += kPixel, to += kPixel) {
    to[0] = row[2];
    to[1] = row[1];
    to[2] = row[0];
  }
}

// By the filter whose differences are the smallest in all.
void PngData::AppendFiltered() {
  const uint8_t* const at = row_.data() + kPixel;
  const uint8_t* const left = row_.data();
  const uint8_t* const up = above_.data() + kPixel;
  uint32_t sums[3] = {};
  for (size_t i = 0; i < rowBytes_; ++i) {
    sums[kNone] += Size(at[i]);
    sums[kLeft] += Size(static_cast<uint8_t>(at[i] - left[i]));
    sums[kUp] += Size(static_cast<uint8_t>(at[i] - up[i]));
  }
  const auto filter = static_cast<uint8_t>(std::min_element(sums, sums + 3) - sums);
  group_.push_back(filter);
  const size_t start = group_.size();
  group_.resize(start + rowBytes_);
  uint8_t* const to = group_.data() + start;
  if (filter == kNone) {
    std::copy_n(at, rowBytes_, to);
    return;
  }
  const uint8_t* const from = filter == kLeft ? left : up;
  for (size_t i = 0; i < rowBytes_; ++i)
    to[i] = static_cast<uint8_t>(at[i] - from[i]);
}

// Matches are looked for where they make the data smaller by more than a fiftieth: it takes four
// times as long.
void PngData::ChooseWay() {
  if (--groups_ > 0) return;
  const DeflateWay matches = Matches(kUsualLevel, colors_);
  const size_t runs = DeflatedSize(group_, kRunsAlone), matched = DeflatedSize(group_, matches);
  const DeflateWay& better = runs <= matched + matched / 50 ? kRunsAlone : matches;
  apart_ = better == way_ ? std::min(2 * apart_, kMostApart) : 1;
  groups_ = apart_;
  TakeWay(better);
}

void PngData::TakeWay(const DeflateWay& way) {
  if (way == way_) return;
  way_ = way;
  while (deflateParams(&stream_, way.level, way.strategy) == Z_BUF_ERROR)
    EmitChunk();
}

void PngData::Deflate(int flush) {
  if (choose_ && !group_.empty()) ChooseWay();
  stream_.next_in = group_.data();
  stream_.avail_in = static_cast<uInt>(group_.size());
  int result = Z_OK;
  do {
    if (stream_.avail_out == 0) EmitChunk();
    result = deflate(&stream_, flush);
  } while (stream_.avail_out == 0 || (flush == Z_FINISH && result == Z_OK));
  group_.clear();
  if (flush == Z_FINISH) EmitChunk();
}

void PngData::EmitChunk() {
  const size_t count = chunk_.size() - stream_.avail_out;
  stream_.next_out = chunk_.data();
  stream_.avail_out = static_cast<uInt>(chunk_.size());
  if (count > 0) chunks_->WriteData(chunk_.data(), count);
}

}  // namespace vn::tool
