#include "jpeg/scan.h"

#include <algorithm>
#include <array>
#include <utility>

#include "jpeg/scan_data.h"

namespace pqx_codec::jpeg {

Scan::Scan(Segment segment, Frame& frame, const Tables& tables) : frame_(frame) {
  const int count = segment.byte();
  if (count < 1 || count > 4) damaged("impossible number of components in a scan");
  std::array<std::shared_ptr<const HuffmanDecoder>, 4> dc_codes, ac_codes;
  const auto codes = [](auto& made, const auto& stated, int index, HuffmanDecoder::Kind kind) {
    if (index > 3) damaged("impossible Huffman table");
    auto& one = made[size_t(index)];
    if (!one) one = std::make_shared<const HuffmanDecoder>(stated[size_t(index)], kind);
    return one;
  };
  int blocks = 0;
  for (int i = 0; i < count; ++i) {
    const int id = segment.byte(), selectors = segment.byte();
    const auto found = std::ranges::find(frame.components, id, &Component::id);
    if (found == frame.components.end()) damaged("a scan of a component that does not exist");
    if (std::exchange(found->decoded, true)) damaged("a component is coded twice");
    const auto& steps = tables.steps[size_t(found->steps_index)];
    if (!steps) damaged("a quantization table is missing");
    components_.push_back({size_t(found - frame.components.begin()), count == 1 ? 1 : found->horizontal,
                           count == 1 ? 1 : found->vertical, BlockReconstruction(*steps),
                           codes(dc_codes, tables.dc, selectors >> 4, HuffmanDecoder::Kind::dc),
                           codes(ac_codes, tables.ac, selectors & 15, HuffmanDecoder::Kind::ac)});
    blocks += components_.back().horizontal * components_.back().vertical;
  }
  if (count > 1 && blocks > 10) damaged("too many blocks in a group of components");
}

size_t Scan::decode(std::span<const uint8_t> data, int restart_interval, const std::vector<Plane>& planes,
                    const std::function<void(int)>& after_row) {
  const Component& first = frame_.components[components_[0].index];
  const bool alone = components_.size() == 1;
  const int mcu_columns = alone ? divide_up(first.columns, 8) : frame_.mcu_columns();
  const int mcu_rows = alone ? divide_up(first.rows, 8) : frame_.mcu_rows();

  ScanData intervals(data);
  BitReader bits = intervals.next_interval();
  int left_in_interval = restart_interval ? restart_interval : mcu_columns * mcu_rows;
  int restarts = 0;
  const auto finish_interval = [&] {
    if (bits.bits_left() >= 8) damaged("data of the picture left over");
  };
  const auto restart = [&] {
    finish_interval();
    if (intervals.marker() != RST0 + restarts++ % 8) damaged("a restart marker is missing");
    intervals.skip_marker();
    bits = intervals.next_interval();
    for (Member& component : components_) component.dc = 0;
    left_in_interval = restart_interval;
  };

  LevelBlock block;
  for (int mcu_row = 0; mcu_row < mcu_rows; ++mcu_row) {
    for (int mcu_column = 0; mcu_column < mcu_columns; ++mcu_column) {
      if (left_in_interval == 0) restart();
      --left_in_interval;
      for (Member& component : components_) {
        const Plane& plane = planes[component.index];
        for (int v = 0; v < component.vertical; ++v) {
          uint8_t* pixels = plane.row((mcu_row * component.vertical + v) * 8) + mcu_column * component.horizontal * 8;
          for (int h = 0; h < component.horizontal; ++h, pixels += 8) {
            decode_block(bits, *component.dc_codes, *component.ac_codes, component.dc, block);
            component.reconstruct(block, pixels, plane.step());
          }
        }
      }
    }
    after_row(mcu_row);
  }
  finish_interval();
  return intervals.marker_position();
}

}  // namespace pqx_codec::jpeg
