#include "tools/formats/png_texts.h"

#include <algorithm>
#include <cstring>

#include "tools/formats/color_profile.h"

namespace vn::tool {
namespace {

constexpr char kXmp[] = "XML:com.adobe.xmp", kComment[] = "Comment";

// PNG's own words for what Exif has as fields. PNG (third edition), section 11.3.3.1.
struct Word {
  const char* keyword;
  uint16_t tag;
};
constexpr Word kWords[] = {{"Author", kExifArtist},
                           {"Copyright", kExifCopyright},
                           {"Description", kExifDescription},
                           {"Software", kExifSoftware}};

// Some programs write Exif as a text of hexadecimal digits; its chunk is the only way here.
void TakeText(const png_text& entry, Metadata& metadata) {
  const size_t length = entry.compression > 0 ? entry.itxt_length : entry.text_length;
  const std::string keyword = entry.key, raw(entry.text ? entry.text : "", entry.text ? length : 0);
  const std::string text = entry.compression > 0 ? raw : FromLatin1(raw);
  // A keyword that shows nothing is none, and libpng would not write it.
  const bool named =
      std::any_of(keyword.begin(), keyword.end(), [](char c) { return c > ' ' && c <= '~'; });
  if (text.empty() || !named) return;
  if (keyword == kXmp) {
    metadata.xmp = raw;
  } else if (keyword == kComment && metadata.comment.empty()) {
    metadata.comment = text;
  } else if (const auto word =
                 std::find_if(std::begin(kWords), std::end(kWords),
                              [&](const Word& known) { return keyword == known.keyword; });
             word != std::end(kWords)) {
    // Exif, which comes first, is what programs edit.
    if (metadata.exif.Text(word->tag).empty()) metadata.exif.SetText(word->tag, text);
  } else {
    metadata.notes.emplace_back(keyword, text);
  }
}

bool IsPlain(const std::string& text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return (c >= ' ' && c <= '~') || c == '\n'; });
}

}  // namespace

void LimitChunks(png_structp png) {
  constexpr png_uint_32 kMostChunks = 100;
  constexpr png_alloc_size_t kMostBytes = 4 << 20;  // of one
  png_set_chunk_cache_max(png, kMostChunks);
  png_set_chunk_malloc_max(png, kMostBytes);
}

void TakeChunks(png_structp png, png_infop chunks, PictureInfo& info) {
  Metadata& metadata = info.metadata;
  png_charp name = nullptr;
  png_bytep bytes = nullptr;
  png_uint_32 size = 0;
  int method = 0;
  if (png_get_iCCP(png, chunks, &name, &method, &bytes, &size))
    metadata.profile.assign(reinterpret_cast<const char*>(bytes), size);
  if (png_get_eXIf_1(png, chunks, &size, &bytes)) {
    ExifBlock block = ReadExif(bytes, size);
    info.facts.orientation = block.orientation;
    if (!block.fields.Empty()) TakeExif(std::move(block), metadata);
  }
  png_textp texts = nullptr;
  const int count = png_get_text(png, chunks, &texts, nullptr);
  for (int i = 0; i < count; ++i)
    TakeText(texts[i], metadata);
}

PngTexts::PngTexts(const Metadata& metadata, bool gray) {
  if (SpaceOf(metadata.profile) == (gray ? ProfileSpace::kGray : ProfileSpace::kRgb))
    profile_ = metadata.profile;
  if (!metadata.exif.Empty()) exif_ = WriteExif(metadata.exif);
  for (const Word& word : kWords)
    texts_.push_back({word.keyword, metadata.exif.Text(word.tag)});
  texts_.push_back({kComment, metadata.comment});
  texts_.push_back({kXmp, metadata.xmp});
  for (const auto& [keyword, text] : metadata.notes)
    texts_.push_back({keyword, text});
  std::erase_if(texts_, [](const Text& text) { return text.text.empty(); });
  for (Text& text : texts_) {
    const bool plain = IsPlain(text.text);
    if (!plain) text.text = ToUtf8(text.text);
    png_text entry{};
    entry.compression =
        plain && text.keyword != kXmp ? PNG_TEXT_COMPRESSION_NONE : PNG_ITXT_COMPRESSION_NONE;
    entry.key = text.keyword.data();
    entry.text = text.text.data();
    (entry.compression > 0 ? entry.itxt_length : entry.text_length) = text.text.size();
    entry.lang = entry.lang_key = const_cast<char*>("");  // read only
    entries_.push_back(entry);
  }
}

void PngTexts::Set(png_structp png, png_infop chunks) const {
  if (!profile_.empty()) {
    png_set_benign_errors(png, 1);  // a profile that libpng dislikes is left
    png_set_iCCP(png, chunks, "ICC profile", PNG_COMPRESSION_TYPE_BASE,
                 reinterpret_cast<png_const_bytep>(profile_.data()),
                 static_cast<png_uint_32>(profile_.size()));
  }
  if (!exif_.empty()) {
    png_set_eXIf_1(png, chunks, static_cast<png_uint_32>(exif_.size()),
                   reinterpret_cast<png_bytep>(const_cast<char*>(exif_.data())));  // read only
  }
  if (!entries_.empty())
    png_set_text(png, chunks, entries_.data(), static_cast<int>(entries_.size()));
}

MetadataRoom PngTexts::Room(png_structp png, png_infop chunks) const {
  MetadataRoom room{true, true, true, true, true, true};
  room.profile = png_get_valid(png, chunks, PNG_INFO_iCCP | PNG_INFO_sRGB) != 0;
  return room;
}

}  // namespace vn::tool
