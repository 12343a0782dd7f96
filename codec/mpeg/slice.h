#pragma once

#include <vector>

#include "mpeg/block.h"
#include "mpeg/codes.h"
#include "mpeg/prediction.h"

namespace pqx_codec::mpeg {

/// What the slices of a picture, a frame or a field, are decoded with and to.
struct PictureDecoding {
  const Sequence& sequence;
  const Picture& picture;
  Frame& to;
  /// The top and bottom fields to predict from, forward and backward; null where there is none.
  const Frame* references[2][2] = {};
  /// Whether each macroblock has been decoded.
  std::vector<bool>& decoded;

  int rows() const { return sequence.macroblock_rows() / (picture.is_field() ? 2 : 1); }
};

/// Decodes one slice.
class SliceDecoder {
 public:
  SliceDecoder(const PictureDecoding& decoding, BitReader bits);

  /// @param row  of macroblocks
  void decode(int row);

 private:
  enum class Motion { frame, field, halves, dual_prime };

  void read_scale();
  int read_increment();
  void skip_macroblock();
  void decode_macroblock();
  Motion read_motion();
  void read_vectors(int s, Motion motion);
  int read_component(int r, int s, int t, bool halved);
  void reset_vectors();
  void reset_dc();

  void predict_macroblock(bool forward, bool backward, Motion motion);
  void predict_from(int s, Rows from, Rows to, int x, int y, int rows, Vector vector, bool average);
  Vector dual_prime_vector(Rows to) const;
  void predict_still();

  unsigned read_pattern();
  void decode_blocks(bool intra, unsigned pattern, bool field_blocks);
  int read_dc(int component);

  const PictureDecoding& decoding_;
  const Sequence& sequence_;
  const Picture& picture_;
  BitReader bits_;
  Block block_;
  BlockCoding coding_{};
  int x_ = 0, y_ = 0;  // of the macroblock, in macroblocks
  int predicted_dc_[3] = {};
  int predictors_[2][2][2] = {};  // of vectors: first and second, forward and backward, x and y
  // Of the macroblock:
  Vector vectors_[2][2], difference_;
  bool selects_bottom_[2][2] = {};
  bool forward_ = false, backward_ = false;  // kept for skipped macroblocks of B pictures
};

}  // namespace pqx_codec::mpeg
