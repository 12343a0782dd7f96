/// Operations of this family, what they are timed with, and who does the same.
#pragma once

#include "calls.h"

namespace prediction {

/// Makes the calls in order, of one function or of two, for blocks of 8 columns and of 16.
using Run = void (*)(void* const* functions, Order);

struct Operation {
  const char* name;  // behind pqx_Video_
  Run run;
  void* plain;
  std::vector<Shape> shapes;
  std::vector<Steps> steps;
  std::vector<Place> places;
  struct Peer {
    Run run = nullptr;
    void* of_8 = nullptr;
    void* of_16 = nullptr;
    bool packed = false;  // its second source always is
  } peer = {};
};

const std::vector<Operation>& operations();

/// What a decoder calls for one macroblock, of operations by their position in the table.
struct Part {
  size_t operation;
  Call call;
};
using Macroblock = std::vector<Part>;
enum class Picture { P, B, B_by_averages };
const char* name_of(Picture);
std::vector<Macroblock> random_macroblocks(Random&, Picture, Place, int turn);

/// Makes these calls, of functions by the same position.
void run_macroblocks(void* const* functions, std::span<const Macroblock* const>);
void run_macroblocks_of_peers(std::span<const Macroblock* const>);

/// Returns at once.
void* nothing();

}  // namespace prediction
