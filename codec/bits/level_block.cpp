#include "bits/level_block.h"

#include "pqx_video.h"

namespace pqx_codec {

void inverse_transform(const LevelBlock& block, uint8_t* pixels, int step) {
  const auto transform = block.is_dc_only()   ? pqx_Video_DCT8x8Inv_DC_16S_8U
                         : block.is_quarter() ? pqx_Video_DCT8x8Inv_1Q_16S_8U
                                              : pqx_Video_DCT8x8Inv_16S_8U;
  transform(block.levels.data(), pixels, step);
}

void inverse_transform(const LevelBlock& block, int16_t* residual) {
  const auto transform = block.is_dc_only()   ? pqx_Video_DCT8x8Inv_DC_16S
                         : block.is_quarter() ? pqx_Video_DCT8x8Inv_1Q_16S
                                              : pqx_Video_DCT8x8Inv_16S;
  transform(block.levels.data(), residual);
}

}  // namespace pqx_codec
