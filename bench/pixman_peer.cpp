// pixman's quarter turn of packed 24-bit pixels, by a transform, into memory that is there.
#include <pixman.h>

#include "bench/turns_beside.h"

namespace vn::bench {
namespace {

class Pixman {
 public:
  explicit Pixman(const Plane& picture)
      : from_(picture), to_(picture.height, picture.width, picture.bits) {
    source_ = pixman_image_create_bits(PIXMAN_r8g8b8, from_.width, from_.height,
                                       reinterpret_cast<uint32_t*>(from_.data()), from_.stride);
    target_ = pixman_image_create_bits(PIXMAN_r8g8b8, to_.width, to_.height,
                                       reinterpret_cast<uint32_t*>(to_.data()), to_.stride);
    // From a place in the result to one in the source: x and y exchanged, y counted from the end.
    pixman_transform_t transform = {{{0, pixman_fixed_1, 0},
                                     {-pixman_fixed_1, 0, pixman_int_to_fixed(from_.height)},
                                     {0, 0, pixman_fixed_1}}};
    pixman_image_set_transform(source_, &transform);
  }
  Pixman(const Pixman&) = delete;
  Pixman& operator=(const Pixman&) = delete;
  ~Pixman() {
    pixman_image_unref(source_);
    pixman_image_unref(target_);
  }
  void Run() {
    pixman_image_composite32(PIXMAN_OP_SRC, source_, nullptr, target_, 0, 0, 0, 0, 0, 0, to_.width,
                             to_.height);
  }
  const Plane& Result() const { return to_; }

 private:
  Plane from_, to_;
  pixman_image_t *source_, *target_;
};

void Quarter24(benchmark::State& state) { QuarterTurnBeside<Pixman>(state, 24); }
BENCHMARK(Quarter24)
    ->Name("QuarterTurn/24/pixman")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn::bench
