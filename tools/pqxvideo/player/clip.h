#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "codec.h"
#include "picture/rectangle.h"
#include "picture/y4m.h"
#include "picture/yuv_picture.h"

namespace pqxvideo {

/// A clip, of which one picture is looked at; to begin with, the first.
class Clip {
 public:
  virtual ~Clip() = default;

  /// Goes to the next picture; false, staying where it is, at the end.
  virtual bool next() = 0;
  /// Goes back to a picture that has been looked at before.
  virtual void go_back(int number) = 0;

  virtual const YuvPicture& picture() const = 0;
  /// Its number, from 0.
  int number() const { return number_; }
  /// Where it may differ from the picture that was looked at before it.
  const Rectangle& changed() const { return changed_; }
  Rectangle whole() const { return {0, 0, picture().width(), picture().height()}; }

  FrameRate rate() const { return rate_; }
  /// Whether its samples are said to use all of 0..255.
  bool is_full_range() const { return full_range_; }
  /// For how many frames it stands until the next one takes its place.
  int frames() const { return frames_; }

 protected:
  int number_ = -1;
  Rectangle changed_;
  FrameRate rate_;
  bool full_range_ = false;
  int frames_ = 1;
};

/// Opens a Y4M file or an H.261 stream, whose bytes must stay.
/// @param most_kept  an even number: from how many places of a stream decoding can begin again for an earlier picture
std::unique_ptr<Clip> open_clip(std::span<const uint8_t> bytes, size_t most_kept = 128,
                                int64_t max_pixels = default_max_pixels);

}  // namespace pqxvideo
