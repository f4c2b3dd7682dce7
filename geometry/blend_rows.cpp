// Rows averaged and interpolated.
#include "geometry/blend_rows.h"

#include <cstring>

#include "geometry/cell_division.h"
#include "kernel/vector.h"

namespace vn {
namespace {

// Writes sums divided by `size`, from byte `first` on.
template <class SumOf>
void WriteQuotients(SumOf sumOf, uint32_t size, uint8_t* target, size_t first, size_t bytes) {
  if (size <= kMostCell) {
    const uint32_t reciprocal = WideReciprocal(size);
    for (size_t i = first; i < bytes; ++i)
      target[i] = static_cast<uint8_t>(static_cast<uint32_t>(sumOf(i)) * reciprocal >> 24);
  } else {
    for (size_t i = first; i < bytes; ++i)
      target[i] = static_cast<uint8_t>(sumOf(i) / size);
  }
}

template <class Sum>
void AddPlain(const uint8_t* row, bool begins, Sum* sums, size_t first, size_t bytes) {
  for (size_t i = first; i < bytes; ++i)
    sums[i] = static_cast<Sum>((begins ? 0 : sums[i]) + row[i]);
}

}  // namespace

RowBlend::RowBlend(size_t bytes)
    : bytes_(bytes), vector_(VNCORE_VECTOR_FORM(nullptr, BlendRowsAvx2)) {}

void RowBlend::operator()(const uint8_t* a, const uint8_t* b, uint32_t step, uint32_t span,
                          uint8_t* target) const {
  if (step == 0) {
    std::memcpy(target, a, bytes_);
    return;
  }
  size_t done = 0;
  if (vector_ && span <= kMostVectorSpan) {
    const NarrowReciprocal by(span);
    done = vector_(a, b, step, span, by.multiplier, by.shift, target, bytes_);
  }
  if (span <= kMostCell) {
    WriteQuotients([=](size_t i) { return (span - step) * a[i] + step * b[i]; }, span, target, done,
                   bytes_);
  } else {
    WriteQuotients([=](size_t i) { return uint64_t{span - step} * a[i] + uint64_t{step} * b[i]; },
                   span, target, 0, bytes_);
  }
}

RowAverage::RowAverage(size_t bytes, uint32_t mostRows)
    : bytes_(bytes),
      vectorAdd_(VNCORE_VECTOR_FORM(nullptr, SumRowAvx2)),
      vectorAverage_(VNCORE_VECTOR_FORM(nullptr, AverageSumsAvx2)) {
  if (mostRows <= kMostCell) {
    narrow_ = ScratchBuffer<uint16_t>(bytes);
  } else {
    wide_ = ScratchBuffer<uint32_t>(bytes);
  }
}

void RowAverage::Add(const uint8_t* row, bool first) {
  if (wide_) {
    AddPlain(row, first, wide_.data(), 0, bytes_);
    return;
  }
  const size_t done = vectorAdd_ ? vectorAdd_(row, first, narrow_.data(), bytes_) : 0;
  AddPlain(row, first, narrow_.data(), done, bytes_);
}

void RowAverage::Write(uint32_t rows, uint8_t* target) const {
  if (wide_) {
    WriteQuotients([sums = wide_.data()](size_t i) { return sums[i]; }, rows, target, 0, bytes_);
    return;
  }
  const uint16_t* const sums = narrow_.data();
  size_t done = 0;
  if (vectorAverage_ && rows > 1 && rows <= kMostNarrowCell) {
    const NarrowReciprocal by(rows);
    done = vectorAverage_(sums, by.multiplier, by.shift, target, bytes_);
  }
  WriteQuotients([sums](size_t i) { return uint32_t{sums[i]}; }, rows, target, done, bytes_);
}

}  // namespace vn
