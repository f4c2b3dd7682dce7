#include "tools/formats/bmp_header.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

constexpr uint32_t kCoreHeaderBytes = 12;
constexpr uint32_t kMasksAt = 40;      // red, green, blue, then opacity, in long headers
constexpr uint32_t kOpacityFrom = 56;  // headers of this length have the fourth one
constexpr uint32_t kMostHeaderBytes = 1024;

enum Compression : uint32_t { kRows = 0, kRuns8 = 1, kRuns4 = 2, kFields = 3, kFieldsOpacity = 6 };

// The file's head as it is read: a position, and little-endian numbers from it.
class Head {
 public:
  explicit Head(InputFile& file) : file_(file) {}

  void Read(void* to, size_t count) {
    if (!file_.Read(to, count)) throw Failure(file_.Path() + ": " + file_.ErrorText());
    position_ += count;
  }
  // Forward only, since a pipe cannot do else.
  void SkipTo(uint64_t position) {
    uint8_t unused[4096];
    while (position_ < position)
      Read(unused, static_cast<size_t>(std::min<uint64_t>(position - position_, sizeof unused)));
  }
  uint64_t Position() const { return position_; }
  [[noreturn]] void Fail(const std::string& text) const {
    throw Failure(file_.Path() + ": " + text);
  }

 private:
  InputFile& file_;
  uint64_t position_ = 0;
};

uint32_t Word(const uint8_t* at) { return LoadWord(at); }
uint32_t DoubleWord(const uint8_t* at) {
  uint32_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

// The fields of both kinds of header.
struct Fields {
  uint32_t bytes = 0, planes = 0, bits = 0, compression = 0, colors = 0;
  int64_t width = 0, height = 0;
  int32_t xPerMetre = 0, yPerMetre = 0;
  uint32_t masks[4] = {};
};

Fields ReadFields(Head& head) {
  uint8_t raw[kMostHeaderBytes] = {};
  head.Read(raw, 4);
  Fields fields;
  fields.bytes = DoubleWord(raw);
  if (fields.bytes != kCoreHeaderBytes &&
      (fields.bytes < kBmpInfoHeaderBytes || fields.bytes > kMostHeaderBytes)) {
    head.Fail("not a BMP file");
  }
  head.Read(raw + 4, fields.bytes - 4);
  if (fields.bytes == kCoreHeaderBytes) {
    fields.width = Word(raw + 4);
    fields.height = Word(raw + 6);
    fields.planes = Word(raw + 8);
    fields.bits = Word(raw + 10);
    return fields;
  }
  fields.width = static_cast<int32_t>(DoubleWord(raw + 4));
  fields.height = static_cast<int32_t>(DoubleWord(raw + 8));
  fields.planes = Word(raw + 12);
  fields.bits = Word(raw + 14);
  fields.compression = DoubleWord(raw + 16);
  fields.xPerMetre = static_cast<int32_t>(DoubleWord(raw + 24));
  fields.yPerMetre = static_cast<int32_t>(DoubleWord(raw + 28));
  fields.colors = DoubleWord(raw + 32);
  if (fields.compression != kFields && fields.compression != kFieldsOpacity) return fields;
  // The shortest header has its masks behind it.
  const uint32_t masks = fields.compression == kFields ? 3 : 4;
  if (fields.bytes == kBmpInfoHeaderBytes) head.Read(raw + kMasksAt, masks * 4);
  const uint32_t present = fields.bytes >= kOpacityFrom ? 4 : masks;
  for (uint32_t i = 0; i < present; ++i)
    fields.masks[i] = DoubleWord(raw + kMasksAt + 4 * i);
  return fields;
}

bool IsPossible(const Fields& fields) {
  switch (fields.compression) {
    case kRows:
      return fields.bits == 1 || fields.bits == 4 || fields.bits == 8 || fields.bits == 16 ||
             fields.bits == 24 || fields.bits == 32;
    case kRuns8:
      return fields.bits == 8 && fields.height > 0;
    case kRuns4:
      return fields.bits == 4 && fields.height > 0;
    case kFields:
    case kFieldsOpacity:
      return fields.bits == 16 || fields.bits == 32;
    default:
      return false;
  }
}

// A full table; colours that the file does not tell are black. `rows` is where the file says that
// its rows begin, which no table runs into.
std::vector<RGBQUAD> ReadColors(Head& head, const Fields& fields, uint64_t rows) {
  const uint32_t full = FullColorCount(fields.bits);
  const uint32_t entry = fields.bytes == kCoreHeaderBytes ? 3 : 4;
  uint64_t count = fields.colors ? std::min(fields.colors, full) : full;
  if (rows > head.Position()) count = std::min(count, (rows - head.Position()) / entry);
  uint8_t raw[256 * 4];
  head.Read(raw, static_cast<size_t>(count * entry));
  std::vector<RGBQUAD> colors(full);
  for (size_t i = 0; i < count; ++i) {
    const uint8_t* at = raw + i * entry;
    colors[i] = {at[0], at[1], at[2], 0};
  }
  return colors;
}

int32_t DotsPerInch(int32_t perMetre) {
  return perMetre > 0 ? static_cast<int32_t>((int64_t{perMetre} * 254 + 5000) / 10000) : 0;
}

}  // namespace

BmpField BmpField::OfMask(const std::string& path, uint32_t mask) {
  if (mask == 0) return {};
  BmpField field;
  field.shift = static_cast<uint32_t>(std::countr_zero(mask));
  field.width = static_cast<uint32_t>(std::popcount(mask));
  if (mask >> field.shift != 0xFFFFFFFFu >> (32 - field.width)) {
    throw Failure(path + ": the bits of a colour lie apart");
  }
  return field;
}

uint32_t BmpField::Of(uint32_t pixel) const {
  if (width == 0) return 0;
  const uint32_t value = pixel >> shift & (0xFFFFFFFFu >> (32 - width));
  if (width >= 8) return value >> (width - 8);
  uint32_t wide = value << (8 - width);
  for (uint32_t filled = width; filled < 8; filled += filled)
    wide |= wide >> filled;
  return wide;
}

BmpHeader::BmpHeader(InputFile& file) {
  Head head(file);
  uint8_t start[kBmpFileHeaderBytes];
  head.Read(start, sizeof start);
  const uint64_t rows = DoubleWord(start + 10);
  const Fields fields = ReadFields(head);
  if (fields.planes != 1 || !IsPossible(fields)) head.Fail("a kind of BMP file that is not known");
  bits = fields.bits;
  topDown = fields.height < 0;
  runs = fields.compression == kRuns8 || fields.compression == kRuns4;
  info.bits = bits <= 8 ? static_cast<int32_t>(bits) : 24;
  info.facts.format = "BMP";
  info.facts.model = bits <= 8 ? "palette" : "RGB";
  const int64_t height = topDown ? -fields.height : fields.height;
  RequirePossibleSize(file.Path(), fields.width, height, info.bits);
  info.width = static_cast<int32_t>(fields.width);
  info.height = static_cast<int32_t>(height);
  info.xDotsPerInch = DotsPerInch(fields.xPerMetre);
  info.yDotsPerInch = DotsPerInch(fields.yPerMetre);
  if (bits <= 8) info.colors = ReadColors(head, fields, rows);
  uint32_t masks[4] = {0xFF0000, 0x00FF00, 0x0000FF, 0};
  if (bits == 16) masks[0] = 0x7C00, masks[1] = 0x03E0, masks[2] = 0x001F;
  if (fields.compression == kFields || fields.compression == kFieldsOpacity) {
    std::copy(std::begin(fields.masks), std::end(fields.masks), masks);
  }
  red = BmpField::OfMask(file.Path(), masks[0]);
  green = BmpField::OfMask(file.Path(), masks[1]);
  blue = BmpField::OfMask(file.Path(), masks[2]);
  opacity = BmpField::OfMask(file.Path(), masks[3]);
  info.facts.alpha = opacity.width > 0;
  info.facts.sampleBits =
      bits <= 8 ? info.bits : static_cast<int32_t>(std::max({red.width, green.width, blue.width}));
  // Colours of a deep picture, and whatever else may lie there.
  const uint64_t table = bits > 8 ? uint64_t{fields.colors} * 4 : 0;
  head.SkipTo(rows >= head.Position() ? rows : head.Position() + table);
}

}  // namespace vn::tool
