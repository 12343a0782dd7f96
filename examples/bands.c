// Converts a picture in bands of rows on N threads: bands [N]
// With --table: prints how much faster two threads are than one, at 7680 x 4320.
#include <pqx_video.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <threads.h>
#include <time.h>

enum { largest = 7680 * 4320 };
static int w = 1280, h = 720;
static uint8_t y[largest], u[largest / 4], v[largest / 4], other[largest], out[4 * largest], whole[4 * largest];
static int16_t words[largest];

// Operations on the rows first..last-1. Bands begin at multiples of 16 rows: no row of chroma and no block is cut.
static void show(int first, int last) {
  const int luma = first * w, chroma = luma / 4;
  pqx_Video_ColorYUV2ABGR420_8U(y + luma, w, u + chroma, v + chroma, w / 2, out + 4 * luma, 4 * w, w, last - first);
}
static void to_ycc420(int first, int last) {
  for (int i = first * w; i < last * w; i += 2 * w)
    pqx_Video_ColorRGB2YCC420_BL_8U(out + 3 * i, out + 3 * (i + w), y + i, y + i + w, u + i / 4, v + i / 4, w);
}
static void to_rgb_bilinear(int first, int last) {  // reads the rows of chroma on both sides of its band
  for (int i = first * w; i < last * w; i += 2 * w) {
    const int b = i / 4, a = i > 0 ? b - w / 2 : b, c = i + 2 * w < h * w ? b + w / 2 : b;
    pqx_Video_ColorYCC2RGB420_BL_8U(y + i, y + i + w, u + a, v + a, u + b, v + b, u + c, v + c, out + 3 * i,
                                    out + 3 * (i + w), w);
  }
}
static void halve(int first, int last) {
  const int i = first * w;
  pqx_Video_P64Decimate_8U(y + i, w, other + i / 4, w / 2, w / 2, (last - first) / 2);
}
static void interpolate(int first, int last) {  // reads the row below its band; below the picture there is none
  const int i = first * w, rows = (last < h ? last : h - 1) - first;
  pqx_Video_InterpY_8U(y + i, other + i, w, w, w, rows);
}
static void transform(int first, int last) {
  for (int r = first; r < last; r += 8)
    for (int x = 0; x < w; x += 8) pqx_Video_DCT8x8Fwd_8U_16S(y + r * w + x, w, words + r * w + 8 * x);
}

typedef struct {
  const char* name;
  void (*run)(int first, int last);
  void* result;
  int bytes_of_4_pixels, first, last;
} Work;
static const Work operations[] = {
    {"YUV 4:2:0 to ABGR", show, out, 16, 0, 0},     {"YCC 4:2:0 to RGB", to_rgb_bilinear, out, 12, 0, 0},
    {"RGB to YCC 4:2:0", to_ycc420, u, 1, 0, 0},    {"halving", halve, other, 1, 0, 0},
    {"interpolation", interpolate, other, 3, 0, 0}, {"forward 8x8 DCT", transform, words, 8, 0, 0}};

static int run_band(void* band) {
  const Work* const b = band;
  b->run(b->first, b->last);
  return 0;
}
static double milliseconds(Work work, int threads) {
  thrd_t ids[64];
  Work bands[64];
  struct timespec start, end;
  timespec_get(&start, TIME_UTC);
  for (int k = 0; k < threads; ++k) {
    bands[k] = work;
    bands[k].first = h / 16 * k / threads * 16, bands[k].last = h / 16 * (k + 1) / threads * 16;
    if (thrd_create(&ids[k], run_band, &bands[k]) != thrd_success) exit(1);
  }
  for (int k = 0; k < threads; ++k) thrd_join(ids[k], NULL);
  timespec_get(&end, TIME_UTC);
  return 1e3 * (double)(end.tv_sec - start.tv_sec) + 1e-6 * (double)(end.tv_nsec - start.tv_nsec);
}
static double least(double a, double b) { return a < b ? a : b; }

int main(int argc, char** argv) {
  const int table = argc > 1 && strcmp(argv[1], "--table") == 0, threads = argc > 1 && !table ? atoi(argv[1]) : 2;
  if (threads < 1 || threads > 64) return fprintf(stderr, "bands: 1 to 64 threads, please\n"), 1;
  if (table) w = 7680, h = 4320, printf("%-18s %12s %12s %9s\n", "", "1 thread", "2 threads", "speed-up");
  for (int i = 0; i < largest; ++i) y[i] = (uint8_t)(i % 4099 * (i % 257) >> 7), u[i / 4] = (uint8_t)(i >> 5);
  memcpy(v, y, sizeof v);
  for (size_t k = 0; k < sizeof operations / sizeof *operations; ++k) {
    const Work* const work = &operations[k];
    const size_t bytes = (size_t)(w * h / 4 * work->bytes_of_4_pixels);
    double one = milliseconds(*work, 1);
    memcpy(whole, work->result, bytes);
    memset(work->result, 0, bytes);
    double several = milliseconds(*work, threads);
    const int same = memcmp(whole, work->result, bytes) == 0;
    for (int n = 0; table && n < 20; ++n) {
      one = least(one, milliseconds(*work, 1));
      several = least(several, milliseconds(*work, 2));
    }
    if (table) printf("%-18s %9.2f ms %9.2f ms %9.2f\n", work->name, one, several, one / several);
    if (!table || !same) printf("%s in %d bands: %s\n", work->name, threads, same ? "as in one" : "wrong");
    if (!same) return 1;
  }
  return 0;
}
