#pragma once

#include <algorithm>

namespace pqx_codec {

/// The samples x0 <= x < x1, y0 <= y < y1 of a picture.
struct Rectangle {
  int x0 = 0, y0 = 0, x1 = 0, y1 = 0;

  bool empty() const { return x0 >= x1 || y0 >= y1; }
  /// Grows until it holds another one too.
  void add(const Rectangle& r) {
    if (r.empty()) return;
    if (empty())
      *this = r;
    else
      *this = {std::min(x0, r.x0), std::min(y0, r.y0), std::max(x1, r.x1), std::max(y1, r.y1)};
  }
};

}  // namespace pqx_codec
