// Contexts: making, selection, saved states, colours.
#include "platform/headless/devices/context.h"

#include <utility>

#include "platform/headless/objects/font.h"
#include "platform/headless/surfaces/bitmap.h"
#include "platform/headless/surfaces/brush.h"
#include "platform/headless/surfaces/pen.h"

namespace headless {
namespace {

// A state holds what it has selected, apart from the bitmap, which is the context's own.
void HoldSelected(const ContextState& state) {
  HoldObject(state.brush);
  HoldObject(state.pen);
  HoldObject(state.font);
}
void LetGoSelected(const ContextState& state) {
  LetGoObject(state.brush);
  LetGoObject(state.pen);
  LetGoObject(state.font);
}

}  // namespace

Context::Context(DWORD type, std::shared_ptr<Device> device)
    : Object(type), device_(std::move(device)) {
  state.palette = DefaultPalette();
  state.brush = StockBrush(WHITE_BRUSH);
  state.pen = StockPen(BLACK_PEN);
  state.font = DefaultFont();
  if (memory()) state.bitmap = DefaultBitmap();
}

Context::~Context() {
  if (memory()) SelectBitmap(DefaultBitmap());
  LetGoSelected(state);
  for (const ContextState& saved : saved_)
    LetGoSelected(saved);
}

Surface* Context::Target() const {
  if (!memory()) return &device_->surface;
  auto* bitmap = Find<Bitmap>(state.bitmap);
  return bitmap ? &bitmap->surface : nullptr;
}

bool Context::Shows(int x, int y) const {
  const Surface* target = Target();
  if (!target || x < 0 || y < 0 || x >= target->width || y >= target->height) return false;
  bool shows = false;
  ForEachSeen(state.clip.get(), {x, y, x + 1, y + 1}, [&](const RECT&) { shows = true; });
  return shows;
}

// A bitmap is in one context at a time; the default one can be in all.
HGDIOBJ Context::SelectBitmap(HBITMAP bitmap) {
  auto* found = Find<Bitmap>(bitmap);
  if (!memory() || !found) return nullptr;
  const HBITMAP before = state.bitmap;
  if (bitmap == before) return before;
  if (bitmap != DefaultBitmap()) {
    if (found->selected) return nullptr;
    found->selected = true;
    HoldObject(bitmap);
  }
  if (before != DefaultBitmap()) {
    if (auto* old = Find<Bitmap>(before)) old->selected = false;
    LetGoObject(before);
  }
  state.bitmap = bitmap;
  return before;
}

HGDIOBJ Bitmap::SelectInto(Context& context, HGDIOBJ self) {
  return context.SelectBitmap(static_cast<HBITMAP>(self));
}
HGDIOBJ Brush::SelectInto(Context& context, HGDIOBJ self) {
  return context.SelectShared(&ContextState::brush, self);
}
HGDIOBJ Pen::SelectInto(Context& context, HGDIOBJ self) {
  return context.SelectShared(&ContextState::pen, self);
}
HGDIOBJ Font::SelectInto(Context& context, HGDIOBJ self) {
  return context.SelectShared(&ContextState::font, self);
}

int Context::Save() {
  saved_.push_back(state);
  HoldSelected(state);
  return static_cast<int>(saved_.size());
}

// Positive: the level that Save answered. Negative: counted from the last one. States above the
// one restored are dropped.
bool Context::Restore(int saved) {
  const auto levels = static_cast<int>(saved_.size());
  if (saved == 0 || saved > levels || saved < -levels) return false;
  const int level = saved > 0 ? saved : levels + saved + 1;
  ContextState wanted = std::move(saved_[static_cast<size_t>(level - 1)]);
  // The bitmap may have died, or gone to another context, since.
  SelectBitmap(wanted.bitmap);
  wanted.bitmap = state.bitmap;
  LetGoSelected(state);
  for (int i = level; i < levels; ++i)
    LetGoSelected(saved_[static_cast<size_t>(i)]);
  saved_.resize(static_cast<size_t>(level - 1));
  state = std::move(wanted);
  return true;
}

void CloseContextsOf(const Device& device) {
  for (const HGDIOBJ handle : HandlesOf(OBJ_DC)) {
    if (&Find<Context>(handle)->device() == &device) RemoveObject(handle);
  }
}

}  // namespace headless

using namespace headless;

HDC CreateCompatibleDC(HDC context) {
  return Enter<HDC>(nullptr, [&]() -> HDC {
    std::shared_ptr<Device> device = Screen();
    if (context) {
      const auto* found = Find<Context>(context);
      if (!found) return nullptr;
      device = found->SharedDevice();
    }
    return AddNew<HDC>(std::make_unique<Context>(OBJ_MEMDC, std::move(device)));
  });
}

BOOL DeleteDC(HDC context) {
  return Enter<BOOL>(FALSE, [&] { return Find<Context>(context) && RemoveObject(context); });
}

HGDIOBJ SelectObject(HDC context, HGDIOBJ object) {
  return Enter<HGDIOBJ>(nullptr, [&]() -> HGDIOBJ {
    auto* found = Find<Context>(context);
    Object* selected = FindObject(object);
    return found && selected ? selected->SelectInto(*found, object) : nullptr;
  });
}

int SaveDC(HDC context) {
  return Enter<int>(0, [&] {
    auto* found = Find<Context>(context);
    return found ? found->Save() : 0;
  });
}

BOOL RestoreDC(HDC context, int saved) {
  return Enter<BOOL>(FALSE, [&] {
    auto* found = Find<Context>(context);
    return found && found->Restore(saved);
  });
}

namespace {

// Sets one value of a context's state and answers the one before, or the failure. GDI's setters that
// take a range of values answer 0 for others.
template <class Value>
Value SetState(HDC context, Value ContextState::*place, Value value, Value failure) {
  return Enter<Value>(failure, [&] {
    auto* found = Find<Context>(context);
    return found ? std::exchange(found->state.*place, value) : failure;
  });
}
int SetRanged(HDC context, int ContextState::*place, int value, int low, int high) {
  return value < low || value > high ? 0 : SetState(context, place, value, 0);
}

}  // namespace

COLORREF SetTextColor(HDC context, COLORREF color) {
  return SetState(context, &ContextState::text, color & 0xFFFFFF, CLR_INVALID);
}

COLORREF SetBkColor(HDC context, COLORREF color) {
  return SetState(context, &ContextState::background, color & 0xFFFFFF, CLR_INVALID);
}

UINT SetTextAlign(HDC context, UINT align) {
  return SetState(context, &ContextState::textAlign, align, ~0u);
}

int SetBkMode(HDC context, int mode) {
  return SetRanged(context, &ContextState::backgroundMode, mode, TRANSPARENT, OPAQUE);
}

int SetROP2(HDC context, int operation) {
  return SetRanged(context, &ContextState::operation, operation, R2_BLACK, R2_WHITE);
}

int SetPolyFillMode(HDC context, int fillRule) {
  return SetRanged(context, &ContextState::fillRule, fillRule, ALTERNATE, WINDING);
}
