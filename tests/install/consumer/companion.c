#include <stdint.h>

int32_t pqx_Vector_SwapByte_32S(const int32_t* pSrc, int32_t* pDst, int32_t len);

int main(void) {
  int32_t word = 0x01020304;
  pqx_Vector_SwapByte_32S(&word, &word, 1);
  return word != 0x04030201;
}
