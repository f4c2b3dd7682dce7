#include "color/row_converter.h"

#include <algorithm>
#include <cstring>

#include "color/color_match.h"
#include "color/fixed_palettes.h"
#include "color/index_rows.h"
#include "kernel/pixel_format.h"

namespace vn {
namespace {

bool IsDepthCode(uint32_t code) {
  return code == BPP_GRAY || WithDepth(static_cast<int32_t>(code), [](auto) {});
}

// Settles one side. False when it names no format.
bool Settle(RowFormat* format) {
  if (!IsDepthCode(format->code)) return false;
  if (format->IsColor()) return format->order == ORDER_RGB || format->order == ORDER_BGR;
  if (format->IsGray()) {
    format->colors = nullptr;
  } else if (!format->colors) {
    format->colors = Vn_IntGetFixedPalette(format->code);
  }
  return true;
}

// Whether an index is its own gray.
bool IsGrayRamp(const RowFormat& format) {
  return format.code == 8 &&
         std::memcmp(format.colors, GrayRamp256.data(), sizeof GrayRamp256) == 0;
}

size_t WholeBytes(size_t pixels, int32_t bits) { return pixels * static_cast<size_t>(bits) / 8; }

}  // namespace

bool RowConverter::KeepsPixels() const {
  if (from_.code != to_.code) return false;
  if (from_.IsColor()) return from_.order == to_.order;
  return from_.IsGray() ||
         std::memcmp(from_.colors, to_.colors, FullColorCount(from_.code) * sizeof(RGBQUAD)) == 0;
}

bool RowConverter::Prepare(RowFormat from, RowFormat to, size_t expected) {
  if (!Settle(&from) || !Settle(&to)) return false;
  from_ = from;
  to_ = to;
  if (KeepsPixels()) {
    loop_ = Keep;
  } else if (to.IsColor()) {
    const bool swap = from.IsColor() ? from.order != to.order : to.order != ORDER_BGR;
    const int32_t bits = from.IsGray() || IsGrayRamp(from) ? 0 : from.StoredBits();
    colorRow_ = SelectColorRow(bits, to.StoredBits(), swap);
    loop_ = Colors;
  } else if (!from.IsColor()) {
    PrepareMap();
  } else if (to.IsGray()) {
    grayRow_ = SelectGrayRow(from.StoredBits(), from.order);
    loop_ = Grays;
  } else {
    PrepareSearch(expected);
  }
  return true;
}

// In blocks that start at whole bytes, from the end where pixels grow, so that nothing is overwritten
// that is still to be read.
void RowConverter::ConvertInPlace(uint8_t* row, size_t width) {
  if (loop_ == Keep) return;
  const auto from = static_cast<uint64_t>(from_.StoredBits());
  const auto to = static_cast<uint64_t>(to_.StoredBits());
  if (to > from) {
    // Few blocks: memory likes to be walked upward.
    for (size_t end = width; end;) {
      const size_t first = end > kMostCopied ? (end - kMostCopied + 7) / 8 * 8 : 0;
      ConvertCopied(row, first, end);
      end = first;
    }
    return;
  }
  // A block where pixels do not lie where they go needs no copy, but the first ones are short.
  constexpr size_t kCopied = 2048, kLeastApart = 512;
  for (size_t first = 0; first < width;) {
    auto end = static_cast<size_t>(std::min<uint64_t>(first * from / to / 8 * 8, width));
    if (end >= first + kLeastApart) {
      Convert(row + WholeBytes(first, from_.StoredBits()),
              row + WholeBytes(first, to_.StoredBits()), end - first);
    } else {
      end = std::min(first + kCopied, width);
      ConvertCopied(row, first, end);
    }
    first = end;
  }
}

void RowConverter::ConvertCopied(uint8_t* row, size_t first, size_t end) {
  const int32_t bits = from_.StoredBits();
  const size_t start = WholeBytes(first, bits);
  alignas(32) uint8_t source[kMostCopied * 4];
  std::memcpy(source, row + start, ((end - first) * static_cast<size_t>(bits) + 7) / 8);
  Convert(source, row + WholeBytes(first, to_.StoredBits()), end - first);
}

void RowConverter::Keep(RowConverter* self, const uint8_t* source, uint8_t* target, size_t width) {
  const int32_t bits = self->from_.StoredBits();
  const size_t whole = WholeBytes(width, bits);
  std::memcpy(target, source, whole);
  const auto rest = static_cast<unsigned>(width * static_cast<size_t>(bits) % 8);
  if (!rest) return;
  const uint32_t behind = 0xFFu >> rest;
  target[whole] = static_cast<uint8_t>((source[whole] & ~behind) | (target[whole] & behind));
}

void RowConverter::Colors(RowConverter* self, const uint8_t* source, uint8_t* target,
                          size_t width) {
  self->colorRow_(source, target, width, self->from_.colors);
}

void RowConverter::Grays(RowConverter* self, const uint8_t* source, uint8_t* target, size_t width) {
  self->grayRow_(source, target, width, nullptr);
}

// Indexes or grays to indexes or grays.
template <int From, int To>
void RowConverter::Map(RowConverter* self, const uint8_t* source, uint8_t* target, size_t width) {
  const uint8_t* const map = self->map_;
  WriteIndexes<To>(target, width, [=](size_t x) { return map[IndexReader<From>::Get(source, x)]; });
}

void RowConverter::PrepareMap() {
  const auto count = [](const RowFormat& format) {
    return FullColorCount(static_cast<uint32_t>(format.StoredBits()));
  };
  BuildColorMap(from_.colors, count(from_), to_.colors, count(to_), map_);
  WithDepth(from_.StoredBits(), [&](auto from) {
    WithDepth(to_.StoredBits(), [&](auto to) {
      if constexpr (from <= 8 && to <= 8) loop_ = Map<from, to>;
    });
  });
}

template <int From, uint32_t Order, int To>
void RowConverter::Search(RowConverter* self, const uint8_t* source, uint8_t* target,
                          size_t width) {
  WriteIndexes<To>(target, width, [=](size_t x) {
    const Rgb color = ColorReader<From, Order>::Get(source, x);
    if constexpr (To == 1) {
      return self->pair_->Find(color);
    } else {
      return self->search_->Find(color);
    }
  });
}

void RowConverter::PrepareSearch(size_t expected) {
  if (to_.code == 1) {
    pair_.emplace(to_.colors);
  } else {
    search_.emplace(to_.colors, FullColorCount(to_.code), expected);
  }
  WithDepth(from_.StoredBits(), [&](auto from) {
    WithDepth(to_.StoredBits(), [&](auto to) {
      if constexpr (from > 8 && to <= 8) {
        loop_ =
            from_.order == ORDER_BGR ? Search<from, ORDER_BGR, to> : Search<from, ORDER_RGB, to>;
      }
    });
  });
}

}  // namespace vn
