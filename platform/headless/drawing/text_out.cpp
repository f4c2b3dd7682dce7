// Text on contexts: TextOutA, GetTextExtentPoint32A, GetTextFaceA.
#include <algorithm>
#include <cstring>

#include "platform/headless/drawing/outline.h"
#include "platform/headless/drawing/thin_line.h"
#include "platform/headless/surfaces/coverage.h"
#include "platform/headless/text/face.h"
#include "platform/headless/text/letters.h"

namespace headless {
namespace {

// A line of text in the font of a context, before it has a place.
class TextLine {
 public:
  TextLine(const Context& context, const char* text, size_t bytes) : context_(context) {
    const auto* font = Find<Font>(context.state.font);
    if (!font || !(face_ = FindFace(font->traits))) return;
    traits_ = &font->traits;
    const Surface* target = context.Target();
    smooth_ = traits_->smooth && target && !target->layout.indexed();
    for (const char32_t letter : LettersOf(text, bytes)) {
      const Glyph* glyph = face_->Find(letter, smooth_);
      if (!glyph) continue;
      glyphs_.push_back(glyph);
      width_ += glyph->advance;
    }
  }

  // There is a face, and a line of this length fits the coordinates.
  bool ready() const { return face_ && width_ < kFarthest; }
  int32_t width() const { return static_cast<int32_t>(width_); }
  int32_t height() const { return face_->ascent + face_->descent; }

  // Draws the line, its reference point at x, y.
  void Draw(int32_t x, int32_t y) const {
    const UINT align = context_.state.textAlign;
    if ((align & TA_CENTER) == TA_CENTER) {
      x -= width() / 2;
    } else if (align & TA_RIGHT) {
      x -= width();
    }
    if ((align & TA_BASELINE) == TA_BASELINE) {
      y -= face_->ascent;
    } else if (align & TA_BOTTOM) {
      y -= height();
    }
    if (context_.state.backgroundMode == OPAQUE)
      FillBox({x, y, x + width(), y + height()}, context_.state.background);
    DrawGlyphs(x, y + face_->ascent);
    DrawBars(x, y + face_->ascent);
  }

 private:
  void FillBox(const RECT& box, COLORREF color) const {
    if (box.left >= box.right || box.top >= box.bottom) return;
    PaintSet(context_, RegionSet::FromRect(box.left, box.top, box.right, box.bottom),
             Brush(Brush::Kind::kSolid, color), RasterOp(PATCOPY));
  }

  void DrawGlyphs(int32_t x, int32_t baseLine) const {
    RectList runs;
    for (const Glyph* glyph : glyphs_) {
      const int32_t left = x + glyph->left, top = baseLine + glyph->top;
      const RECT area = {left, top, left + glyph->width, top + glyph->height};
      if (smooth_) {
        LayOn(*context_.Target(), context_.state.clip.get(), {area, glyph->coverage.data()},
              RgbOf(context_.state.text));
      } else {
        AppendRuns(runs, *glyph, left, top);
      }
      x += glyph->advance;
    }
    PaintRects(context_, runs, Brush(Brush::Kind::kSolid, context_.state.text), RasterOp(PATCOPY));
  }

  static void AppendRuns(RectList& runs, const Glyph& glyph, int32_t left, int32_t top) {
    const uint8_t* row = glyph.coverage.data();
    for (int32_t y = 0; y < glyph.height; ++y, row += glyph.width) {
      for (int32_t x = 0; x < glyph.width; ++x) {
        const int32_t first = x;
        while (x < glyph.width && row[x])
          ++x;
        if (first < x) runs.Append({left + first, top + y, left + x, top + y + 1});
      }
    }
  }

  // Lines under and through the letters, as thick as a twelfth of what may rise above the base line.
  void DrawBars(int32_t x, int32_t baseLine) const {
    const int32_t thick = std::max(1, face_->ascent / 12);
    const auto bar = [&](int32_t top) {
      FillBox({x, top, x + width(), top + thick}, context_.state.text);
    };
    if (traits_->underline) bar(baseLine + std::max(1, face_->descent / 3));
    if (traits_->strikeOut) bar(baseLine - face_->ascent / 3);
  }

  const Context& context_;
  Face* face_ = nullptr;
  const FontTraits* traits_ = nullptr;
  bool smooth_ = false;
  std::vector<const Glyph*> glyphs_;
  int64_t width_ = 0;
};

}  // namespace
}  // namespace headless

using namespace headless;

// The binary operation of the context has no part in text.
BOOL TextOutA(HDC context, int x, int y, LPCSTR text, int bytes) {
  return Enter<BOOL>(FALSE, [&]() -> BOOL {
    auto* found = Find<Context>(context);
    if (!found || !found->Target() || bytes < 0 || (bytes && !text)) return FALSE;
    const TextLine line(*found, text, static_cast<size_t>(bytes));
    const bool moves = found->state.textAlign & TA_UPDATECP;
    const POINT at = moves ? found->state.position : POINT{x, y};
    if (!line.ready() || !WithinReach(&at, 1)) return FALSE;
    line.Draw(at.x, at.y);
    const UINT align = found->state.textAlign & TA_CENTER;
    if (moves && align != TA_CENTER)
      found->state.position.x += align == TA_RIGHT ? -line.width() : line.width();
    return TRUE;
  });
}

BOOL GetTextExtentPoint32A(HDC context, LPCSTR text, int bytes, SIZE* size) {
  return Enter<BOOL>(FALSE, [&]() -> BOOL {
    const auto* found = Find<Context>(context);
    if (!found || bytes < 0 || (bytes && !text) || !size) return FALSE;
    const TextLine line(*found, text, static_cast<size_t>(bytes));
    if (!line.ready()) return FALSE;
    *size = {line.width(), line.height()};
    return TRUE;
  });
}

// The name of the face that answers the context's font: its bytes with the closing 0, written as far
// as there is room, or told only when `face` is null.
int GetTextFaceA(HDC context, int bytes, LPSTR face) {
  return Enter<int>(0, [&]() -> int {
    const auto* found = Find<Context>(context);
    const auto* font = found ? Find<Font>(found->state.font) : nullptr;
    const Face* used = font ? FindFace(font->traits) : nullptr;
    if (!used || (face && bytes < 1)) return 0;
    const size_t length = used->name.size() + 1;
    if (!face) return static_cast<int>(length);
    const size_t given = std::min(length, static_cast<size_t>(bytes));
    std::memcpy(face, used->name.c_str(), given);
    face[given - 1] = 0;
    return static_cast<int>(given);
  });
}
