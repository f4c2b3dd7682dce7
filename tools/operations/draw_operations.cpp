#include "tools/operations/draw_operations.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <sstream>
#include <string_view>
#include <utility>

#include "kernel/platform_objects.h"
#include "tools/operations/value_parsers.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

using Parsed = std::optional<Operation>;

constexpr int32_t kWidest = 10000;  // pixels, of pens
constexpr int32_t kTallest = 4000;  // pixels, of letters
constexpr int32_t kMost = 1 << 26;  // coordinates and sizes

// A device context over a bitmap's pixels. Coordinates are those of the picture as seen, and what
// lies outside of the bitmap's region is kept.
class BitmapContext {
 public:
  explicit BitmapContext(Bitmap& bitmap) : context_(Vn_CreateVornDC(bitmap)) {
    if (!context_)
      throw Failure("--draw: pictures outside of mapped memory (--low-memory) cannot be drawn on");
  }
  BitmapContext(const BitmapContext&) = delete;
  BitmapContext& operator=(const BitmapContext&) = delete;
  ~BitmapContext() { Vn_DeleteVornDC(context_); }
  operator HDC() const { return context_; }

 private:
  const HDC context_;
};

// A pen or a brush as the settings have it.
HPEN MakePen(const DrawSettings& settings) {
  return settings.pen.there ? CreatePen(PS_SOLID, settings.penWidth, settings.pen.color)
                            : CreatePen(PS_NULL, 0, 0);
}
HBRUSH MakeBrush(const DrawSettings& settings) {
  return settings.brush.there ? CreateSolidBrush(settings.brush.color)
                              : static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
}

// Something to draw: a call on a context in which pen and brush are selected.
struct Shape {
  virtual ~Shape() = default;
  virtual bool Draw(HDC context, const DrawSettings& settings) const = 0;
};

void DrawOn(Bitmap& bitmap, const Shape& shape, const DrawSettings& settings) {
  const OwnedObject<HPEN> pen(MakePen(settings));
  const OwnedObject<HBRUSH> brush(MakeBrush(settings));
  const BitmapContext context(bitmap);
  if (!SelectObject(context, pen.get()) || !SelectObject(context, brush.get()) ||
      !shape.Draw(context, settings)) {
    throw Failure("--draw: not enough memory");
  }
}

// Points of a line or a polygon.
struct Path : Shape {
  Path(std::vector<POINT> all, bool closes) : points(std::move(all)), closed(closes) {}
  bool Draw(HDC context, const DrawSettings& settings) const override {
    auto way = points;
    if (closed) return Polygon(context, way.data(), static_cast<int>(way.size()));
    // A thin line stops short of its end. One more step, and its last pixel is the end.
    if (settings.penWidth <= 1) way.push_back({way.back().x + 1, way.back().y});
    return Polyline(context, way.data(), static_cast<int>(way.size()));
  }

  const std::vector<POINT> points;
  const bool closed;
};

struct Box : Shape {
  Box(const RECT& box, bool isRound) : area(box), round(isRound) {}
  bool Draw(HDC context, const DrawSettings& settings) const override {
    const auto [left, top, right, bottom] = area;
    // A thin outline around a single pixel has no length, and none would be drawn.
    if (settings.pen.there && settings.penWidth == 1 && right - left == 1 && bottom - top == 1)
      return Path({{left, top}}, false).Draw(context, settings);
    if (round) return Ellipse(context, left, top, right, bottom);
    if (settings.pen.there) return Rectangle(context, left, top, right, bottom);
    // Without a pen a rectangle would lose a row and a column.
    const OwnedObject<HBRUSH> brush(MakeBrush(settings));
    return FillRect(context, &area, brush.get());
  }

  const RECT area;
  const bool round;
};

// Lines of text below each other, in the pen's colour, on the brush's if there is one.
struct Text : Shape {
  Text(POINT topLeft, int32_t letterSize, std::string letters)
      : at(topLeft), size(letterSize), text(std::move(letters)) {}

  bool Draw(HDC context, const DrawSettings& settings) const override {
    const OwnedObject<HFONT> font(
        CreateFontA(-size, 0, 0, 0, settings.bold ? FW_BOLD : FW_NORMAL, settings.italic, 0, 0,
                    DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                    DEFAULT_PITCH | FF_DONTCARE, settings.face.c_str()));
    const HGDIOBJ before = SelectObject(context, font.get());
    if (!before) return false;
    RequireFace(context, settings.face);
    SetTextColor(context, settings.pen.color);
    SetBkColor(context, settings.brush.color);
    SetBkMode(context, settings.brush.there ? OPAQUE : TRANSPARENT);
    bool drawn = true;
    std::istringstream lines(text);
    int32_t y = at.y;
    for (std::string line; drawn && std::getline(lines, line);) {
      const auto bytes = static_cast<int>(line.size());
      SIZE taken{};
      drawn = GetTextExtentPoint32A(context, line.c_str(), bytes, &taken) &&
              TextOutA(context, at.x, y, line.c_str(), bytes);
      y += taken.cy;
    }
    SelectObject(context, before);
    return drawn;
  }

  // A face of another name would draw in the place of one that is missing.
  static void RequireFace(HDC context, const std::string& wanted) {
    char name[256];
    if (!GetTextFaceA(context, sizeof name, name))
      throw Failure("--draw: there is no font: text needs FreeType, fontconfig and a font's file");
    constexpr std::string_view kGeneric[] = {"", "sans", "sans-serif", "serif", "monospace"};
    if (std::find(std::begin(kGeneric), std::end(kGeneric), wanted) != std::end(kGeneric)) return;
    const bool same = std::equal(
        wanted.begin(), wanted.end(), name, name + std::string(name).size(),
        [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
    if (!same)
      throw Failure("--font: '" + wanted + "' is not installed, the nearest is '" + name + "'");
  }

  const POINT at;
  const int32_t size;
  const std::string text;
};

// Whole numbers, each a coordinate or a size that can be drawn.
std::optional<std::vector<int32_t>> ParsePlaces(const std::string& text) {
  auto numbers = ParseNumberList(text);
  const auto inRange = [](int32_t n) { return n >= -kMost && n <= kMost; };
  if (numbers && !std::all_of(numbers->begin(), numbers->end(), inRange)) return std::nullopt;
  return numbers;
}

std::shared_ptr<Shape> ParsePath(const std::vector<int32_t>& numbers, bool closed) {
  if (numbers.size() < (closed ? 6u : 4u) || numbers.size() % 2) return nullptr;
  std::vector<POINT> points;
  for (size_t i = 0; i < numbers.size(); i += 2)
    points.push_back({numbers[i], numbers[i + 1]});
  return std::make_shared<Path>(std::move(points), closed);
}

std::shared_ptr<Shape> ParseBox(const std::vector<int32_t>& numbers, bool round) {
  if (numbers.size() != 4 || numbers[2] < 1 || numbers[3] < 1) return nullptr;
  const RECT area = {numbers[0], numbers[1], numbers[0] + numbers[2], numbers[1] + numbers[3]};
  return std::make_shared<Box>(area, round);
}

// "X,Y,SIZE,STRING": commas of the string are its own.
std::shared_ptr<Shape> ParseText(const std::string& value) {
  size_t end = 0;
  for (int i = 0; i < 3; ++i) {
    end = value.find(',', i ? end + 1 : 0);
    if (end == value.npos) return nullptr;
  }
  const auto numbers = ParsePlaces(value.substr(0, end));
  if (!numbers || (*numbers)[2] < 1 || (*numbers)[2] > kTallest) return nullptr;
  return std::make_shared<Text>(POINT{(*numbers)[0], (*numbers)[1]}, (*numbers)[2],
                                value.substr(end + 1));
}

std::shared_ptr<Shape> ParseShape(const std::string& value) {
  const size_t colon = value.find(':');
  if (colon == value.npos) return nullptr;
  const std::string name = value.substr(0, colon), rest = value.substr(colon + 1);
  if (name == "text") return ParseText(rest);
  const auto numbers = ParsePlaces(rest);
  if (!numbers) return nullptr;
  if (name == "line" || name == "polygon") return ParsePath(*numbers, name == "polygon");
  if (name == "rect" || name == "ellipse") return ParseBox(*numbers, name == "ellipse");
  return nullptr;
}

// Settings change nothing of the bitmap.
Operation Nothing() {
  return [](Bitmap&) {};
}

std::optional<Ink> ParseInk(const std::string& value) {
  if (value == "none") return Ink{false, 0};
  const auto color = ParseColor(value);
  if (!color) return std::nullopt;
  return Ink{true, RGB(color->red, color->green, color->blue)};
}

// "red", "#f00,3", "255,0,0,3"
Parsed ParsePen(const std::string& value, DrawSettings* settings) {
  auto ink = ParseInk(value);
  int32_t width = 1;
  if (!ink) {
    const size_t comma = value.rfind(',');
    if (comma == value.npos) return std::nullopt;
    const auto numbers = ParseNumberList(value.substr(comma + 1));
    ink = ParseInk(value.substr(0, comma));
    if (!ink || !numbers || (*numbers)[0] < 1 || (*numbers)[0] > kWidest) return std::nullopt;
    width = (*numbers)[0];
  }
  settings->pen = *ink;
  settings->penWidth = width;
  return Nothing();
}

Parsed ParseBrush(const std::string& value, DrawSettings* settings) {
  const auto ink = ParseInk(value);
  if (!ink) return std::nullopt;
  settings->brush = *ink;
  return Nothing();
}

// "serif", "DejaVu Sans,bold,italic"
Parsed ParseFont(std::string value, DrawSettings* settings) {
  const auto take = [&value](std::string_view suffix) {
    const bool there = value.ends_with(suffix);
    if (there) value.resize(value.size() - suffix.size());
    return there;
  };
  settings->italic = take(",italic");
  settings->bold = take(",bold");
  settings->face = value;
  return Nothing();
}

Parsed ParseDraw(const std::string& value, DrawSettings* settings) {
  const auto shape = ParseShape(value);
  if (!shape) return std::nullopt;
  return [shape, now = *settings](Bitmap& bitmap) { DrawOn(bitmap, *shape, now); };
}

}  // namespace

std::vector<OperationKind> DrawKinds(DrawSettings* settings) {
  const auto with = [settings](auto parse) {
    return [=](const std::string& value) { return parse(value, settings); };
  };
  return {
      {"--pen", "COLOUR[,WIDTH]|none", "What is drawn next has lines and letters like this",
       with(&ParsePen)},
      {"--brush", "COLOUR|none", "What is drawn next is filled with this, text has it behind it",
       with(&ParseBrush)},
      {"--font", "NAME[,bold][,italic]", "What is written next has these letters",
       with(&ParseFont)},
      {"--draw",
       "line:X,Y,X,Y,...|rect:X,Y,W,H|ellipse:X,Y,W,H|polygon:X,Y,X,Y,...|"
       "text:X,Y,SIZE,STRING",
       "Draw within the region, or on the whole picture", with(&ParseDraw)},
  };
}

}  // namespace vn::tool
