// A fuzz target is a list of calls: each byte of an input chooses one, which reads its arguments
// from the bytes behind it.
//
// To join, a function whose arguments may be anything needs one line, Decoded<&Vn_Function>; one
// with a contract (buffers, counts, rows) a line or two of its own.
//
// A call has its number for good, since the files of the corpus are written in numbers: those that
// all targets share count from 0, a target's own from kFirstOwnCall, and a number without a call
// does nothing. New calls go to the end of a list.
#ifndef VNCORE_FUZZ_CALLS_H
#define VNCORE_FUZZ_CALLS_H

#include <iterator>
#include <tuple>
#include <type_traits>

#include "fuzz/world.h"

namespace vn::fuzz {

using Call = void (*)(World& world, Input& input);

// An argument of type T, drawn from the input, or a place for a result.
template <class T>
struct Argument;

template <>
struct Argument<BitmapHandle*> {
  BitmapHandle* bitmap;
  Argument(World& world, Input& input) : bitmap(world.Bitmap(input)) {}
  BitmapHandle* get() { return bitmap; }
};
template <>
struct Argument<const BitmapHandle*> : Argument<BitmapHandle*> {
  using Argument<BitmapHandle*>::Argument;
};
template <>
struct Argument<int32_t> {
  int32_t value;
  Argument(World&, Input& input) : value(input.Number()) {}
  int32_t get() { return value; }
};
template <>
struct Argument<uint32_t> {
  uint32_t value;
  Argument(World&, Input& input) : value(static_cast<uint32_t>(input.Number())) {}
  uint32_t get() { return value; }
};
template <>
struct Argument<HDC> {
  HDC value;
  Argument(World& world, Input& input) : value(world.Device(input)) {}
  HDC get() { return value; }
};
template <>
struct Argument<HPALETTE> {
  HPALETTE value;
  Argument(World& world, Input& input) : value(world.Palette(input)) {}
  HPALETTE get() { return value; }
};
template <>
struct Argument<HRGN> {
  HRGN value;
  Argument(World& world, Input& input) : value(world.Region(input)) {}
  HRGN get() { return value; }
};
template <>
struct Argument<const RGBQUAD*> {
  const RGBQUAD* value;
  Argument(World& world, Input& input) : value(world.Colors(input)) {}
  const RGBQUAD* get() { return value; }
};
template <>
struct Argument<const RECT*> {
  RECT rect;
  bool present;
  Argument(World&, Input& input) : present(input.Below(8) != 7) {
    if (!present) return;
    rect.left = input.Number();
    rect.top = input.Number();
    rect.right = input.Number();
    rect.bottom = input.Number();
  }
  const RECT* get() { return present ? &rect : nullptr; }
};
template <>
struct Argument<const RegionTransform*> {
  RegionTransform transform;
  bool present;
  Argument(World&, Input& input) : present(!input.Flag()) {
    if (!present) return;
    transform.ViewOrigin = input.OneOf({VIEW_TOP_FIRST, VIEW_BOTTOM_FIRST, 1});
    transform.XScaleNumerator = input.Number();
    transform.XScaleDenominator = input.Number();
    transform.YScaleNumerator = input.Number();
    transform.YScaleDenominator = input.Number();
    transform.XOffset = input.Number();
    transform.YOffset = input.Number();
  }
  const RegionTransform* get() { return present ? &transform : nullptr; }
};
template <class T>
struct Result {
  T result{};
  Result(World&, Input&) {}
  T* get() { return &result; }
};
template <>
struct Argument<int32_t*> : Result<int32_t> {
  using Result::Result;
};
template <>
struct Argument<uint32_t*> : Result<uint32_t> {
  using Result::Result;
};
template <>
struct Argument<RECT*> : Result<RECT> {
  using Result::Result;
};
template <>
struct Argument<VersionRecord*> : Result<VersionRecord> {
  using Result::Result;
};
template <>
struct Argument<HRGN*> : Result<HRGN> {
  World& world;
  Argument(World& w, Input& input) : Result(w, input), world(w) {}
  ~Argument() { world.Keep(result); }
};

template <auto function, class R, class... Arguments>
void CallDecoded(R(VN_CALL*)(Arguments...), World& world, Input& input) {
  // In braces, and so drawn in the order of the parameters.
  std::tuple<Argument<Arguments>...> arguments{Argument<Arguments>(world, input)...};
  const auto call = [](Argument<Arguments>&... each) { return function(each.get()...); };
  if constexpr (std::is_same_v<R, HPALETTE>) {
    world.Keep(std::apply(call, arguments));
  } else {
    std::apply(call, arguments);
  }
}
// The call of a function with whatever comes.
template <auto function>
void Decoded(World& world, Input& input) {
  CallDecoded<function>(function, world, input);
}

// What the status callback returns when it stops a function.
constexpr VnStatus kStop = 77;

constexpr size_t kCallNumbers = 64;
constexpr size_t kFirstOwnCall = 16;

// Runs the calls of an input in a world on Win32 and in one on Win32s.
void RunInput(const uint8_t* data, size_t size, const Call* own, size_t count);

// Makes a list of calls the target of this program.
#define VN_FUZZ_TARGET(calls)                                                          \
  static_assert(std::size(calls) <= vn::fuzz::kCallNumbers - vn::fuzz::kFirstOwnCall); \
  extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {            \
    vn::fuzz::RunInput(data, size, calls, std::size(calls));                           \
    return 0;                                                                          \
  }

}  // namespace vn::fuzz

#endif
