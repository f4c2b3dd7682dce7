// Faces found by fontconfig and drawn by FreeType.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>

#include "platform/headless/text/face.h"
#include "platform/headless/text/font_libraries.h"

namespace headless {
namespace {

using Pattern = std::unique_ptr<FcPattern, decltype(&::FcPatternDestroy)>;
using OpenFace = std::unique_ptr<FT_FaceRec, decltype(&::FT_Done_Face)>;

// Lengths of FreeType are in 64ths of a pixel, its factors in 65536ths.
constexpr int32_t Pixels(FT_Pos length) { return static_cast<int32_t>((length + 32) >> 6); }
constexpr FT_Fixed Factor(double value) { return static_cast<FT_Fixed>(value * 0x10000); }

// What fontconfig answers a description with: a file, and what must be done to its shapes.
struct FontFile {
  std::string path, name;
  int index = 0;
  bool embolden = false;
  std::optional<FT_Matrix> slant;
};

std::optional<FontFile> FindFile(const FontLibraries& fonts, const FontTraits& traits) {
  const Pattern wanted(fonts.FcPatternCreate(), fonts.FcPatternDestroy);
  if (!wanted) throw std::bad_alloc();
  if (!traits.face.empty()) {
    const auto* face = reinterpret_cast<const FcChar8*>(traits.face.c_str());
    fonts.FcPatternAddString(wanted.get(), FC_FAMILY, face);
  }
  fonts.FcPatternAddInteger(wanted.get(), FC_WEIGHT, fonts.FcWeightFromOpenType(traits.weight));
  fonts.FcPatternAddInteger(wanted.get(), FC_SLANT,
                            traits.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  fonts.FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
  fonts.FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
  fonts.FcDefaultSubstitute(wanted.get());
  FcResult result;
  const Pattern found(fonts.FcFontMatch(nullptr, wanted.get(), &result), fonts.FcPatternDestroy);
  FcChar8* text = nullptr;
  if (!found || fonts.FcPatternGetString(found.get(), FC_FILE, 0, &text) != FcResultMatch)
    return std::nullopt;
  FontFile file;
  file.path = reinterpret_cast<const char*>(text);
  // A family can have several names: the first, unless it was asked for by another.
  for (int i = 0; fonts.FcPatternGetString(found.get(), FC_FAMILY, i, &text) == FcResultMatch;
       ++i) {
    const auto* wantedName = reinterpret_cast<const FcChar8*>(traits.face.c_str());
    if (i == 0 || fonts.FcStrCmpIgnoreCase(text, wantedName) == 0)
      file.name = reinterpret_cast<const char*>(text);
  }
  fonts.FcPatternGetInteger(found.get(), FC_INDEX, 0, &file.index);
  FcBool embolden = FcFalse;
  fonts.FcPatternGetBool(found.get(), FC_EMBOLDEN, 0, &embolden);
  file.embolden = embolden;
  FcMatrix* matrix = nullptr;
  if (fonts.FcPatternGetMatrix(found.get(), FC_MATRIX, 0, &matrix) == FcResultMatch)
    file.slant = {Factor(matrix->xx), Factor(matrix->xy), Factor(matrix->yx), Factor(matrix->yy)};
  return file;
}

// Coverage of a bitmap of FreeType's, of either kind that its outlines are drawn as.
void CopyBitmap(const FT_Bitmap& from, Glyph& glyph) {
  glyph.width = static_cast<int32_t>(from.width);
  glyph.height = static_cast<int32_t>(from.rows);
  glyph.coverage.resize(size_t{from.width} * from.rows);
  uint8_t* to = glyph.coverage.data();
  for (unsigned y = 0; y < from.rows; ++y) {
    const uint8_t* row = from.buffer + static_cast<ptrdiff_t>(y) * from.pitch;
    if (from.pixel_mode == FT_PIXEL_MODE_GRAY) {
      to = std::copy_n(row, from.width, to);
      continue;
    }
    for (unsigned x = 0; x < from.width; ++x)
      *to++ = row[x / 8] << x % 8 & 0x80 ? 255 : 0;
  }
}

class FreeTypeFace : public Face {
 public:
  FreeTypeFace(const FontLibraries& fonts, const FontFile& file, OpenFace face)
      : fonts_(fonts), face_(std::move(face)), embolden_(file.embolden) {
    name = file.name;
    ascent = Pixels(face_->size->metrics.ascender);
    descent = Pixels(-face_->size->metrics.descender);
    FT_Matrix slant = file.slant.value_or(FT_Matrix{});
    if (file.slant) fonts.FT_Set_Transform(face_.get(), &slant, nullptr);
  }

  const Glyph* Find(char32_t letter, bool smooth) override {
    const auto key = std::pair(letter, smooth);
    if (const auto known = glyphs_.find(key); known != glyphs_.end()) return &known->second;
    auto glyph = Draw(letter, smooth);
    if (!glyph) return nullptr;
    const Glyph* const kept = &glyphs_.emplace(key, std::move(*glyph)).first->second;
    bytes_ += sizeof *kept + kept->coverage.size();
    return kept;
  }

  // Memory that the letters found so far take.
  size_t bytes() const { return bytes_; }

 private:
  std::optional<Glyph> Draw(char32_t letter, bool smooth) {
    const FT_UInt index = fonts_.FT_Get_Char_Index(face_.get(), letter);
    const FT_Int32 target = smooth ? FT_LOAD_TARGET_LIGHT : FT_LOAD_TARGET_MONO;
    if (fonts_.FT_Load_Glyph(face_.get(), index, FT_LOAD_NO_BITMAP | target) != 0)
      return std::nullopt;
    const FT_GlyphSlot slot = face_->glyph;
    if (embolden_) fonts_.FT_GlyphSlot_Embolden(slot);
    if (fonts_.FT_Render_Glyph(slot, smooth ? FT_RENDER_MODE_NORMAL : FT_RENDER_MODE_MONO) != 0)
      return std::nullopt;
    Glyph glyph;
    glyph.left = slot->bitmap_left;
    glyph.top = -slot->bitmap_top;
    glyph.advance = Pixels(slot->advance.x);
    CopyBitmap(slot->bitmap, glyph);
    return glyph;
  }

  const FontLibraries& fonts_;
  const OpenFace face_;
  const bool embolden_;
  std::map<std::pair<char32_t, bool>, Glyph> glyphs_;
  size_t bytes_ = 0;
};

std::unique_ptr<FreeTypeFace> MakeFace(const FontTraits& traits) {
  constexpr int32_t kUsualHeight = 16;
  const FontLibraries* const fonts = LoadedFontLibraries();
  if (!fonts) return nullptr;
  const auto file = FindFile(*fonts, traits);
  FT_Face opened = nullptr;
  if (!file || fonts->FT_New_Face(fonts->freeType, file->path.c_str(), file->index, &opened) != 0)
    return nullptr;
  OpenFace face(opened, fonts->FT_Done_Face);
  const int32_t height = traits.height ? traits.height : kUsualHeight;
  FT_Size_RequestRec size{};
  size.type = height < 0 ? FT_SIZE_REQUEST_TYPE_NOMINAL : FT_SIZE_REQUEST_TYPE_CELL;
  size.height = std::abs(height) * 64;
  if (fonts->FT_Request_Size(opened, &size) != 0) return nullptr;
  return std::make_unique<FreeTypeFace>(*fonts, *file, std::move(face));
}

}  // namespace

Face* FindFace(const FontTraits& font) {
  struct Known {
    FontTraits font;
    std::unique_ptr<FreeTypeFace> face;
  };
  // Texts of a program have few fonts, and a lookup takes longer than a line of text. A program that
  // goes through sizes and faces without end must not keep them all.
  constexpr size_t kMostFaces = 32, kMostBytes = size_t{32} << 20;
  static auto* known = new std::vector<Known>;
  size_t bytes = 0;
  for (const Known& each : *known)
    bytes += each.face->bytes();
  if (bytes > kMostBytes) known->clear();
  for (const Known& each : *known) {
    if (each.font == font) return each.face.get();
  }
  auto face = MakeFace(font);
  if (!face) return nullptr;
  if (known->size() == kMostFaces) known->clear();
  known->push_back({font, std::move(face)});
  return known->back().face.get();
}

}  // namespace headless
