// Converts two pixels and tells the version.
#include <pqx_video.h>
#include <stdio.h>

int main(void) {
  const uint8_t y[2] = {76, 150}, cb[2] = {85, 44}, cr[2] = {255, 21};
  uint8_t rgb[6];
  pqx_Video_ColorYCC2RGB444_8U(y, cb, cr, rgb, 2);
  printf("%s: %d %d %d, %d %d %d\n", pqx_GetVersion(), rgb[0], rgb[1], rgb[2], rgb[3], rgb[4], rgb[5]);
  return 0;
}
