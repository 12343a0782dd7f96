#include "calls.h"

#include <string.h>

#include <algorithm>

namespace prediction {
namespace {

// Wide enough for blocks at any place, and not multiples of each other.
constexpr int pitches[] = {208, 304, 416, 528};
constexpr int rows = 48, calls_in_list = 256, most_samples = 32 * 32;

/// A picture for each pitch. The sources' vary as pictures do.
struct Pictures {
  alignas(64) uint8_t of_208[rows][208], of_304[rows][304], of_416[rows][416], of_528[rows][528];

  uint8_t* first(int pitch) {
    return pitch == 0 ? of_208[0] : pitch == 1 ? of_304[0] : pitch == 2 ? of_416[0] : of_528[0];
  }
};
struct Sources {
  Pictures a, b;
  alignas(64) uint8_t packed[calls_in_list][most_samples];

  Sources() {
    Random random(1);
    auto* bytes = reinterpret_cast<uint8_t*>(this);
    int shade = 128;
    for (size_t i = 0; i < sizeof *this; ++i) {
      shade += int(random() % 13) - 6;
      bytes[i] = uint8_t(shade < 0 ? shade = -shade : shade > 255 ? shade = 510 - shade : shade);
    }
  }
};
Sources sources;
Grid grids[calls_in_list];
struct Results {
  Pictures planes[3];
  alignas(64) int16_t words[calls_in_list][most_samples + 16];
} results;

}  // namespace

const ptrdiff_t next_picture = sizeof(Pictures);

const char* name_of(Steps steps) {
  switch (steps) {
    case Steps::one_picture:
      return "one picture";
    case Steps::two_pictures:
      return "two pictures";
    case Steps::packed:
      return "second packed";
    case Steps::any:
      return "any steps";
  }
  return "";
}
const char* name_of(Place place) { return place == Place::grid ? "on the grid" : "anywhere"; }

std::vector<Call> random_calls(Random& random, const std::vector<Shape>& shapes, Steps steps, Place place, int turn) {
  const auto below = [&](int n) { return int(random() % uint64_t(n)); };
  std::vector<Call> calls(calls_in_list);
  for (size_t i = 0; i < calls.size(); ++i) {
    Call& c = calls[i];
    const Shape shape = shapes[size_t(below(int(shapes.size())))];
    const int width = shape.width, height = shape.height;
    c.width = width, c.height = height;
    const int own = steps == Steps::any ? below(4) : turn % 4;
    const int other = steps == Steps::two_pictures ? (own + 1 + below(3)) % 4 : steps == Steps::any ? below(4) : own;
    const auto column = [&](int pitch) { return below(pitches[pitch] - width - 1); };
    const auto row = [&] { return below(rows - height - 1); };
    c.a_step = c.d_step = pitches[own];
    c.a = sources.a.first(own) + row() * c.a_step + column(own);
    c.b_step = pitches[other];
    c.b = sources.b.first(other) + row() * c.b_step + column(other);
    if (steps == Steps::packed || (steps == Steps::any && below(2))) {
      c.b_step = steps == Steps::any      ? std::max(width, 4 << below(3))
                 : width == 4 && turn % 2 ? 4
                 : width <= 8             ? 8
                                          : 16;
      c.b = sources.packed[i];
    }
    const int64_t to = place == Place::anywhere ? row() * c.d_step + column(own)
                                                : row() / height * height * c.d_step + column(own) / width * width;
    c.d = results.planes[0].first(own) + to;
    c.words = results.words[i] + (place == Place::anywhere ? 1 + below(7) : 0);
    c.grid = &grids[i];
    grids[i].reference = sources.a.first(own);
    for (int k = 0; k < 10; ++k) grids[i].places[k] = k % 2 ? below(rows - 15) : below(c.a_step - 15);
  }
  return calls;
}

void clear_results() {
  auto* bytes = reinterpret_cast<uint8_t*>(&results);
  for (size_t i = 0; i < sizeof results; ++i) bytes[i] = uint8_t(i * 37 >> 3);
}

uint64_t digest_of_results() {
  const auto* bytes = reinterpret_cast<const uint8_t*>(&results);
  uint64_t digest = 0xcbf29ce484222325;
  for (size_t i = 0; i < sizeof results; ++i) digest = (digest ^ bytes[i]) * 0x100000001b3;
  return digest;
}

}  // namespace prediction
