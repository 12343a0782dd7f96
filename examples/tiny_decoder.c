// Decodes a clip of two pictures of 32 x 32 pixels and shows them in letters.
// Its stream is as simple as can be, numbers instead of codes; all that a decoder does with them is here.
#include <pqx_video.h>
#include <stdio.h>
#include <string.h>

enum { size = 32, margin = 17, step = size + 2 * margin, quantizer = 24, loop_filter = 64 };

// A picture is a letter, I (on its own) or P (predicted), and its macroblocks of 16 x 16 pixels. A macroblock of a P
// picture begins with its vector in half samples and with flags, a bit for each block that is coded. A coded block is
// the number of its levels that are not zero and, for each of them, its place in the block and the level.
static const int8_t stream[] = {
    'I', 12,  0,  18, 1,   -5,  2,      2,   8,  -6, 9,  6,   10,  -3, 16,          3,   17, -3,     18, 1,  24, -1,
    25,  1,   27, -1, 9,   0,   38,     1,   -1, 2,  -1, 8,   -22, 16, 2,           17,  1,  18,     1,  24, 4,  26,
    -1,  10,  0,  44, 1,   -21, 2,      -4,  3,  2,  4,  1,   8,   -2, 10,          3,   12, -1,     16, -2, 18, 2,
    1,   0,   67, 1,  0,   50,  1,      0,   37, 11, 0,  21,  1,   7,  2,           2,   8,  -8,     9,  -8, 10, -1,
    16,  4,   17, 3,  19,  -1,  24,     -1,  26, 1,  1,  0,   13,  12, 0,           50,  1,  18,     2,  -8, 3,  1,
    8,   -2,  9,  1,  10,  1,   11,     -2,  16, -2, 17, 1,   18,  1,  19,          -1,  1,  0,      13, 1,  0,  50,
    1,   0,   37, 12, 0,   28,  1,      -14, 2,  2,  3,  1,   8,   11, 9,           -8,  10, -1,     11, 2,  17, 2,
    18,  -3,  19, 1,  27,  -1,  9,      0,   58, 1,  -1, 2,   -1,  8,  11,          9,   1,  10,     2,  16, -8, 24,
    4,   32,  -1, 1,  0,   13,  1,      0,   13, 1,  0,  50,  1,   0,  37,          12,  0,  33,     1,  15, 8,  13,
    9,   6,   10, -4, 11,  -1,  16,     -1,  17, -4, 18, -2,  19,  1,  26,          1,   27, 1,      1,  0,  13, 1,
    0,   13,  1,  0,  13,  1,   0,      50,  1,  0,  37, 'P', -13, 4,  loop_filter, -13, 4,  1 << 4, 2,  0,  9,  1,
    -4,  -13, 4,  0,  -13, 4,   1 << 3, 3,   0,  12, 27, 6,   63,  2,  'E'};

// Three planes with margins, which repeat the picture's edges for vectors that point across them.
typedef struct {
  uint8_t planes[3][step * step];
} Picture;

static uint8_t* at(Picture* p, int plane, int x, int y) {
  return p->planes[plane] + (y + margin) * step + x + margin;
}

static void fill_margins(Picture* p) {
  for (int k = 0; k < 3; ++k) {
    const int last = size / (k ? 2 : 1) - 1;
    for (int y = -margin; y <= last + margin; ++y)
      for (int x = -margin; x <= last + margin; ++x)
        *at(p, k, x, y) = *at(p, k, x < 0 ? 0 : x > last ? last : x, y < 0 ? 0 : y > last ? last : y);
  }
}

// The prediction of n x n samples, by a vector in half samples.
static void predict(Picture* from, Picture* to, int plane, int x, int y, int n, int dx, int dy) {
  const uint8_t* const src = at(from, plane, x + (dx >> 1), y + (dy >> 1));
  uint8_t* const dst = at(to, plane, x, y);
  if (dx & 1 && dy & 1)
    pqx_Video_InterpXY_8U(src, dst, step, step, n, n);
  else if (dx & 1)
    pqx_Video_InterpX_8U(src, dst, step, n, n);
  else if (dy & 1)
    pqx_Video_InterpY_8U(src, dst, step, step, n, n);
  else
    pqx_Video_CopyRef_8U(src, dst, step, n, n);
}

// A block of coefficients, as pixels or as a residual on top of the prediction. A lone DC and levels that all lie in
// the top-left quarter have inverse transforms of their own. Place 8u + v is outside the quarter where u or v has its
// bit of 4.
static const int8_t* decode_block(const int8_t* in, const double* steps, uint8_t* dst, int predicted) {
  int16_t block[64] = {0};
  int places = 0;
  for (int count = *in++; count > 0; --count, in += 2) {
    block[in[0]] = in[1];
    places |= in[0];
  }
  pqx_Video_DeQuantize_16S_I(steps, block);
  const int dc = places == 0, quarter = (places & (4 << 3 | 4)) == 0;
  if (!predicted) {
    (dc        ? pqx_Video_DCT8x8Inv_DC_16S_8U
     : quarter ? pqx_Video_DCT8x8Inv_1Q_16S_8U
               : pqx_Video_DCT8x8Inv_16S_8U)(block, dst, step);
  } else {
    (dc ? pqx_Video_DCT8x8Inv_DC_16S : quarter ? pqx_Video_DCT8x8Inv_1Q_16S : pqx_Video_DCT8x8Inv_16S)(block, block);
    pqx_Video_AddBlock_16S_8U_I(block, dst, step);
  }
  return in;
}

static const int8_t* decode_macroblock(const int8_t* in, const double* steps, Picture* before, Picture* now, int x,
                                       int y, int predicted) {
  int flags = 63;
  if (predicted) {
    const int dx = in[0], dy = in[1];
    flags = in[2];
    in += 3;
    predict(before, now, 0, x, y, 16, dx, dy);
    for (int plane = 1; plane < 3; ++plane) predict(before, now, plane, x / 2, y / 2, 8, dx / 2, dy / 2);
  }
  for (int k = 0; k < 6; ++k) {  // four blocks of luma, then one for each chroma
    uint8_t* const dst = k < 4 ? at(now, 0, x + 8 * (k & 1), y + 4 * (k & 2)) : at(now, k - 3, x / 2, y / 2);
    if (flags & loop_filter) pqx_Video_P64Loop_8U(dst, dst, step);
    if (flags >> k & 1) in = decode_block(in, steps, dst, predicted);
  }
  return in;
}

static void show(Picture* p) {
  uint8_t rgb[3 * size * size];
  pqx_Video_ColorYUV2RGB420_8U(at(p, 0, 0, 0), step, at(p, 1, 0, 0), at(p, 2, 0, 0), step, rgb, 3 * size, size, size);
  for (int y = 0; y < size; y += 2) {  // letters are twice as high as wide
    for (int x = 0; x < size; ++x) putchar(" .:-=+*#%@"[rgb[3 * (size * y + x) + 1] * 10 / 256]);
    putchar('\n');
  }
}

int main(void) {
  static Picture pictures[2];
  int16_t matrix[64];
  double steps[64];
  for (int i = 0; i < 64; ++i) matrix[i] = quantizer;
  pqx_Video_DeQuantizeInit_16S(matrix, steps);

  int number = 0;
  for (const int8_t* in = stream; *in != 'E'; ++number) {
    Picture *const now = &pictures[number % 2], *const before = &pictures[(number + 1) % 2];
    const int predicted = *in++ == 'P';
    for (int y = 0; y < size; y += 16)
      for (int x = 0; x < size; x += 16) in = decode_macroblock(in, steps, before, now, x, y, predicted);
    fill_margins(now);
    printf("picture %d\n", number);
    show(now);
  }
  return 0;
}
