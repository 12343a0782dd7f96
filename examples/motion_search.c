// Finds how the blocks of a picture have moved since the picture before: motion_search [DX DY]
// The second picture is made of the first by moving it, so that the answer is known.
#include <pqx_video.h>
#include <stdio.h>
#include <stdlib.h>

enum { width = 176, height = 144, margin = 32, step = width + 2 * margin, range = 15 };

// Both pictures have a margin, so that no candidate leaves the memory.
static uint8_t before[(height + 2 * margin) * step], now[(height + 2 * margin) * step];

static uint8_t* at(uint8_t* picture, int x, int y) { return picture + (y + margin) * step + x + margin; }

// A texture without repetition: waves of several lengths.
static uint8_t texture(int x, int y) {
  static const int wave[16] = {0, 4, 7, 9, 10, 9, 7, 4, 0, -4, -7, -9, -10, -9, -7, -4};
  const int u = x + 64, v = y + 64;
  return (uint8_t)(128 + 5 * wave[(u * u / 97 + v) % 16] + 5 * wave[(u + v * v / 61) % 16]);
}

typedef struct {
  int dx, dy;
  uint32_t cost;
} Match;

// Every whole-sample vector within the range, the shortest first among equals.
static Match search(int x, int y) {
  Match best = {0, 0, pqx_Video_SumAbsDiff_8U(at(now, x, y), at(before, x, y), step, 16, 16)};
  for (int dy = -range; dy <= range; ++dy)
    for (int dx = -range; dx <= range; ++dx) {
      const uint32_t cost = pqx_Video_SumAbsDiff_8U(at(now, x, y), at(before, x + dx, y + dy), step, 16, 16);
      if (cost < best.cost || (cost == best.cost && abs(dx) + abs(dy) < abs(best.dx) + abs(best.dy)))
        best = (Match){dx, dy, cost};
    }
  return best;
}

int main(int argc, char** argv) {
  const int moved_x = argc > 2 ? atoi(argv[1]) : 5, moved_y = argc > 2 ? atoi(argv[2]) : -3;
  if (abs(moved_x) > range || abs(moved_y) > range) {
    fprintf(stderr, "motion_search: a vector must lie in -%d..%d\n", range, range);
    return 1;
  }
  for (int y = -margin; y < height + margin; ++y)
    for (int x = -margin; x < width + margin; ++x) {
      *at(before, x, y) = texture(x, y);
      *at(now, x, y) = texture(x + moved_x, y + moved_y);
    }

  int blocks = 0, found = 0;
  uint32_t residual = 0;
  for (int y = 0; y < height; y += 16) {
    for (int x = 0; x < width; x += 16, ++blocks) {
      const Match match = search(x, y);
      printf("%3d,%3d ", match.dx, match.dy);
      found += match.dx == moved_x && match.dy == moved_y;
      // The prediction, and what would be left to code.
      uint8_t prediction[16 * step];
      pqx_Video_CopyRef_8U(at(before, x + match.dx, y + match.dy), prediction, step, 16, 16);
      residual += pqx_Video_SumAbsDiff_8U(at(now, x, y), prediction, step, 16, 16);
    }
    printf("\n");
  }
  printf("%d of %d blocks moved by %d, %d; %u is left to code\n", found, blocks, moved_x, moved_y, residual);
  return 0;
}
