// Shows a YUV picture: show_picture IN.yuv WIDTH HEIGHT OUT.ppm
// IN.yuv holds planes of 8-bit samples, Y, then U and V of half the width and height, in the studio range of video.
#include <pqx_video.h>
#include <stdio.h>
#include <stdlib.h>

static int fail(const char* what, const char* name) {
  fprintf(stderr, "show_picture: %s: %s\n", name, what);
  return 1;
}

int main(int argc, char** argv) {
  if (argc != 5) return fail("usage: show_picture IN.yuv WIDTH HEIGHT OUT.ppm", "arguments");
  const int width = atoi(argv[2]), height = atoi(argv[3]);
  // The conversion leaves an odd last column or row alone, and a step of 3 * width bytes has to be an int.
  if (width < 2 || height < 2 || width % 2 || height % 2 || width > 32768 || height > 32768)
    return fail("width and height must be even, from 2 to 32768", "arguments");
  const size_t samples = (size_t)width * (size_t)height;
  uint8_t* const yuv = malloc(samples / 2 * 3);
  uint8_t* const rgb = malloc(samples * 3);
  if (!yuv || !rgb) return fail("not enough memory", argv[1]);

  FILE* const in = fopen(argv[1], "rb");
  if (!in) return fail("cannot be opened", argv[1]);
  const size_t found = fread(yuv, 1, samples / 2 * 3, in);
  fclose(in);
  if (found != samples / 2 * 3) return fail("is too short for that size", argv[1]);

  const uint8_t *const u = yuv + samples, *const v = u + samples / 4;
  pqx_Video_ColorYUV2RGB420_8U(yuv, width, u, v, width / 2, rgb, 3 * width, width, height);

  FILE* const out = fopen(argv[4], "wb");
  if (!out) return fail("cannot be written", argv[4]);
  fprintf(out, "P6\n%d %d\n255\n", width, height);
  const size_t written = fwrite(rgb, 1, samples * 3, out);
  if (fclose(out) != 0 || written != samples * 3) return fail("cannot be written", argv[4]);
  free(rgb);
  free(yuv);
  return 0;
}
