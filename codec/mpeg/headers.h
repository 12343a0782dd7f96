/// Reads headers, from behind their start codes on. Throws Failure for what cannot be or is not supported.
#pragma once

#include "bits/bit_reader.h"
#include "mpeg/format.h"

namespace pqx_codec::mpeg {

/// As of MPEG-1.
Sequence read_sequence_header(BitReader& bits);
/// Makes it one of MPEG-2.
void read_sequence_extension(BitReader& bits, Sequence& sequence);
void read_quant_matrix_extension(BitReader& bits, QuantMatrices& matrices);

Picture read_picture_header(BitReader& bits);
void read_picture_coding_extension(BitReader& bits, Picture& picture);

}  // namespace pqx_codec::mpeg
