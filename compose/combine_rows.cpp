#include "compose/combine_rows.h"

#include <cstring>

namespace vn {
namespace {

constexpr size_t kShortestJoined = 5 * kCombineVector;  // bytes of a row
constexpr size_t kWidestGap = kCombineSeam - 2;         // a byte of either row belongs to the seam

class Rows {
 public:
  Rows(const CombineChoice& choice, const CombineSpan& span) : choice_(choice), span_(span) {
    if (!span_.source) {  // something to step along
      span_.source = span_.target;
      span_.sourceStride = span_.targetStride;
    }
    Join();
  }

  void Run() const {
    uint8_t* target = span_.target;
    const uint8_t* source = span_.source;
    if (joined_) return Row(target, source, Stride() * (span_.rows - 1) + span_.bytes);
    for (size_t row = 0; row < span_.rows; ++row) {
      Row(target, source, span_.bytes);
      target += span_.targetStride;
      source += span_.sourceStride;
    }
  }

 private:
  size_t Stride() const { return static_cast<size_t>(span_.targetStride); }
  bool Shifted() const { return choice_.operands.shift != 0; }

  // Makes one row of rows without a gap, and joins those with a small one over a seam. Vectors then
  // cross from row to row: of one bitmap's rows the source's, which lie behind, are read first.
  void Join() {
    const bool alike = span_.rows > 1 && span_.targetStride == span_.sourceStride &&
                       Stride() - span_.bytes <= kWidestGap;
    if (!alike) return;
    if (Stride() == span_.bytes && (span_.firstMask & span_.lastMask) == 0xFF && !Shifted()) {
      span_.bytes *= span_.rows;
      span_.rows = 1;
    } else if (span_.bytes >= kShortestJoined) {
      joined_ = true;
      const size_t gap = Stride() - span_.bytes;
      std::memset(seamMask_, 0xFF, sizeof seamMask_);
      seamMask_[kCombineVector] = span_.lastMask;
      std::memset(seamMask_ + kCombineVector + 1, 0, gap);
      seamMask_[kCombineVector + 1 + gap] = span_.firstMask;
    }
  }

  // One row, or all of them where they are joined.
  void Row(uint8_t* target, const uint8_t* source, size_t bytes) const {
    const bool first = span_.firstMask != 0xFF || (Shifted() && (!span_.readsBefore || bytes == 1));
    const bool last = bytes > 1 && (span_.lastMask != 0xFF || (Shifted() && !span_.readsBehind));
    if (first) Edge(target, source, 0, bytes, span_.firstMask);
    Whole(target + first, source + first, bytes - first - last, span_.bytes - 1 - first);
    if (last) Edge(target, source, bytes - 1, bytes, span_.lastMask);
  }

  // `seam`: where the first one lies, of rows that are joined.
  void Whole(uint8_t* target, const uint8_t* source, size_t bytes, size_t seam) const {
    if (bytes < 4 * choice_.loop.vectorBytes) return Few(target, source, bytes);
    choice_.loop.along(choice_.operands, {target, source, bytes, joined_ ? seam : bytes,
                                          Stride() - span_.bytes + 2, Stride(), seamMask_});
  }

  void Few(uint8_t* target, const uint8_t* source, size_t bytes) const {
    const size_t vector = choice_.loop.vectorBytes;
    for (; bytes >= vector; bytes -= vector, target += vector, source += vector)
      choice_.loop.one(choice_.operands, target, source);
    if (bytes) Part(target, source, bytes);
  }

  // Fewer bytes than a vector has.
  void Part(uint8_t* target, const uint8_t* source, size_t bytes) const {
    alignas(kCombineVector) uint8_t d[kCombineVector] = {};
    alignas(kCombineVector) uint8_t s[kCombineVector + 1] = {};
    std::memcpy(d, target, bytes);
    std::memcpy(s, source, bytes + Shifted());
    choice_.loop.one(choice_.operands, d, s);
    std::memcpy(target, d, bytes);
  }

  // Byte `i` of a row, which is written in part or has a neighbour in the source that must not be
  // read.
  void Edge(uint8_t* row, const uint8_t* sourceRow, size_t i, size_t bytes, uint8_t mask) const {
    const bool readsThis = !Shifted() || i > 0 || span_.readsBefore;
    const bool readsNext = Shifted() && (i + 1 < bytes || span_.readsBehind);
    uint8_t d[kCombineVector] = {row[i]};
    const uint8_t s[kCombineVector + 1] = {readsThis ? sourceRow[i] : uint8_t{0},
                                           readsNext ? sourceRow[i + 1] : uint8_t{0}};
    choice_.loop.one(choice_.operands, d, s);
    row[i] = static_cast<uint8_t>((row[i] & ~mask) | (d[0] & mask));
  }

  const CombineChoice& choice_;
  CombineSpan span_;
  bool joined_ = false;
  uint8_t seamMask_[2 * kCombineVector + kCombineSeam];
};

}  // namespace

void CombineRows(const CombineChoice& choice, const CombineSpan& span) { Rows(choice, span).Run(); }

}  // namespace vn
