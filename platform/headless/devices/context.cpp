// Contexts: making, selection, saved states, colours.
#include "platform/headless/devices/context.h"

#include <algorithm>
#include <utility>

#include "platform/headless/surfaces/bitmap.h"
#include "platform/headless/surfaces/brush.h"

namespace headless {

Context::Context(DWORD type, std::shared_ptr<Device> device)
    : Object(type), device_(std::move(device)) {
  state.palette = DefaultPalette();
  state.brush = StockBrush(WHITE_BRUSH);
  if (memory()) state.bitmap = DefaultBitmap();
}

Context::~Context() {
  if (memory()) SelectBitmap(DefaultBitmap());
  LetGoObject(state.brush);
  for (const ContextState& saved : saved_)
    LetGoObject(saved.brush);
}

Surface* Context::Target() const {
  if (!memory()) return &device_->surface;
  auto* bitmap = Find<Bitmap>(state.bitmap);
  return bitmap ? &bitmap->surface : nullptr;
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

HGDIOBJ Context::SelectBrush(HBRUSH brush) {
  if (!Find<Brush>(brush)) return nullptr;
  HoldObject(brush);
  const HBRUSH before = std::exchange(state.brush, brush);
  LetGoObject(before);
  return before;
}

HGDIOBJ Bitmap::SelectInto(Context& context, HGDIOBJ self) {
  return context.SelectBitmap(static_cast<HBITMAP>(self));
}
HGDIOBJ Brush::SelectInto(Context& context, HGDIOBJ self) {
  return context.SelectBrush(static_cast<HBRUSH>(self));
}

int Context::Save() {
  saved_.push_back(state);
  HoldObject(state.brush);
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
  LetGoObject(state.brush);
  for (int i = level; i < levels; ++i)
    LetGoObject(saved_[static_cast<size_t>(i)].brush);
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

COLORREF SetTextColor(HDC context, COLORREF color) {
  return Enter<COLORREF>(CLR_INVALID, [&] {
    auto* found = Find<Context>(context);
    return found ? std::exchange(found->state.text, color & 0xFFFFFF) : CLR_INVALID;
  });
}

COLORREF SetBkColor(HDC context, COLORREF color) {
  return Enter<COLORREF>(CLR_INVALID, [&] {
    auto* found = Find<Context>(context);
    return found ? std::exchange(found->state.background, color & 0xFFFFFF) : CLR_INVALID;
  });
}
