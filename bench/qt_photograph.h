// The picture of the colour benchmarks as an image of Qt's.
#ifndef VNCORE_BENCH_QT_PHOTOGRAPH_H
#define VNCORE_BENCH_QT_PHOTOGRAPH_H

#include <QImage>

#include "bench/photograph.h"

namespace vn::bench {

// Its pixels are ThePhotograph()'s own.
inline QImage QtPhotograph() {
  const Photograph& photograph = ThePhotograph();
  return QImage(photograph.pixels.data(), static_cast<int>(photograph.width),
                static_cast<int>(photograph.height), static_cast<int>(photograph.RowBytes()),
                QImage::Format_BGR888);
}

}  // namespace vn::bench

#endif
