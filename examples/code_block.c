// Takes a block of pixels through transform and quantizer and back: code_block [STEP]
// This is what a still-picture encoder does to each 8x8 block, and its decoder after it.
#include <pqx_video.h>
#include <stdio.h>
#include <stdlib.h>

static void print(const char* title, const int16_t* values) {
  printf("%s\n", title);
  for (int i = 0; i < 64; ++i) printf("%5d%s", values[i], i % 8 == 7 ? "\n" : "");
}

int main(int argc, char** argv) {
  const int step = argc > 1 ? atoi(argv[1]) : 16;
  if (step < 1 || step > 255) {
    fprintf(stderr, "code_block: the step must lie in 1..255\n");
    return 1;
  }

  // The edge of something bright on a soft gradient.
  uint8_t pixels[64], decoded[64];
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) pixels[8 * y + x] = (uint8_t)(60 + 6 * x + 4 * y + (x + y > 8 ? 70 : 0));

  // The states are made once for a matrix and serve any number of blocks. Higher frequencies get coarser steps.
  int16_t matrix[64];
  for (int i = 0; i < 64; ++i) matrix[i] = (int16_t)(step + step * (i / 8 + i % 8) / 8);
  float quantizer[64];
  double dequantizer[64];
  pqx_Video_QuantizeInit_16S(matrix, quantizer);
  pqx_Video_DeQuantizeInit_16S(matrix, dequantizer);

  int16_t block[64];
  pqx_Video_DCT8x8Fwd_8U_16S(pixels, 8, block);
  print("coefficients", block);
  pqx_Video_Quantize_16S_I(quantizer, block);
  print("levels", block);
  int coded = 0;
  for (int i = 0; i < 64; ++i) coded += block[i] != 0;

  pqx_Video_DeQuantize_16S_I(dequantizer, block);
  pqx_Video_DCT8x8Inv_16S_8U(block, decoded, 8);

  int16_t errors[64];
  int largest = 0;
  for (int i = 0; i < 64; ++i) {
    errors[i] = (int16_t)(decoded[i] - pixels[i]);
    if (abs(errors[i]) > largest) largest = abs(errors[i]);
  }
  print("errors", errors);
  printf("%d of 64 levels are not zero; the largest error is %d\n", coded, largest);
  return 0;
}
