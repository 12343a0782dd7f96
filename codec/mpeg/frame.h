#pragma once

#include <array>
#include <cstddef>

#include "mpeg/format.h"
#include "picture/plane.h"

namespace pqx_codec::mpeg {

/// A decoded frame: Y, Cb and Cr in whole macroblocks.
struct Frame {
  explicit Frame(const Sequence& s)
      : planes{plane(s, 16, 16), plane(s, 8, s.chroma_422 ? 16 : 8), plane(s, 8, s.chroma_422 ? 16 : 8)} {}

  std::array<Plane, 3> planes;
  bool progressive = true, top_field_first = true;  // both fields show one moment; otherwise, which is the earlier

 private:
  static Plane plane(const Sequence& s, int columns, int rows) {
    columns *= s.macroblock_columns();
    rows *= s.macroblock_rows();
    return Plane(columns, rows, columns, rows);
  }
};

}  // namespace pqx_codec::mpeg
