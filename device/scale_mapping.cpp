// All coordinates are 32-bit words that wrap: products of a large picture and a large destination
// leave them. Words that wrapped can give steps that lead out of the bitmap; such a paint is
// dropped.
#include "device/scale_mapping.h"

#include <algorithm>

#include "kernel/rects.h"

namespace vn {
namespace {

uint32_t Word(int64_t value) { return static_cast<uint32_t>(value); }
int32_t Signed(uint32_t word) { return static_cast<int32_t>(word); }

// `rect` with its storage rows as lines counted from the top of the picture.
RECT InLines(const PaintJob& job, const RECT& rect) {
  if (!job.BottomFirst()) return rect;
  const uint32_t height = Word(job.bitmap->Height);
  return {rect.left, Signed(height - Word(rect.bottom)), rect.right,
          Signed(height - Word(rect.top))};
}

// One axis. The source's span `size` maps onto `extent` device pixels.
struct Axis {
  int32_t size, extent;

  bool Empty() const { return size <= 0 || extent <= 0; }
  // `source` (from the source's edge) in device units times size.
  int32_t Scaled(uint32_t source, LONG edge) const {
    return Signed(source * Word(extent) + Word(edge) * Word(size));
  }
  int32_t Whole(LONG device) const { return Signed(Word(device) * Word(size)); }
  Stepper Steps(uint32_t accumulator) const {
    return Stepper::Dividing(Word(size), Word(extent), accumulator);
  }
};

// Start position `from` / extent behind `base`; false when it is no source pixel.
bool Start(const Axis& axis, int32_t from, uint32_t base, uint32_t* first, Stepper* steps) {
  if (from < 0) return false;
  *first = Word(from / axis.extent) + base;
  *steps = axis.Steps(Word(from % axis.extent));
  return Signed(*first) >= 0;
}

uint64_t PositionOf(uint32_t first, const Stepper& steps, uint64_t d) {
  return first + d * steps.quotient + (steps.accumulator + d * steps.remainder) / steps.divisor;
}

void CarryIfEqual(bool expand, Stepper* steps) {
  if (!expand || steps->remainder) return;
  steps->quotient = 0;
  steps->remainder = steps->divisor;
}

}  // namespace

uint64_t ScaleMapping::ColumnOf(uint64_t d) const { return PositionOf(firstColumn, column, d); }

void ScaleMapping::CarryAtEqualSizes() {
  CarryIfEqual(expandX, &column);
  CarryIfEqual(expandY, &row);
}

bool MapScaled(const PaintJob& job, ScaleMapping* mapping) {
  const RECT& s = job.source;
  const RECT& d = job.destination;
  const RECT& k = job.destinationClip;
  const RECT c = InLines(job, job.sourceClip);
  const uint32_t height = Word(job.bitmap->Height);
  const uint32_t bottomLine = Word(InLines(job, s).bottom);
  // A rectangle with its bottom above its top has an empty clip; so magnitudes need no thought.
  const Axis across{Signed(Word(s.right) - Word(s.left)), Signed(Word(d.right) - Word(d.left))};
  const Axis down{Signed(Word(s.bottom) - Word(s.top)), Signed(Word(d.bottom) - Word(d.top))};
  if (across.Empty() || down.Empty()) return false;

  const int32_t left =
      std::max(across.Scaled(Word(c.left) - Word(s.left), d.left), across.Whole(k.left));
  const int32_t right =
      std::min(across.Scaled(Word(c.right) - Word(s.left), d.left), across.Whole(k.right));
  const int32_t top = std::max(down.Scaled(Word(c.top) - bottomLine, d.bottom), down.Whole(k.top));
  const int32_t bottom =
      std::min(down.Scaled(Word(c.bottom) - bottomLine, d.bottom), down.Whole(k.bottom));
  ScaleMapping& m = *mapping;
  m.x0 = left / across.size;
  m.x1 = right / across.size;
  m.y0 = top / down.size;
  m.y1 = bottom / down.size;
  if (m.x1 <= m.x0 || m.y1 <= m.y0) return false;
  if (int64_t{m.x1} - m.x0 > INT32_MAX || int64_t{m.y1} - m.y0 > INT32_MAX) return false;

  const int32_t fromLeft = Signed(Word(left) - Word(across.Whole(d.left)));
  const int32_t fromBottom = Signed(Word(down.Whole(d.bottom)) - Word(bottom));
  if (!Start(across, fromLeft, Word(s.left), &m.firstColumn, &m.column)) return false;
  if (!Start(down, fromBottom, height - bottomLine, &m.firstRow, &m.row)) return false;
  m.expandX = across.size <= across.extent;
  m.expandY = down.size <= down.extent;
  m.sourceWidth = across.size;
  return m.ColumnOf(m.Pixels() - 1) < Word(job.bitmap->Width) &&
         PositionOf(m.firstRow, m.row, m.Rows() - 1) < height;
}

bool MapUnscaled(const PaintJob& job, ShiftMapping* mapping) {
  const RECT c = InLines(job, job.sourceClip);
  const uint32_t dx = Word(job.destination.left) - Word(job.source.left);
  const uint32_t dy = Word(job.destination.top) - Word(InLines(job, job.source).top);
  const auto shifted = [](const RECT& rect, uint32_t x, uint32_t y) -> RECT {
    return {Signed(Word(rect.left) + x), Signed(Word(rect.top) + y), Signed(Word(rect.right) + x),
            Signed(Word(rect.bottom) + y)};
  };
  if (!IntersectRects(&mapping->device, job.destinationClip, shifted(c, dx, dy))) return false;
  mapping->source = shifted(mapping->device, 0 - dx, 0 - dy);
  return true;
}

}  // namespace vn
