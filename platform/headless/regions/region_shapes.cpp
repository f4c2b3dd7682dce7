#include "platform/headless/regions/region_shapes.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>
#include <vector>

namespace headless {
namespace {

// Twice the error of the stepping below comes to 12 times the cube of the larger side at most, which
// must stay within 64 bits.
constexpr int64_t kLargestEllipse = 900'000;
static_assert(kLargestEllipse * kLargestEllipse <= INT64_MAX / 12 / kLargestEllipse);

// A polygon is scanned row by row, at up to a rectangle and more for each.
constexpr int64_t kMostPolygonRows = 1 << 22;

// The way along a quarter of an ellipse of `width` by `height` pixels, from its end at the side to
// the one at the tip. Midpoint stepping after Zingl (A Rasterizing Algorithm for Drawing Curves,
// 2012), on eight times the squared distances.
class QuarterEllipse {
 public:
  QuarterEllipse(int32_t width, int32_t height) {
    const int64_t a = width - 1, b = height - 1, odd = b & 1;
    stepX_ = 8 * a * a, stepY_ = 8 * b * b;
    dx_ = 4 * (1 - a) * b * b, dy_ = 4 * (odd + 1) * a * a;
    error_ = dx_ + dy_ + odd * a * a;
  }
  int32_t inset = 0;  // pixels left free at the side
  int32_t row = 0;    // from the middle on

  void Step() {
    const int64_t twice = 2 * error_;
    if (twice >= dx_) {
      ++inset;
      error_ += dx_ += stepY_;
    }
    if (twice <= dy_) {
      ++row;
      error_ += dy_ += stepX_;
    }
  }

 private:
  int64_t stepX_, stepY_, dx_, dy_, error_;
};

// Entry i is the number of pixels that row i below the vertical middle of an ellipse leaves free on
// each side. The tips of a thin ellipse, where the stepping runs out of columns before it has all
// its rows, take the inset `narrowest`, and none is above it.
std::vector<int32_t> EllipseInsets(int32_t width, int32_t height, int32_t narrowest) {
  const size_t rows = static_cast<size_t>(height - height / 2);
  std::vector<int32_t> insets;
  insets.reserve(rows);
  insets.push_back(0);
  QuarterEllipse quarter(width, height);
  while (quarter.inset <= width / 2 && insets.size() < rows) {
    const int32_t row = quarter.row;
    quarter.Step();
    if (quarter.row != row) insets.push_back(std::min(quarter.inset, narrowest));
  }
  insets.resize(rows, narrowest);
  return insets;
}

}  // namespace

RegionSet RoundRectSet(int32_t left, int32_t top, int32_t right, int32_t bottom,
                       int32_t cornerWidth, int32_t cornerHeight) {
  if (left > right) std::swap(left, right);
  if (top > bottom) std::swap(top, bottom);
  const auto corner = [](int32_t low, int32_t high, int64_t size) {
    return std::min(int64_t{high} - low, std::abs(size));
  };
  // An empty box becomes a box of one pixel to the upper left; no wrap at the far end of the plane.
  right = static_cast<int32_t>(static_cast<uint32_t>(right) - 1);
  bottom = static_cast<int32_t>(static_cast<uint32_t>(bottom) - 1);
  const int64_t wide = corner(left, right, cornerWidth), high = corner(top, bottom, cornerHeight);
  if (wide < 2 || high < 2) return RegionSet::FromRect(left, top, right, bottom);
  if (wide > kLargestEllipse || high > kLargestEllipse) throw std::bad_alloc();
  const auto width = static_cast<int32_t>(wide), height = static_cast<int32_t>(high);

  // No row of the box may be left empty.
  const auto narrowest = static_cast<int32_t>(std::min(wide / 2, (int64_t{right} - left - 1) / 2));
  const std::vector<int32_t> insets = EllipseInsets(width, height, narrowest);
  RectList rects;
  RECT* out = rects.Room(static_cast<size_t>(height));
  const auto row = [&](size_t fromMiddle, int32_t y, int32_t end) {
    const int32_t inset = insets[fromMiddle];
    *out++ = {left + inset, y, right - inset, end};
  };
  const int32_t above = height / 2;
  for (int32_t i = 0; i < above; ++i) {
    row(static_cast<size_t>(height - 1 - i - above), top + i, top + i + 1);
  }
  // The middle row is as high as the straight sides.
  for (int32_t i = above; i < height; ++i) {
    const int32_t end = bottom - height + i + 1;
    row(static_cast<size_t>(i - above), i == above ? top + above : end - 1, end);
  }
  rects.CommitTo(out);
  return RegionSet::FromBands(std::move(rects), false);
}

std::vector<POINT> EllipseOutline(const RECT& box) {
  const int64_t wide = int64_t{box.right} - box.left, high = int64_t{box.bottom} - box.top;
  if (wide > kLargestEllipse || high > kLargestEllipse) throw std::bad_alloc();
  const auto width = static_cast<int32_t>(wide), height = static_cast<int32_t>(high);
  std::vector<POINT> points;
  const int32_t middle = (width - 1) / 2;
  for (QuarterEllipse quarter(width, height); quarter.inset <= middle; quarter.Step()) {
    points.push_back({box.right - 1 - quarter.inset, box.top + height / 2 + quarter.row});
  }
  // The tip of a thin one, as above.
  if (points.back().y < box.bottom - 1) points.push_back({box.right - 1 - middle, box.bottom - 1});
  // The other half of the lower side, and then the upper one.
  for (size_t i = points.size(); i > 0; --i)
    points.push_back({box.left + box.right - 1 - points[i - 1].x, points[i - 1].y});
  for (size_t i = points.size(); i > 0; --i)
    points.push_back({points[i - 1].x, box.top + box.bottom - 1 - points[i - 1].y});
  return points;
}

namespace {

// A polygon's edge on its way down: where it crosses the row of pixel corners, rounded up.
struct Edge {
  int32_t top, bottom;  // the first row, and the row behind the last
  int32_t direction;    // 1 where the polygon's outline runs down, -1 where it runs up
  int64_t x;            // the column at the present row
  int64_t step, remainder, divisor, accumulated;

  Edge(POINT from, POINT to) : direction(from.y < to.y ? 1 : -1) {
    if (direction < 0) std::swap(from, to);
    top = from.y;
    bottom = to.y;
    x = from.x;
    divisor = int64_t{to.y} - from.y;
    const int64_t across = int64_t{to.x} - from.x;
    step = across / divisor - (across % divisor < 0);
    remainder = across - step * divisor;
    accumulated = 0;
  }
  // Leaves out the rows above `first` and those from `end` on. False when none is left.
  bool Cut(int32_t first, int32_t end) {
    bottom = std::min(bottom, end);
    if (bottom <= first) return false;
    if (top < first) {
      // Both factors are below the divisor, which is below 2^32.
      const int64_t rows = int64_t{first} - top;
      const auto whole = static_cast<uint64_t>(divisor);
      const uint64_t over = static_cast<uint64_t>(rows) * static_cast<uint64_t>(remainder);
      const uint64_t columns = over / whole + (over % whole != 0);
      x += step * rows + static_cast<int64_t>(columns);
      accumulated = static_cast<int64_t>(over - columns * whole);
      top = first;
    }
    return top < bottom;
  }
  void Down() {
    x += step;
    accumulated += remainder;
    // x is the true crossing rounded up; accumulated, in 1 - divisor to 0, how far it lies ahead.
    if (accumulated > 0) {
      accumulated -= divisor;
      ++x;
    }
  }
};

std::vector<Edge> EdgesOf(const POINT* points, size_t count, int32_t firstRow, int32_t endRow) {
  std::vector<Edge> edges;
  edges.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    const POINT from = points[i == 0 ? count - 1 : i - 1], to = points[i];
    if (from.y == to.y) continue;
    edges.emplace_back(from, to);
    if (!edges.back().Cut(firstRow, endRow)) edges.pop_back();
  }
  std::stable_sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) {
    return a.top != b.top ? a.top < b.top : a.x < b.x;
  });
  return edges;
}

// Joins the band from `first` on to the band from `above` on when they have the same runs and
// touch. The beginning of the last band.
size_t CloseBand(RectList& rects, size_t above, size_t first) {
  const size_t count = rects.size() - first;
  if (count == 0) return above;
  if (first - above != count || rects[above].bottom != rects[first].top) return first;
  for (size_t i = 0; i < count; ++i) {
    if (rects[above + i].left != rects[first + i].left ||
        rects[above + i].right != rects[first + i].right) {
      return first;
    }
  }
  for (size_t i = 0; i < count; ++i)
    rects[above + i].bottom = rects[first].bottom;
  rects.CommitTo(rects.begin() + first);
  return above;
}

// Appends the runs of row `y` between the active edges, which stand by rising column. Runs that
// touch are one.
void AppendRuns(RectList& rects, const std::vector<Edge*>& active, int32_t y, int fillRule) {
  const size_t first = rects.size();
  int32_t inside = 0;
  int64_t left = 0;
  for (const Edge* edge : active) {
    const int32_t before = inside;
    inside = fillRule == WINDING ? inside + edge->direction : inside ^ 1;
    if (before == 0) {
      left = edge->x;
    } else if (inside == 0 && left != edge->x) {
      if (fillRule != WINDING && rects.size() > first && rects[rects.size() - 1].right == left) {
        rects[rects.size() - 1].right = static_cast<LONG>(edge->x);
      } else {
        rects.Append(RECT{static_cast<LONG>(left), y, static_cast<LONG>(edge->x), y + 1});
      }
    }
  }
}

// Merges the edges that begin at row `y`, from `next` on, into the active ones; of edges at one
// column the new ones come first. Returns the next edge to come.
size_t Enter(std::vector<Edge*>& active, std::vector<Edge>& edges, size_t next, int32_t y) {
  if (next == edges.size() || edges[next].top != y) return next;
  std::vector<Edge*> merged;
  merged.reserve(edges.size());
  auto old = active.begin();
  for (; next < edges.size() && edges[next].top == y; ++next) {
    for (; old != active.end() && (*old)->x < edges[next].x; ++old)
      merged.push_back(*old);
    merged.push_back(&edges[next]);
  }
  merged.insert(merged.end(), old, active.end());
  active.swap(merged);
  return next;
}

// Moves all edges to the next row and puts them in order again: few have crossed.
void Down(std::vector<Edge*>& active) {
  for (size_t i = 0; i < active.size(); ++i) {
    Edge* const edge = active[i];
    edge->Down();
    size_t at = i;
    for (; at > 0 && active[at - 1]->x > edge->x; --at)
      active[at] = active[at - 1];
    active[at] = edge;
  }
}

}  // namespace

RegionSet PolygonSet(const POINT* points, size_t count, int fillRule, int32_t firstRow,
                     int32_t endRow) {
  std::vector<Edge> edges = EdgesOf(points, count, firstRow, endRow);
  RectList rects;
  if (edges.empty()) return RegionSet();
  int32_t bottom = edges[0].bottom;
  for (const Edge& edge : edges)
    bottom = std::max(bottom, edge.bottom);
  if (int64_t{bottom} - edges[0].top > kMostPolygonRows) throw std::bad_alloc();
  std::vector<Edge*> active;
  active.reserve(edges.size());
  size_t next = 0, above = 0;
  for (int32_t y = edges[0].top; next < edges.size() || !active.empty(); ++y) {
    if (active.empty()) y = edges[next].top;
    next = Enter(active, edges, next, y);
    const size_t first = rects.size();
    AppendRuns(rects, active, y, fillRule);
    above = CloseBand(rects, above, first);
    std::erase_if(active, [y](const Edge* edge) { return edge->bottom == y + 1; });
    Down(active);
  }
  return RegionSet::FromBands(std::move(rects), true);
}

}  // namespace headless
