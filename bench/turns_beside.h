// The mirrors and turns that peers are set beside: pictures of the sizes that are compared, plain
// definitions of the results, and the runs of ours.
#ifndef VNCORE_BENCH_TURNS_BESIDE_H
#define VNCORE_BENCH_TURNS_BESIDE_H

#include <cstring>
#include <vector>

#include "bench/beside_peer.h"
#include "bench/pictures.h"
#include "geometry/right_angle.h"

namespace vn::bench {

// Pixels in rows, in memory of their own.
struct Plane {
  Plane(int32_t w, int32_t h, int32_t b)
      : width(w),
        height(h),
        bits(b),
        stride((w * b + 31) / 32 * 4),
        bytes(static_cast<size_t>(stride) * static_cast<size_t>(h)) {}
  // What a bitmap holds.
  explicit Plane(BitmapHandle* bitmap)
      : Plane(bitmap->Width, bitmap->Height, bitmap->BitsPerPixel) {
    const BitmapLock lock(bitmap);
    std::memcpy(bytes.data(), bitmap->Bits, bytes.size());
  }
  uint8_t* data() { return bytes.data(); }
  uint32_t Pixel(int32_t x, int32_t y) const {
    const uint8_t* row = bytes.data() + static_cast<size_t>(y) * static_cast<size_t>(stride);
    if (bits < 8) return row[x * bits / 8] >> (8 - bits - x * bits % 8) & ((1 << bits) - 1);
    uint32_t pixel = 0;
    std::memcpy(&pixel, row + x * (bits / 8), static_cast<size_t>(bits / 8));
    return pixel;
  }

  int32_t width, height, bits, stride;
  std::vector<uint8_t> bytes;
};

enum class Turn { kFlip, kMirror, kHalf, kClockwise };

// Whether `result` is `source` turned, pixel by pixel by the definition.
inline bool IsTurned(const Plane& result, const Plane& source, Turn turn) {
  const int32_t right = source.width - 1, bottom = source.height - 1;
  for (int32_t y = 0; y < result.height; ++y) {
    for (int32_t x = 0; x < result.width; ++x) {
      const uint32_t from = turn == Turn::kFlip     ? source.Pixel(x, bottom - y)
                            : turn == Turn::kMirror ? source.Pixel(right - x, y)
                            : turn == Turn::kHalf   ? source.Pixel(right - x, bottom - y)
                                                    : source.Pixel(y, bottom - x);
      if (result.Pixel(x, y) != from) return false;
    }
  }
  return true;
}

// 12 megapixels; an A4 page at 300 dots per inch for 1 bit.
inline Picture PictureToTurn(int32_t bits) {
  return bits == 1 ? Picture(2480, 3508, bits) : Picture(4272, 2848, bits);
}

// Ours, in place or as a whole call that makes the result's storage, beside `peer`, which likewise
// works in place on its picture or makes its own result. `peer` is an object with
//   explicit Peer(const Plane& picture)   takes the picture over,
//   void Run()                            the work under the clock,
//   Plane Result()                        what Run gave,
// where working in place twice gives the picture back.
template <class Peer>
void TurnBeside(benchmark::State& state, int32_t bits, Turn turn) {
  Picture picture = PictureToTurn(bits);
  picture->ViewOrigin = VIEW_TOP_FIRST;
  const auto ours = [&] {
    if (turn == Turn::kFlip) return Vn_FlipBitmap(picture);
    if (turn == Turn::kMirror) return Vn_ReverseBitmap(picture);
    return Vn_RotateBitmap(picture, turn == Turn::kHalf ? 180 : 90, 1);
  };
  const Plane before(picture.get());
  Peer peer(before);
  peer.Run();
  if (ours() != OK || !IsTurned(Plane(picture.get()), before, turn) ||
      !IsTurned(peer.Result(), before, turn)) {
    state.SkipWithError("a result is not the turned picture");
    return;
  }
  BesidePeer(state, double{1} * before.width * before.height, ours, [&] { peer.Run(); });
}

// The same for a peer that writes a quarter turn into memory that is there: so do ours.
template <class Peer>
void QuarterTurnBeside(benchmark::State& state, int32_t bits) {
  Picture picture = PictureToTurn(bits);
  picture->ViewOrigin = VIEW_TOP_FIRST;
  Picture result(static_cast<uint32_t>(picture->Height), static_cast<uint32_t>(picture->Width),
                 bits);
  const BitmapLock lockPicture(picture), lockResult(result);
  const auto ours = [&] { return TurnQuarter(picture, result, true, Progress(0)); };
  const Plane before(picture.get());
  Peer peer(before);
  peer.Run();
  if (ours() != OK || !IsTurned(Plane(result.get()), before, Turn::kClockwise) ||
      !IsTurned(peer.Result(), before, Turn::kClockwise)) {
    state.SkipWithError("a result is not the turned picture");
    return;
  }
  BesidePeer(state, double{1} * before.width * before.height, ours, [&] { peer.Run(); });
}

// By 17.3 degrees, keeping the size; results of peers differ in their rounding and are not
// compared.
template <class Peer>
void FineTurnBeside(benchmark::State& state, int32_t bits) {
  Picture picture = PictureToTurn(bits);
  picture->ViewOrigin = VIEW_TOP_FIRST;
  const Plane before(picture.get());
  Peer peer(before);
  BesidePeer(
      state, double{1} * before.width * before.height,
      [&] { Vn_RotateBitmapFine(picture, 1730, 0, RGB(255, 255, 255)); }, [&] { peer.Run(); });
}

}  // namespace vn::bench

#endif
