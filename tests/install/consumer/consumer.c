#include <pqx_video.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  int16_t block[64] = {800};
  uint8_t pixels[64];
  pqx_Video_DCT8x8Inv_16S_8U(block, pixels, 8);
  printf("%s %s %d\n", pqx_GetVersion(), pqxid, pixels[63]);
  return strcmp(pqx_GetVersion(), pqxid + 4) != 0 || pixels[63] != 100;
}
