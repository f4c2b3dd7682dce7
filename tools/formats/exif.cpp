#include "tools/formats/exif.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vn::tool {
namespace {

constexpr uint16_t kOrientation = 0x0112, kXResolution = 0x011A, kYResolution = 0x011B,
                   kResolutionUnit = 0x0128, kPhoto = 0x8769, kGps = 0x8825, kMakerNote = 0x927C;
// Pixel sizes, and what is found by its place in the block.
constexpr uint16_t kPhotoDropped[] = {kMakerNote, 0xA002, 0xA003, 0xA005};
constexpr uint16_t kText = 2, kShort = 3, kLong = 4, kRational = 5;
constexpr size_t kEntryBytes = 12, kHeaderBytes = 8, kInline = 4;

template <size_t N>
bool Contains(const uint16_t (&tags)[N], uint16_t tag) {
  return std::find(std::begin(tags), std::end(tags), tag) != std::end(tags);
}

// Bytes of a value of a type, and of a number in it; 0 for types that are not known.
size_t ValueBytes(uint16_t type) {
  constexpr size_t kBytes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
  return type < std::size(kBytes) ? kBytes[type] : 0;
}
size_t NumberBytes(uint16_t type) {
  const bool pair = type == kRational || type == 10;
  return pair ? 4 : ValueBytes(type);
}

// A TIFF structure. What lies outside it reads as 0.
class TiffBytes {
 public:
  TiffBytes(const uint8_t* bytes, size_t size)
      : bytes_(bytes), size_(size), bigEndian_(size > 0 && bytes[0] == 'M') {}

  size_t Size() const { return size_; }
  uint16_t Word(uint64_t at) const { return static_cast<uint16_t>(Number(at, 2)); }
  uint32_t Long(uint64_t at) const { return Number(at, 4); }

  // The bytes of `count` values, low bytes first; false where they are not all there.
  bool Values(uint64_t at, uint16_t type, uint32_t count, std::string* value) const {
    const uint64_t bytes = uint64_t{ValueBytes(type)} * count;
    if (bytes == 0 || at > size_ || bytes > size_ - at) return false;
    value->assign(reinterpret_cast<const char*>(bytes_) + at, static_cast<size_t>(bytes));
    const auto step = static_cast<ptrdiff_t>(NumberBytes(type));
    for (auto from = value->begin(); bigEndian_ && from != value->end(); from += step)
      std::reverse(from, from + step);
    return true;
  }

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

// All sound fields of a directory. Together they are not longer than the block, so that none that
// names the same bytes many times grows.
std::vector<ExifField> ReadDirectory(const TiffBytes& tiff, uint64_t directory) {
  std::vector<ExifField> fields;
  size_t left = tiff.Size();
  const uint32_t entries = directory ? tiff.Word(directory) : 0;
  for (uint32_t i = 0; i < entries; ++i) {
    const uint64_t entry = directory + 2 + uint64_t{i} * kEntryBytes;
    ExifField field{tiff.Word(entry), tiff.Word(entry + 2), tiff.Long(entry + 4), {}};
    const uint64_t bytes = uint64_t{ValueBytes(field.type)} * field.count;
    const uint64_t at = bytes <= kInline ? entry + 8 : tiff.Long(entry + 8);
    if (bytes > left || !tiff.Values(at, field.type, field.count, &field.value)) continue;
    left -= field.value.size();
    fields.push_back(std::move(field));
  }
  return fields;
}

uint32_t FirstNumber(const ExifField& field) {
  uint32_t number = 0;
  std::memcpy(&number, field.value.data(), std::min(field.value.size(), NumberBytes(field.type)));
  return number;
}

const ExifField* Find(const std::vector<ExifField>& fields, uint16_t tag) {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [tag](const ExifField& field) { return field.tag == tag; });
  return found == fields.end() ? nullptr : &*found;
}

uint32_t NumberOf(const std::vector<ExifField>& fields, uint16_t tag, uint16_t type) {
  const ExifField* const field = Find(fields, tag);
  return field && field->type == type ? FirstNumber(*field) : 0;
}

int32_t DotsPerInch(const std::vector<ExifField>& main, uint16_t tag) {
  constexpr uint32_t kCentimetre = 3;
  const ExifField* const field = Find(main, tag);
  if (!field || field->type != kRational || field->count != 1) return 0;
  uint32_t parts[2];
  std::memcpy(parts, field->value.data(), sizeof parts);
  if (parts[1] == 0) return 0;
  const double dots = parts[0] * 1.0 / parts[1] *
                      (NumberOf(main, kResolutionUnit, kShort) == kCentimetre ? 2.54 : 1);
  return dots >= 1 && dots <= 1e6 ? static_cast<int32_t>(std::lround(dots)) : 0;
}

// Where the values of a directory that starts at `at` end.
size_t EndOf(const std::vector<ExifField>& fields, size_t at) {
  at += 2 + kEntryBytes * fields.size() + 4;
  for (const ExifField& field : fields)
    at += field.value.size() > kInline ? (field.value.size() + 1) / 2 * 2 : 0;
  return at;
}

void Append(std::string& block, uint32_t number, size_t bytes) {
  for (size_t i = 0; i < bytes; ++i)
    block += static_cast<char>(number >> 8 * i);
}

// Appends a directory and its values.
void AppendDirectory(std::string& block, const std::vector<ExifField>& fields) {
  size_t at = block.size() + 2 + kEntryBytes * fields.size() + 4;
  std::string values;
  Append(block, static_cast<uint32_t>(fields.size()), 2);
  for (const ExifField& field : fields) {
    Append(block, field.tag, 2);
    Append(block, field.type, 2);
    Append(block, field.count, 4);
    if (field.value.size() <= kInline) {
      block += field.value + std::string(kInline - field.value.size(), '\0');
      continue;
    }
    Append(block, static_cast<uint32_t>(at + values.size()), 4);
    values += field.value;
    if (values.size() % 2) values += '\0';
  }
  Append(block, 0, 4);  // no further one
  block += values;
}

ExifField Pointer(uint16_t tag, size_t at) {
  ExifField field{tag, kLong, 1, {}};
  Append(field.value, static_cast<uint32_t>(at), 4);
  return field;
}

// Directories are in rising order of their tags, each once.
void Sort(std::vector<ExifField>& fields) {
  const auto less = [](const ExifField& a, const ExifField& b) { return a.tag < b.tag; };
  std::stable_sort(fields.begin(), fields.end(), less);
  const auto same = [](const ExifField& a, const ExifField& b) { return a.tag == b.tag; };
  fields.erase(std::unique(fields.begin(), fields.end(), same), fields.end());
}

}  // namespace

std::string Exif::Text(uint16_t tag) const {
  const ExifField* const field = Find(main, tag);
  if (!field || field->type != kText) return {};
  return field->value.substr(0, field->value.find('\0'));
}

void Exif::SetText(uint16_t tag, const std::string& text) {
  if (text.empty()) return;
  std::erase_if(main, [tag](const ExifField& field) { return field.tag == tag; });
  main.push_back({tag, kText, static_cast<uint32_t>(text.size() + 1), text + '\0'});
  Sort(main);
}

ExifBlock ReadExif(const uint8_t* bytes, size_t size) {
  constexpr uint32_t kLittle = 0x4949, kBig = 0x4D4D, kMagic = 42;  // II, MM
  ExifBlock block;
  const TiffBytes tiff(bytes, size);
  // The order of bytes, twice the same letter, tells itself in either order.
  if ((tiff.Word(0) != kLittle && tiff.Word(0) != kBig) || tiff.Word(2) != kMagic) return block;
  const std::vector<ExifField> main = ReadDirectory(tiff, tiff.Long(4));
  const uint32_t orientation = NumberOf(main, kOrientation, kShort);
  if (orientation >= 1 && orientation <= 8) block.orientation = static_cast<int32_t>(orientation);
  block.xDotsPerInch = DotsPerInch(main, kXResolution);
  block.yDotsPerInch = DotsPerInch(main, kYResolution);
  for (const ExifField& field : main) {
    if (field.type == kText && Contains(kExifTexts, field.tag) && field.value[0])
      block.fields.main.push_back(field);
  }
  block.fields.photo = ReadDirectory(tiff, NumberOf(main, kPhoto, kLong));
  block.fields.gps = ReadDirectory(tiff, NumberOf(main, kGps, kLong));
  block.makerNote = Find(block.fields.photo, kMakerNote) != nullptr;
  std::erase_if(block.fields.photo,
                [](const ExifField& field) { return Contains(kPhotoDropped, field.tag); });
  for (auto* const fields : {&block.fields.main, &block.fields.photo, &block.fields.gps})
    Sort(*fields);
  return block;
}

std::string WriteExif(const Exif& exif) {
  std::vector<ExifField> main = exif.main;
  // Pointers first with no value, which does not change where anything lies.
  if (!exif.photo.empty()) main.push_back(Pointer(kPhoto, 0));
  if (!exif.gps.empty()) main.push_back(Pointer(kGps, 0));
  Sort(main);
  const size_t photo = EndOf(main, kHeaderBytes), gps = EndOf(exif.photo, photo);
  for (ExifField& field : main) {
    if (field.tag == kPhoto) field = Pointer(kPhoto, photo);
    if (field.tag == kGps) field = Pointer(kGps, exif.photo.empty() ? photo : gps);
  }
  std::string block("II*\0\x8\0\0\0", kHeaderBytes);
  AppendDirectory(block, main);
  if (!exif.photo.empty()) AppendDirectory(block, exif.photo);
  if (!exif.gps.empty()) AppendDirectory(block, exif.gps);
  return block;
}

}  // namespace vn::tool
