#include "tools/formats/exif_orientation.h"

#include <cstring>

namespace vn::tool {
namespace {

constexpr char kName[] = {'E', 'x', 'i', 'f', 0, 0};

// Numbers of a TIFF structure. What lies outside it reads as 0.
class TiffBytes {
 public:
  TiffBytes(const uint8_t* bytes, size_t size)
      : bytes_(bytes), size_(size), bigEndian_(size > 0 && bytes[0] == 'M') {}

  uint32_t Word(uint64_t at) const { return Number(at, 2); }
  uint32_t Long(uint64_t at) const { return Number(at, 4); }

 private:
  uint32_t Number(uint64_t at, uint32_t count) const {
    if (at + count > size_) return 0;
    uint32_t number = 0;
    for (uint32_t i = 0; i < count; ++i)
      number = number << 8 | bytes_[at + (bigEndian_ ? i : count - 1 - i)];
    return number;
  }

  const uint8_t* bytes_;
  size_t size_;
  bool bigEndian_;
};

}  // namespace

int32_t ExifOrientation(const uint8_t* block, size_t size) {
  constexpr uint32_t kLittle = 0x4949, kBig = 0x4D4D;  // II, MM
  constexpr uint32_t kMagic = 42, kTag = 0x0112, kShort = 3, kEntryBytes = 12;
  if (size < sizeof kName || std::memcmp(block, kName, sizeof kName) != 0) return 1;
  const TiffBytes tiff(block + sizeof kName, size - sizeof kName);
  // The order of bytes, twice the same letter, tells itself in either order.
  if ((tiff.Word(0) != kLittle && tiff.Word(0) != kBig) || tiff.Word(2) != kMagic) return 1;
  const uint64_t directory = tiff.Long(4);
  const uint32_t entries = tiff.Word(directory);
  for (uint32_t i = 0; i < entries; ++i) {
    const uint64_t entry = directory + 2 + uint64_t{i} * kEntryBytes;
    if (tiff.Word(entry) != kTag) continue;
    const uint32_t value = tiff.Word(entry + 8);
    const bool known = tiff.Word(entry + 2) == kShort && value >= 1 && value <= 8;
    return known ? static_cast<int32_t>(value) : 1;
  }
  return 1;
}

}  // namespace vn::tool
