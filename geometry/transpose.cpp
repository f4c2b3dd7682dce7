#include "geometry/transpose.h"

#include "geometry/transpose_avx2.h"
#include "kernel/pixel_format.h"
#include "kernel/vector.h"

namespace vn {
namespace {

template <int Bits>
void Transpose(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
               ptrdiff_t destinationStride, size_t rows, size_t columns) {
  for (size_t x = 0; x < columns; ++x, destination += destinationStride) {
    const uint8_t* from = source;
    if constexpr (Bits < 8) {
      constexpr size_t kPerByte = 8 / Bits;
      for (size_t y = 0; y < rows; y += kPerByte) {
        uint32_t byte = 0;
        for (size_t i = 0; i < kPerByte; ++i) {
          byte <<= Bits;
          if (y + i >= rows) continue;
          byte |= IndexReader<Bits>::Get(from, x);
          from += sourceStride;
        }
        destination[y / kPerByte] = static_cast<uint8_t>(byte);
      }
    } else {
      constexpr size_t kBytes = Bits / 8;
      for (size_t y = 0; y < rows; ++y, from += sourceStride)
        std::memcpy(destination + y * kBytes, from + x * kBytes, kBytes);
    }
  }
}

#ifdef VNCORE_HAVE_AVX2
// What is too small for the vectors is turned plainly.
template <int Bits, TransposeTry* Vectors>
void TransposeByVectors(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
                        ptrdiff_t destinationStride, size_t rows, size_t columns) {
  if (!Vectors(source, sourceStride, destination, destinationStride, rows, columns)) {
    Transpose<Bits>(source, sourceStride, destination, destinationStride, rows, columns);
  }
}

template <int Bits>
constexpr Transposer kVectorForm = TransposeByVectors<Bits, Bits == 1    ? &Transpose1Avx2
                                                            : Bits == 4  ? &Transpose4Avx2
                                                            : Bits == 8  ? &Transpose8Avx2
                                                            : Bits == 16 ? &Transpose16Avx2
                                                            : Bits == 24 ? &Transpose24Avx2
                                                                         : &Transpose32Avx2>;
#endif

}  // namespace

Transposer TransposerOf(int32_t bitsPerPixel) {
  Transposer transposer = Transpose<32>;
  WithDepth(bitsPerPixel, [&](auto depth) {
    transposer = VNCORE_VECTOR_FORM(Transpose<depth>, kVectorForm<depth>);
  });
  return transposer;
}

}  // namespace vn
