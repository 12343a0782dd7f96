#pragma once

#include <cstdint>
#include <vector>

#include "h263/prediction.h"

namespace pqx_codec::h263 {

/// Annex J: smooths the edges between the blocks of a frame.
/// @param quants  of the macroblocks in reading order, 0 for those that are not coded
/// @param size_of_macroblock  in samples of the plane
void deblock(Plane& plane, const std::vector<uint8_t>& quants, int size_of_macroblock);

}  // namespace pqx_codec::h263
