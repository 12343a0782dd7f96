#include "common/export.h"
#include "mc/overlapped.h"

pqx_Status pqx_Video_H263OverlappedMC_8U_16S(const uint8_t* pRef, int refStep, int16_t* pDst, int curX, int curY,
                                             int aboveX, int aboveY, int belowX, int belowY, int leftX, int leftY,
                                             int rightX, int rightY) {
  using pqx::mc::grid_position;
  const pqx::mc::Predictions from = {
      grid_position(pRef, refStep, curX, curY), grid_position(pRef, refStep, aboveX, aboveY),
      grid_position(pRef, refStep, belowX, belowY), grid_position(pRef, refStep, leftX, leftY),
      grid_position(pRef, refStep, rightX, rightY)};
  return pqx::mc::overlapped(from, refStep,
                             [=](int64_t r, pqx::i16x8 samples) { pqx::store(pDst + 8 * r, samples); });
}
PQX_SECOND_NAME(pqx_Video_H263OverlappedMC_8U_16S);
