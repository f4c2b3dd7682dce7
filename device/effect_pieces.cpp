#include "device/effect_pieces.h"

#include <algorithm>
#include <bit>

#include "kernel/rects.h"

namespace vn {
namespace {

// Coordinates in 64 bits, so that no edge of an area can be left by arithmetic.
struct Area {
  int64_t left, top, right, bottom;

  explicit Area(const RECT& r) : left(r.left), top(r.top), right(r.right), bottom(r.bottom) {}
  int64_t Width() const { return right - left; }
  int64_t Height() const { return bottom - top; }
};

RECT PieceOf(int64_t left, int64_t top, int64_t right, int64_t bottom) {
  return {static_cast<LONG>(left), static_cast<LONG>(top), static_cast<LONG>(right),
          static_cast<LONG>(bottom)};
}

// Units 0 to `units` - 1 in interlaced passes, until `visit` answers false.
template <class Visit>
void InPasses(int64_t units, int64_t passes, Visit visit) {
  for (int64_t pass = 0; pass < passes; ++pass) {
    for (int64_t i = pass; i < units; i += passes) {
      if (!visit(i)) return;
    }
  }
}

bool Begin(PieceSink& sink, int64_t units, PieceSink::Count count = PieceSink::Count::kExact) {
  return sink.Begin(static_cast<uint32_t>(units), count);
}

enum class Axis : uint8_t { kColumns, kRows };

// How strips of one pixel go over an axis: both ends towards the centre, the centre towards both
// ends, the last strip first, the first strip first. In pairs an odd centre strip comes twice.
enum class Order : uint8_t { kIn, kOut, kBackward, kForward };

void WalkStrips(const RECT& area, Axis axis, Order order, int64_t passes, PieceSink& sink) {
  const Area a(area);
  const bool columns = axis == Axis::kColumns;
  const int64_t size = columns ? a.Width() : a.Height();
  const bool pairs = order == Order::kIn || order == Order::kOut;
  const int64_t units = pairs ? (size + 1) / 2 : size;
  const auto strip = [&](int64_t n) {
    return columns ? PieceOf(a.left + n, a.top, a.left + n + 1, a.bottom)
                   : PieceOf(a.left, a.top + n, a.right, a.top + n + 1);
  };
  if (!Begin(sink, units)) return;
  InPasses(units, passes, [&](int64_t i) {
    const int64_t k = order == Order::kOut ? units - i - 1 : i;
    RECT pieces[2];
    size_t count = 0;
    if (order != Order::kBackward) pieces[count++] = strip(k);
    if (order != Order::kForward) pieces[count++] = strip(size - k - 1);
    return sink.Unit(pieces, count);
  });
}

void WalkFrames(const RECT& area, bool outward, int64_t passes, PieceSink& sink) {
  const Area a(area);
  const int64_t units = (std::min(a.Width(), a.Height()) + 1) / 2;
  if (!Begin(sink, units)) return;
  InPasses(units, passes, [&](int64_t i) {
    const int64_t k = outward ? units - i - 1 : i;
    const RECT f = PieceOf(a.left + k, a.top + k, a.right - k, a.bottom - k);
    const RECT pieces[] = {{f.left, f.top, f.left + 1, f.bottom},
                           {f.right - 1, f.top, f.right, f.bottom},
                           {f.left + 1, f.top, f.right - 1, f.top + 1},
                           {f.left + 1, f.bottom - 1, f.right - 1, f.bottom}};
    if (RectIsEmpty(f)) return sink.Unit(pieces, 0);
    return sink.Unit(pieces, f.left + 1 < f.right - 1 ? 4 : 2);
  });
}

// Feedback masks of Galois shift registers, by their number of bits: from 2 bits on each register
// has its longest period and visits every value but 0. The mask for 23 bits is the exception: it
// visits the 23 powers of two alone, and stays, since dissolves of that size are known by it.
constexpr uint32_t DissolveTaps[33] = {
    0x1,       0x1,        0x3,        0x6,        0xC,       0x14,      0x30,
    0x60,      0xB8,       0x110,      0x240,      0x500,     0xCA0,     0x1B00,
    0x3500,    0x6000,     0xB400,     0x12000,    0x20400,   0x72000,   0x90000,
    0x140000,  0x300000,   0x400000,   0xD80000,   0x1200000, 0x3880000, 0x7200000,
    0x9000000, 0x14000000, 0x32800000, 0x48000000, 0xA3000000};

// Cells in the order of the register, without a table of them; cell 0, which it never visits, is
// the last. Counts of cells are words that wrap.
void WalkDissolve(const RECT& area, int64_t cellWidth, int64_t cellHeight, PieceSink& sink) {
  const Area a(area);
  const auto columns = static_cast<uint32_t>((a.Width() + cellWidth - 1) / cellWidth);
  const auto rows = static_cast<uint32_t>((a.Height() + cellHeight - 1) / cellHeight);
  const uint32_t cells = columns * rows;
  const auto visit = [&](uint32_t cell) {
    const uint32_t row = cell / columns;
    if (row >= rows) return true;
    const int64_t x = a.left + cell % columns * cellWidth, y = a.top + row * cellHeight;
    const RECT piece =
        PieceOf(x, y, std::min(x + cellWidth, a.right), std::min(y + cellHeight, a.bottom));
    return sink.Unit(&piece, 1);
  };
  if (!Begin(sink, cells)) return;
  if (cells != 1) {
    const uint32_t taps = DissolveTaps[std::bit_width(cells - 1)];
    uint32_t value = 1;
    do {
      if (!visit(value)) return;
      value = value >> 1 ^ (value & 1 ? taps : 0);
    } while (value != 1);
  }
  visit(0);
}

// A strip of a ring: `from` to `to` along one axis, and in slices of one pixel from `begin` to
// `end` along the other, whichever lies further. `rising` is the way that leads inwards.
struct SpiralStrip {
  Axis slices;
  int64_t from, to;
  int64_t low, high;
  bool rising;
};

constexpr int64_t kSpiralWidth = 16;

bool WalkSpiralStrip(const SpiralStrip& strip, bool rising, PieceSink& sink) {
  const int64_t count = std::max<int64_t>(strip.high - strip.low, 0);
  for (int64_t i = 0; i < count; ++i) {
    const int64_t at = rising ? strip.low + i : strip.high - i - 1;
    const RECT piece = strip.slices == Axis::kColumns ? PieceOf(at, strip.from, at + 1, strip.to)
                                                      : PieceOf(strip.from, at, strip.to, at + 1);
    if (!sink.Unit(&piece, 1)) return false;
  }
  return true;
}

// The ring that begins `k` pixels from the edge: along the top to the right, down the right side,
// along the bottom, up the left side; or the same way back.
bool WalkRing(const Area& a, int64_t k, bool inward, PieceSink& sink) {
  const int64_t left = a.left + k, top = a.top + k, right = a.right - k, bottom = a.bottom - k;
  constexpr int64_t w = kSpiralWidth;
  const SpiralStrip ring[] = {
      {Axis::kColumns, top, std::min(bottom, top + w), left, right, true},
      {Axis::kRows, std::max(left, right - w), right, top + w, bottom, true},
      {Axis::kColumns, std::max(top, bottom - w), bottom, left, right - w, false},
      {Axis::kRows, left, std::min(right, left + w), top + w, bottom, false}};
  for (size_t i = 0; i < 4; ++i) {
    const SpiralStrip& strip = ring[inward ? i : 3 - i];
    if (!WalkSpiralStrip(strip, strip.rising == inward, sink)) return false;
  }
  return true;
}

// Inwards the rings begin at the edge. Outwards they begin at half the area's size, so that the
// last one may begin beyond the edge.
void WalkSpiral(const RECT& area, bool inward, PieceSink& sink) {
  const Area a(area);
  const int64_t low = std::min(a.Width(), a.Height()), high = std::max(a.Width(), a.Height());
  const int64_t half = (low + 1) / 2;
  const int64_t units = (low + kSpiralWidth - 1) / kSpiralWidth * high;
  if (!Begin(sink, units, PieceSink::Count::kEstimate)) return;
  if (inward) {
    for (int64_t k = 0; k < half && WalkRing(a, k, true, sink);)
      k += kSpiralWidth;
  } else {
    for (int64_t k = half; k > 0 && WalkRing(a, k - kSpiralWidth, false, sink);)
      k -= kSpiralWidth;
  }
}

enum class Walk : uint8_t { kNone, kRows, kColumns, kFrames, kDissolve, kSpiral };

constexpr uint8_t kWhole = 0;  // a cell as large as the area

struct Effect {
  Walk walk;
  uint8_t passes = 1;
  Order order = Order::kIn;
  uint8_t cellWidth = 0, cellHeight = 0;
};

constexpr Effect Cells(uint8_t width, uint8_t height) {
  return {Walk::kDissolve, 1, Order::kIn, width, height};
}

constexpr uint8_t kBlinds = 8;  // passes

// By EFFECT_ value.
constexpr Effect kEffects[EFFECT_COUNT] = {
    {Walk::kNone},
    {Walk::kRows, 1, Order::kForward},
    {Walk::kRows, 1, Order::kBackward},
    {Walk::kColumns, 1, Order::kForward},
    {Walk::kColumns, 1, Order::kBackward},
    Cells(2, 2),
    Cells(4, 4),
    Cells(8, 8),
    Cells(16, 16),
    Cells(kWhole, 1),
    Cells(1, kWhole),
    {Walk::kColumns, 1, Order::kOut},
    {Walk::kRows, 1, Order::kOut},
    {Walk::kRows, kBlinds, Order::kOut},
    {Walk::kColumns, kBlinds, Order::kOut},
    {Walk::kFrames, 1, Order::kIn},
    {Walk::kFrames, 1, Order::kOut},
    {Walk::kFrames, kBlinds, Order::kIn},
    {Walk::kFrames, kBlinds, Order::kOut},
    {Walk::kSpiral, 1, Order::kIn},
    {Walk::kSpiral, 1, Order::kOut},
    {Walk::kRows, 1, Order::kIn},
    {Walk::kColumns, 1, Order::kIn},
    {Walk::kColumns, kBlinds, Order::kIn},
    {Walk::kRows, kBlinds, Order::kIn},
    {Walk::kColumns, kBlinds, Order::kForward},
    {Walk::kColumns, kBlinds, Order::kBackward},
    {Walk::kRows, kBlinds, Order::kBackward},
    {Walk::kRows, kBlinds, Order::kForward},
};

}  // namespace

void WalkPieces(uint32_t effect, const RECT& area, PieceSink& sink) {
  const Effect& e = kEffects[effect];
  const Area a(area);
  switch (e.walk) {
    case Walk::kNone:
      return;
    case Walk::kRows:
      return WalkStrips(area, Axis::kRows, e.order, e.passes, sink);
    case Walk::kColumns:
      return WalkStrips(area, Axis::kColumns, e.order, e.passes, sink);
    case Walk::kFrames:
      return WalkFrames(area, e.order == Order::kOut, e.passes, sink);
    case Walk::kDissolve:
      return WalkDissolve(area, e.cellWidth ? e.cellWidth : a.Width(),
                          e.cellHeight ? e.cellHeight : a.Height(), sink);
    case Walk::kSpiral:
      return WalkSpiral(area, e.order == Order::kIn, sink);
  }
}

bool ShowsSource(uint32_t effect) {
  const Walk walk = kEffects[effect].walk;
  return walk == Walk::kNone || walk == Walk::kDissolve || walk == Walk::kSpiral;
}

}  // namespace vn
