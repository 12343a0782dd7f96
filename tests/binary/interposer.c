/* Stands in for the operations that other operations call, and counts. */
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

static struct {
  const char* name;
  int calls;
} counters[16];

static int* counter(const char* name) {
  int i = 0;
  while (counters[i].name && strcmp(counters[i].name, name) != 0) ++i;
  counters[i].name = name;
  return &counters[i].calls;
}

int replaced_calls(const char* name) { return *counter(name); }

#define COUNTED(name) ++*counter(#name)

void* __pqx_Malloc(int32_t size) {
  COUNTED(__pqx_Malloc);
  return malloc((size_t)size);
}

void __pqx_Free(void* ptr) {
  COUNTED(__pqx_Free);
  free(ptr);
}

#define STAND_IN(name) \
  int32_t name(void) { \
    COUNTED(name);     \
    return 0;          \
  }                    \
  int32_t name(void)

STAND_IN(__pqx_Video_DCT8x8Fwd_16S);
STAND_IN(__pqx_Video_DCT16x16Fwd_16S);
STAND_IN(__pqx_Vector_SwapByte_32S);
STAND_IN(__pqx_Video_UpSample420_BL_8U);
STAND_IN(__pqx_Video_ColorYCC2RGB444_8U);
STAND_IN(__pqx_Video_ColorYCC2BGRA444_8U);
STAND_IN(pqx_VideoInterpX_Y_XY_8U_w16);
STAND_IN(pqx_VideoInterpX_Y_XY_8U_comm);
