#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "picture/image.h"

namespace pqx_codec {

/// A 4:2:0 picture: Y, U and V, the chroma planes with half as many columns and rows, rounded up.
struct YuvPicture {
  struct Component {
    int columns = 0, rows = 0;
    std::vector<uint8_t> samples;

    uint8_t* at(int x, int y) { return samples.data() + size_t(y) * size_t(columns) + x; }
    const uint8_t* at(int x, int y) const { return samples.data() + size_t(y) * size_t(columns) + x; }
  };

  YuvPicture() = default;
  YuvPicture(int width, int height) {
    check_dimensions(width, height);
    for (int k = 0; k < 3; ++k) {
      Component& c = planes[size_t(k)];
      c.columns = k ? (width + 1) / 2 : width;
      c.rows = k ? (height + 1) / 2 : height;
      c.samples.resize(size_t(c.columns) * size_t(c.rows));
    }
  }

  int width() const { return planes[0].columns; }
  int height() const { return planes[0].rows; }

  std::array<Component, 3> planes;
};

}  // namespace pqx_codec
