/// Operations on single blocks of 8x8, timed over many blocks in turn so that no branch is learnt by heart.
#pragma once

#include "bench.h"

namespace bench {

/// What a call finds. A block for work in place starts as a copy of the block to be read.
struct Block {
  const int16_t* in;
  int16_t* out;
  const uint8_t* pixels;
  uint8_t* out_pixels;
  int step;

  void advance() {
    in += 64;
    out += 64;
    pixels += 8;
    out_pixels += 8;
  }
};

/// Blocks that lie side by side in rows of them, in pictures and in coefficients alike.
struct Blocks {
  int across, down;
  Block first;

  Block at(int x, int y) const {
    const int64_t block = 64 * (int64_t(y) * across + x), pixel = 8 * (int64_t(y) * first.step + x);
    return {first.in + block, first.out + block, first.pixels + pixel, first.out_pixels + pixel, first.step};
  }
};

/// What the blocks to be read hold.
enum class Content {
  pixels,      // nothing: the pixels count
  residuals,   // differences of two textured pictures, within -255..255
  wide,        // 12-bit samples
  dense,       // coefficients of textured pixels, hardly any of them zero
  ten,         // the first ten of those in zigzag order
  dc,          // the first of those
  levels,      // dense, divided by steps()
  ten_levels,  // ten, divided by steps()
  matrix,      // nothing: the steps count
};

/// Step sizes of a fine quantizer.
const int16_t* steps();

enum class Yields { blocks, pixels };

template <class Call>
struct BlockForm {
  Yields yields;
  Call call;
};
template <class Call>
BlockForm(Yields, Call) -> BlockForm<Call>;

using BlockWork = std::function<Work(const Blocks&)>;

/// One operation after the other on every block.
struct BlockJob {
  std::string name;
  Yields yields;
  BlockWork ours, plain, last_release;

  template <class Call, class... F>
  BlockJob(const BlockForm<Call>& form, Sides<F>... sides)
      : yields(form.yields),
        ours(walk(form.call, sides.ours...)),
        plain(walk(form.call, sides.plain...)),
        last_release((... && sides.last_release) ? walk(form.call, sides.last_release...) : nullptr) {
    for (const char* part : {sides.name...}) {
      if (!name.empty()) name += '+';
      name += part;
    }
  }

 private:
  template <class Call, class... F>
  static BlockWork walk(Call call, F*... f) {
    return [=](const Blocks& blocks) {
      return repeated([=] {
        for (int y = 0; y < blocks.down; ++y) {
          Block block = blocks.at(0, y);
          for (int x = blocks.across; x > 0; --x, block.advance()) call(f..., block);
        }
      });
    };
  }
};

struct BlockPeer {
  std::string library, difference;
  double tolerance;
  BlockWork make;
  int scale = 1;  // of its result over ours
};
using BlockPeers = std::vector<BlockPeer>;

struct BlockBench {
  BlockJob job;
  Content content;
  BlockPeers peers;
};

/// Adds a table to the family; yields true, so that a constant can stand for having done so.
bool add_blocks(const std::string& family, const std::vector<BlockBench>& table);

}  // namespace bench
