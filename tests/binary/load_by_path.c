/* load_by_path LIBRARY own|replaced: loads the library by its path and makes every call that an operation makes of
 * another. With the interposer preloaded each of them is counted there, once for every call. */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "pqx_video.h"

static int (*replaced_calls)(const char*);
static int failures = 0;

static void expect(const char* name, int wanted) {
  const int found = replaced_calls(name);
  if (found == wanted) return;
  printf("%s: %d calls were replaced, not %d\n", name, found, wanted);
  ++failures;
}

static int none(const char* name) {
  (void)name;
  return 0;
}

#define FIND(name)                        \
  __typeof__(name)* name;                 \
  *(void**)&name = dlsym(library, #name); \
  if (!name) return printf("%s is missing\n", #name), 1

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (!library) return printf("%s\n", dlerror()), 1;
  const int replaced = strcmp(argv[2], "replaced") == 0;
  *(void**)&replaced_calls = dlsym(RTLD_DEFAULT, "replaced_calls");
  if (replaced && !replaced_calls) return printf("the interposer is not loaded\n"), 1;
  if (!replaced) replaced_calls = none;

  FIND(pqx_Video_DCT8x8Fwd_12S_16S);
  FIND(pqx_Video_DCT16x16Fwd_10S_16S);
  FIND(pqx_Video_ColorRGBA2ABGR_32U);
  FIND(pqx_Video_ColorYCC2RGB420_BL_8U);
  FIND(pqx_Video_ColorYCC2BGRA420_BL_8U);
  FIND(pqx_Video_InterpX_Y_XY_8U);
  enum { len = 5000 };
  static uint8_t y[len], chroma[len], dst[2][4 * len];
  static int16_t block[256];
  static uint32_t pixels[6];
  pqx_Video_DCT8x8Fwd_12S_16S(block, block);
  pqx_Video_DCT16x16Fwd_10S_16S(block, block);
  pqx_Video_ColorRGBA2ABGR_32U(pixels, 3, pixels, 3, 3, 2);
  pqx_Video_ColorRGBA2ABGR_32U(pixels, 3, pixels, 3, 2, 2);
  pqx_Video_ColorYCC2RGB420_BL_8U(y, y, chroma, chroma, chroma, chroma, chroma, chroma, dst[0], dst[1], len);
  pqx_Video_ColorYCC2BGRA420_BL_8U(y, y, chroma, chroma, chroma, chroma, chroma, chroma, dst[0], dst[1], len);
  for (int width = 15; width <= 17; ++width) pqx_Video_InterpX_Y_XY_8U(y, 20, width, 4, dst[0], dst[0] + 100, dst[1]);

  expect("__pqx_Video_DCT8x8Fwd_16S", replaced);
  expect("__pqx_Video_DCT16x16Fwd_16S", replaced);
  expect("__pqx_Vector_SwapByte_32S", 3 * replaced);
  expect("__pqx_Malloc", 2 * replaced);
  expect("__pqx_Free", 2 * replaced);
  expect("__pqx_Video_UpSample420_BL_8U", 4 * replaced);
  expect("__pqx_Video_ColorYCC2RGB444_8U", 2 * replaced);
  expect("__pqx_Video_ColorYCC2BGRA444_8U", 2 * replaced);
  expect("pqx_VideoInterpX_Y_XY_8U_w16", replaced);
  expect("pqx_VideoInterpX_Y_XY_8U_comm", 2 * replaced);
  return failures != 0;
}
