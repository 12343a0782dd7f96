/// Operations on patches of a picture: prediction and its cost.
#pragma once

#include "bench.h"

namespace bench {

struct Shape {
  int width, height;
  Shape(int side) : width(side), height(side) {}
  Shape(int width, int height) : width(width), height(height) {}
};

/// What a call finds. The two sources lie anywhere in the reference, the results on their grid.
struct Patch {
  const uint8_t *a, *b;
  int step, width, height;
  uint8_t *out, *out2, *out3;
  int16_t* words;
  uint32_t* sum;
  const uint8_t* reference;
  const int* places;  // five columns and rows
};

using PatchWork = std::function<Work(Shape)>;

const std::vector<Patch>& patches(Shape);

/// As callers do, it keeps in registers what is the same for all patches.
template <class Call>
void for_each(const std::vector<Patch>& all, Call call) {
  const int step = all[0].step, width = all[0].width, height = all[0].height;
  for (Patch p : all) {
    p.step = step, p.width = width, p.height = height;
    call(p);
  }
}

template <class Call>
PatchWork on_patches(Call call) {
  return [=](Shape shape) { return repeated([call, &all = patches(shape)] { for_each(all, call); }); };
}

struct PatchPeer {
  std::string library, difference;
  PatchWork make;
};

struct PatchBench {
  const char* operation;
  PatchWork ours, plain, last_release;
  Shape shape;
  std::vector<PatchPeer> peers;

  template <class F, class Call>
  PatchBench(Sides<F> sides, Call call, Shape shape, std::vector<PatchPeer> peers = {})
      : operation(sides.name),
        ours(work(sides.ours, call)),
        plain(work(sides.plain, call)),
        last_release(sides.last_release ? work(sides.last_release, call) : nullptr),
        shape(shape),
        peers(std::move(peers)) {}

 private:
  template <class F, class Call>
  static PatchWork work(F* f, Call call) {
    return on_patches([=](const Patch& p) { call(f, p); });
  }
};

/// Adds a table to the family; yields true, so that a constant can stand for having done so.
bool add_patches(const std::string& family, const std::vector<PatchBench>& table);

}  // namespace bench
