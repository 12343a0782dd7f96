/// Lists of calls as a decoder makes them: blocks of every shape, anywhere in their pictures.
#pragma once

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

/// What a call finds: two sources, in pictures or the second one packed, and room for every kind of result.
struct Call {
  const uint8_t *a, *b;
  uint8_t *d, *d2, *d3;
  int16_t* words;
  int a_step, b_step, d_step, width, height;
  const uint8_t* grid;  // a reference of twice the resolution, and five columns and rows in it
  int places[10];
};
using Order = std::span<const Call* const>;

/// Blocks of these shapes, one as likely as the other. `turn` chooses the pitch of the list where all of its calls share
/// one.
std::vector<Call> random_calls(Random&, const std::vector<Shape>&, Steps, Place, int turn);

/// Gives all results a known content, and a digest of it.
void clear_results();
uint64_t digest_of_results();

}  // namespace prediction
