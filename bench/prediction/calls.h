/// Lists of calls as a decoder makes them: blocks of every shape, anywhere in their pictures.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <random>
#include <span>
#include <string>
#include <vector>

namespace prediction {

using Random = std::mt19937_64;

struct Shape {
  int width, height;
};

/// How the steps of a call relate to each other.
enum class Steps { one_picture, two_pictures, packed, any };
/// Where results are written.
enum class Place { grid, anywhere };

const char* name_of(Steps);
const char* name_of(Place);

/// Five columns and rows in a reference of twice the resolution.
struct Grid {
  const uint8_t* reference;
  int places[10];
};

/// What a call finds: two sources, in pictures or the second one packed, and room for every kind of result. The list
/// itself takes little of the first-level cache.
struct alignas(64) Call {
  const uint8_t *a, *b;
  uint8_t* d;  // and in two more pictures
  int16_t* words;
  const Grid* grid;
  int a_step, b_step, d_step, width, height;
};
static_assert(sizeof(Call) == 64);
extern const ptrdiff_t next_picture;  // from d
using Order = std::span<const Call* const>;

/// Blocks of these shapes, one as likely as the other. `turn` chooses the pitch of the list where all of its calls share
/// one.
std::vector<Call> random_calls(Random&, const std::vector<Shape>&, Steps, Place, int turn);

/// Gives all results a known content, and a digest of it.
void clear_results();
uint64_t digest_of_results();

}  // namespace prediction
