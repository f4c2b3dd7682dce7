#include "platform/headless/objects/font.h"

namespace headless {

HFONT DefaultFont() {
  static const HGDIOBJ handle = AddStockObject(std::make_unique<Font>(FontTraits{}));
  return static_cast<HFONT>(handle);
}

}  // namespace headless

using namespace headless;

// Text runs level and in a face's own proportions: a width or an angle cannot be had.
HFONT CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                  DWORD underline, DWORD strikeOut, DWORD, DWORD, DWORD, DWORD quality, DWORD,
                  LPCSTR face) {
  return Enter<HFONT>(nullptr, [&]() -> HFONT {
    constexpr int kLargest = 8192;
    if (height < -kLargest || height > kLargest || width || escapement || orientation ||
        weight < 0 || weight > 1000) {
      return nullptr;
    }
    FontTraits traits;
    traits.height = height;
    if (weight) traits.weight = weight;
    traits.italic = italic;
    traits.underline = underline;
    traits.strikeOut = strikeOut;
    traits.smooth = quality != NONANTIALIASED_QUALITY;
    if (face) traits.face = face;
    return AddNew<HFONT>(std::make_unique<Font>(std::move(traits)));
  });
}
