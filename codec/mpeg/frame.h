#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/memory.h"
#include "mpeg/format.h"

namespace pqx_codec::mpeg {

/// A decoded frame: Y, Cb and Cr in whole macroblocks.
struct Frame {
  struct Plane {
    uint8_t* samples;
    int columns, rows;

    uint8_t* row(int y) const { return samples + ptrdiff_t{columns} * y; }
  };

  explicit Frame(const Sequence& s) : halved_rows(!s.chroma_422) {
    const int columns = 16 * s.macroblock_columns(), rows = 16 * s.macroblock_rows();
    const int chroma_rows = halved_rows ? rows / 2 : rows;
    const size_t luma = size_t(columns) * size_t(rows), chroma = size_t(columns) / 2 * size_t(chroma_rows);
    memory = uninitialized_memory(luma + 2 * chroma);
    planes = {Plane{memory.get(), columns, rows}, Plane{memory.get() + luma, columns / 2, chroma_rows},
              Plane{memory.get() + luma + chroma, columns / 2, chroma_rows}};
  }

  Memory memory;
  std::array<Plane, 3> planes;
  bool halved_rows;                                 // of chroma
  bool progressive = true, top_field_first = true;  // both fields show one moment; otherwise, which is the earlier
};

}  // namespace pqx_codec::mpeg
