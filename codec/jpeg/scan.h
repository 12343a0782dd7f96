#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "jpeg/block_decoder.h"
#include "jpeg/header.h"
#include "jpeg/huffman.h"
#include "picture/plane.h"

namespace pqx_codec::jpeg {

/// A baseline scan: the blocks of one or more components, each from its first to its last.
class Scan {
 public:
  /// Reads the header of a scan and marks its components as decoded. Throws Failure if tables are missing or a
  /// component is coded twice.
  Scan(Segment segment, Frame& frame, const Tables& tables);

  /// Whether it holds all the components of the picture.
  bool is_whole() const { return components_.size() == frame_.components.size(); }

  /// Decodes the blocks into the planes of the components. Throws Failure for damaged data.
  /// @param data              what follows the header, to the end of the file
  /// @param restart_interval  MCUs between two restart markers, 0 if there are none
  /// @param after_row         called behind each row of MCUs with its number
  /// @return the bytes of it that belong to the scan
  size_t decode(std::span<const uint8_t> data, int restart_interval, const std::vector<Plane>& planes,
                const std::function<void(int)>& after_row);

 private:
  struct Member {
    size_t index;
    int horizontal, vertical;  // blocks in an MCU of the scan
    BlockReconstruction reconstruct;
    std::shared_ptr<const HuffmanDecoder> dc_codes, ac_codes;
    int dc = 0;
  };

  const Frame& frame_;
  std::vector<Member> components_;
};

}  // namespace pqx_codec::jpeg
