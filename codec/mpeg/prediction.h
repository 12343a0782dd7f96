#pragma once

#include "mpeg/frame.h"

namespace pqx_codec::mpeg {

/// In half samples.
struct Vector {
  int x = 0, y = 0;
};

/// The rows of a frame that a macroblock belongs to: all of them, or those of one field.
enum class Rows { top, bottom, all };

struct Area {
  int x, y;  // of luma, among those rows
  int rows;  // 16 or 8, by 16 columns
};

/// Predicts an area, or averages it into what another prediction has left there. False, with nothing done, if the
/// vector leads out of the picture.
bool predict(const Frame& from, Rows from_rows, Frame& to, Rows to_rows, const Area& area, Vector vector,
             bool average);

}  // namespace pqx_codec::mpeg
