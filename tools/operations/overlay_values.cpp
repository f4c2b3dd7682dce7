#include "tools/operations/overlay_values.h"

#include <utility>

#include "tools/formats/picture.h"
#include "tools/operations/load_bitmap.h"
#include "tools/operations/save_bitmap.h"
#include "tools/operations/value_parsers.h"

namespace vn::tool {
namespace {

struct Name {
  const char* name;
  uint32_t flags;
};
constexpr Name kOperations[] = {{"and", COMBINE_AND},
                                {"or", COMBINE_OR},
                                {"xor", COMBINE_XOR},
                                {"copy", COMBINE_AND | COMBINE_DST_1},
                                {"add", COMBINE_ADD},
                                {"subtract", COMBINE_SUB_SRC},
                                {"subtract-from", COMBINE_SUB_DST},
                                {"multiply", COMBINE_MUL},
                                {"divide", COMBINE_DIV_SRC},
                                {"divide-into", COMBINE_DIV_DST},
                                {"average", COMBINE_AVERAGE},
                                {"min", COMBINE_MIN},
                                {"max", COMBINE_MAX}};
constexpr Name kPrefixes[] = {
    {"not-file-", COMBINE_SRC_NOT}, {"not-picture-", COMBINE_DST_NOT}, {"not-", COMBINE_RES_NOT}};

// Each prefix once at most: twice would be nothing. The plain "not-" is tried last, since the
// others begin with it.
std::optional<uint32_t> ParseOperationName(std::string name) {
  uint32_t flags = 0;
  for (bool found = true; found;) {
    found = false;
    for (const Name& prefix : kPrefixes) {
      if (flags & prefix.flags || !name.starts_with(prefix.name)) continue;
      flags |= prefix.flags;
      name.erase(0, std::char_traits<char>::length(prefix.name));
      found = true;
      break;
    }
  }
  for (const Name& operation : kOperations) {
    if (name != operation.name) continue;
    // What the picture has is no operand of a copy.
    if (operation.flags & COMBINE_DST_1 && flags & COMBINE_DST_NOT) return std::nullopt;
    return flags | operation.flags;
  }
  return std::nullopt;
}

// The last of the fields between commas, taken off the text.
std::string TakeLastField(std::string* text) {
  const size_t comma = text->rfind(',');
  if (comma == text->npos) return {};
  std::string field = text->substr(comma + 1);
  text->resize(comma);
  return field;
}

void Load(const std::string& file, Bitmap& bitmap) {
  const auto picture = OpenPicture(file, ReadOptions{});
  LoadBitmap(*picture, STORAGE_AUTO, bitmap);
}

void MatchDepth(Bitmap& source, Bitmap& picture) {
  const int32_t bits = picture->BitsPerPixel;
  if (source->BitsPerPixel == bits) return;
  const PictureInfo info = InfoOf(picture);
  const uint32_t flags = bits <= 8 ? uint32_t{RES_USER_PALETTE} : uint32_t{RES_ORDER_BGR};
  RequireDone(
      "--combine",
      Vn_ColorResBitmap(source, source, static_cast<uint32_t>(bits),
                        flags | RES_DITHER_METHOD(DITHER_FLOYD_STEINBERG),
                        bits <= 8 ? info.colors.data() : nullptr,
                        bits <= 8 ? static_cast<uint32_t>(info.colors.size()) : 0, nullptr, 0));
}

void Combine(Bitmap& picture, const std::string& file, uint32_t flags, int32_t x, int32_t y) {
  Bitmap source;
  Load(file, source);
  MatchDepth(source, picture);
  // Loaded pictures have their rows in one order, in which they are combined.
  const RECT at = StorageRect(*picture.get(), {x, y, source->Width, source->Height});
  RequireDone("--combine", Vn_CombineBitmap(picture, at.left, at.top, source->Width, source->Height,
                                            source, 0, 0, flags));
}

}  // namespace

std::string CombineForm() { return "FILE,OPERATION[,X,Y]"; }

std::string CombineNames() {
  std::string names;
  for (const Name& operation : kOperations)
    names += std::string(names.empty() ? "" : ", ") + operation.name;
  return names;
}

std::optional<Operation> ParseCombine(const std::string& value) {
  std::string file = value;
  std::string last = TakeLastField(&file);
  int32_t x = 0, y = 0;
  if (!ParseOperationName(last)) {
    const std::string before = TakeLastField(&file);
    const auto place = ParseNumberList(before + "," + last);
    if (!place || place->size() != 2) return std::nullopt;
    constexpr int32_t kMost = 1 << 26;
    x = (*place)[0], y = (*place)[1];
    if (std::abs(x) > kMost || std::abs(y) > kMost) return std::nullopt;
    last = TakeLastField(&file);
  }
  const auto flags = ParseOperationName(last);
  if (!flags || file.empty()) return std::nullopt;
  return [=](Bitmap& picture) { Combine(picture, file, *flags, x, y); };
}

std::optional<Operation> ParseUnderlay(const std::string& value) {
  std::string file = value;
  uint32_t mode = UNDERLAY_TILE;
  const std::string last = TakeLastField(&file);
  if (last == "stretch") {
    mode = UNDERLAY_STRETCH;
  } else if (last != "tile") {
    file = value;
  }
  if (file.empty()) return std::nullopt;
  return [=](Bitmap& picture) {
    Bitmap texture;
    Load(file, texture);
    RequireDone("--underlay", Vn_UnderlayBitmap(picture, texture, mode));
  };
}

}  // namespace vn::tool
