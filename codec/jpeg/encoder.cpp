#include "jpeg/encoder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include "bits/bit_writer.h"
#include "bits/zig_zag.h"
#include "jpeg/block_encoder.h"
#include "jpeg/format.h"
#include "jpeg/huffman.h"
#include "picture/plane.h"
#include "pqx_video.h"

namespace pqx_codec::jpeg {
namespace {

QuantTable scaled(const QuantTable& steps, int quality) {
  const int percent = quality < 50 ? 5000 / quality : 200 - 2 * quality;
  QuantTable result;
  std::transform(steps.begin(), steps.end(), result.begin(),
                 [&](int step) { return uint16_t(std::clamp((step * percent + 50) / 100, 1, 255)); });
  return result;
}

/// Appends entropy-coded bytes, with a zero behind each 0xFF.
void append_stuffed(std::vector<uint8_t>& out, std::span<const uint8_t> bytes) {
  const uint8_t *from = bytes.data(), *const end = from + bytes.size();
  while (from < end) {
    const void* const found = std::memchr(from, 0xFF, size_t(end - from));
    const uint8_t* const to = found ? static_cast<const uint8_t*>(found) + 1 : end;
    out.insert(out.end(), from, to);
    if (found) out.push_back(0);
    from = to;
  }
}

struct Component {
  int horizontal, vertical;  // blocks in an MCU
  size_t tables;             // 0 luma, 1 chroma
};

class Encoder {
 public:
  Encoder(const Image& image, const EncoderOptions& options);

  std::vector<uint8_t> encode();

 private:
  void segment(Marker marker, std::span<const uint8_t> contents);
  void write_header();

  template <class Sinks>
  void code_rows(Sinks& sinks, auto after_row);
  void prepare_rows(int mcu_row);
  const uint8_t* picture_row(int y, size_t scratch);

  const Image& image_;
  EncoderOptions options_;
  std::vector<Component> components_;
  int mcu_width_, mcu_height_, mcu_columns_, mcu_rows_;
  std::vector<Plane> planes_;  // one row of MCUs
  std::array<std::vector<uint8_t>, 2> odd_rows_;

  std::array<QuantTable, 2> steps_;
  std::array<std::array<float, 64>, 2> quantizers_;
  std::array<HuffmanSpec, 2> dc_specs_{standard_luma_dc, standard_chroma_dc};
  std::array<HuffmanSpec, 2> ac_specs_{standard_luma_ac, standard_chroma_ac};
  std::vector<uint8_t> out_;
};

Encoder::Encoder(const Image& image, const EncoderOptions& options) : image_(image), options_(options) {
  if (image.width() > 65535 || image.height() > 65535)
    throw Failure("picture too large for JPEG: " + std::to_string(image.width()) + " x " +
                  std::to_string(image.height()) + " pixels");
  const bool grey = image.channels() == 1;
  const int horizontal = grey || options.sampling == Sampling::s444 ? 1 : 2;
  const int vertical = grey || options.sampling != Sampling::s420 ? 1 : 2;
  components_ = {{horizontal, vertical, 0}};
  if (!grey) components_.insert(components_.end(), 2, {1, 1, 1});
  mcu_width_ = 8 * horizontal;
  mcu_height_ = 8 * vertical;
  mcu_columns_ = (image.width() + mcu_width_ - 1) / mcu_width_;
  mcu_rows_ = (image.height() + mcu_height_ - 1) / mcu_height_;
  for (const Component& component : components_)
    planes_.emplace_back(mcu_columns_ * component.horizontal * 8, component.vertical * 8,
                         mcu_columns_ * component.horizontal * 8, component.vertical * 8);
  if (image.width() % 2)
    for (auto& row : odd_rows_) row.resize(image.step());

  steps_ = {scaled(standard_luma_steps, options.quality), scaled(standard_chroma_steps, options.quality)};
  for (size_t i = 0; i < 2; ++i) {
    std::array<int16_t, 64> matrix;
    std::ranges::copy(steps_[i], matrix.begin());
    pqx_Video_QuantizeInit_16S(matrix.data(), quantizers_[i].data());
  }
}

std::vector<uint8_t> Encoder::encode() {
  if (options_.optimize) {
    std::array<SymbolCounter, 2> counters;
    code_rows(counters, [] {});
    for (size_t i = 0; i <= components_.back().tables; ++i) {
      dc_specs_[i] = optimal_table(counters[i].dc_counts);
      ac_specs_[i] = optimal_table(counters[i].ac_counts);
    }
  }
  write_header();

  // A block takes at most 64 times 27 bits.
  size_t blocks_in_row = 0;
  for (const Component& component : components_)
    blocks_in_row += size_t(component.horizontal * component.vertical * mcu_columns_);
  BitBuffer buffer(blocks_in_row * 64 * 27 / 8 + 8);
  std::array<CodeWriter, 2> writers{CodeWriter{HuffmanEncoder(dc_specs_[0]), HuffmanEncoder(ac_specs_[0]), &buffer},
                                    CodeWriter{HuffmanEncoder(dc_specs_[1]), HuffmanEncoder(ac_specs_[1]), &buffer}};
  const auto drain = [&] {
    append_stuffed(out_, buffer.bytes());
    buffer.clear();
  };
  code_rows(writers, drain);
  buffer.cursor().finish(true);
  drain();
  out_.insert(out_.end(), {0xFF, EOI});
  return std::move(out_);
}

void Encoder::segment(Marker marker, std::span<const uint8_t> contents) {
  const size_t length = contents.size() + 2;
  out_.insert(out_.end(), {0xFF, marker, uint8_t(length >> 8), uint8_t(length)});
  out_.insert(out_.end(), contents.begin(), contents.end());
}

void Encoder::write_header() {
  out_ = {0xFF, SOI};
  // JFIF 1.1, square pixels, no thumbnail.
  segment(APP0, std::array<uint8_t, 14>{'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0});
  const size_t tables = components_.back().tables + 1;
  for (size_t i = 0; i < tables; ++i) {
    std::vector<uint8_t> contents{uint8_t(i)};
    for (size_t k = 0; k < 64; ++k) contents.push_back(uint8_t(steps_[i][natural_position[k]]));
    segment(DQT, contents);
  }

  const int width = image_.width(), height = image_.height();
  std::vector<uint8_t> frame{
      8, uint8_t(height >> 8), uint8_t(height), uint8_t(width >> 8), uint8_t(width), uint8_t(components_.size())};
  std::vector<uint8_t> scan{uint8_t(components_.size())};
  for (uint8_t id = 1; const Component& component : components_) {
    const uint8_t table = uint8_t(component.tables);
    frame.insert(frame.end(), {id, uint8_t(component.horizontal << 4 | component.vertical), table});
    scan.insert(scan.end(), {id, uint8_t(table << 4 | table)});
    ++id;
  }
  scan.insert(scan.end(), {0, 63, 0});
  segment(SOF0, frame);

  for (size_t i = 0; i < tables; ++i) {
    const auto write_table = [&](size_t kind, const HuffmanSpec& codes) {
      std::vector<uint8_t> contents{uint8_t(kind << 4 | i)};
      contents.insert(contents.end(), codes.counts.begin(), codes.counts.end());
      contents.insert(contents.end(), codes.symbols.begin(), codes.symbols.begin() + codes.size());
      segment(DHT, contents);
    };
    write_table(0, dc_specs_[i]);
    write_table(1, ac_specs_[i]);
  }
  segment(SOS, scan);
}

/// Transforms and quantizes the picture and puts its blocks, in the order of the scan, into sinks[0] and sinks[1].
template <class Sinks>
void Encoder::code_rows(Sinks& sinks, auto after_row) {
  std::array<int, 3> previous_dc{};
  alignas(16) int16_t block[64];
  for (int mcu_row = 0; mcu_row < mcu_rows_; ++mcu_row) {
    prepare_rows(mcu_row);
    for (int mcu_column = 0; mcu_column < mcu_columns_; ++mcu_column)
      for (size_t c = 0; c < components_.size(); ++c) {
        const Component component = components_[c];
        for (int v = 0; v < component.vertical; ++v)
          for (int h = 0; h < component.horizontal; ++h) {
            const int x = (mcu_column * component.horizontal + h) * 8;
            pqx_Video_DCT8x8Fwd_8U_16S(planes_[c].row(v * 8) + x, planes_[c].step(), block);
            block[0] = int16_t(block[0] - level_shift);
            pqx_Video_Quantize_16S_I(quantizers_[component.tables].data(), block);
            code_block(block, previous_dc[c], sinks[component.tables]);
          }
      }
    after_row();
  }
}

/// Fills the planes with a row of MCUs. Beyond its edges the picture is continued by its last column and row.
void Encoder::prepare_rows(int mcu_row) {
  const int top = mcu_row * mcu_height_, rows = std::min(mcu_height_, image_.height() - top);
  const int even_width = (image_.width() + 1) / 2 * 2;
  const auto luma = [&](int y) { return planes_[0].row(y); };
  for (int y = 0; y < rows; y += components_[0].vertical) {
    const uint8_t* const source = picture_row(top + y, 0);
    if (components_.size() == 1) {
      std::copy_n(source, image_.width(), luma(y));
    } else if (options_.sampling == Sampling::s420) {
      const uint8_t* const below = y + 1 < rows ? picture_row(top + y + 1, 1) : source;
      pqx_Video_ColorRGB2YCC420_BL_8U(source, below, luma(y), luma(y + 1), planes_[1].row(y / 2),
                                      planes_[2].row(y / 2), even_width);
    } else {
      const auto convert =
          options_.sampling == Sampling::s422 ? pqx_Video_ColorRGB2YCC422_BL_8U : pqx_Video_ColorRGB2YCC444_8U;
      convert(source, luma(y), planes_[1].row(y), planes_[2].row(y), even_width);
    }
  }

  for (size_t c = 0; c < components_.size(); ++c) {
    const int shrink_x = components_[0].horizontal / components_[c].horizontal;
    const int shrink_y = components_[0].vertical / components_[c].vertical;
    const int filled_columns = (image_.width() + shrink_x - 1) / shrink_x;
    const int filled_rows = (rows + shrink_y - 1) / shrink_y;
    for (int y = 0; y < planes_[c].rows(); ++y) {
      uint8_t* const row = planes_[c].row(y);
      if (y < filled_rows) {
        std::fill(row + filled_columns, row + planes_[c].columns(), row[filled_columns - 1]);
      } else {
        std::copy_n(planes_[c].row(filled_rows - 1), planes_[c].columns(), row);
      }
    }
  }
}

/// A row of the picture; if its width is odd, a copy in which the last pixel is repeated.
const uint8_t* Encoder::picture_row(int y, size_t scratch) {
  const uint8_t* const row = image_.row(y);
  if (image_.width() % 2 == 0) return row;
  auto& copy = odd_rows_[scratch];
  std::copy_n(row, image_.row_bytes(), copy.begin());
  std::copy_n(row + image_.row_bytes() - image_.channels(), image_.channels(),
              copy.begin() + ptrdiff_t(image_.row_bytes()));
  return copy.data();
}

}  // namespace

std::vector<uint8_t> encode(const Image& image, const EncoderOptions& options) {
  return Encoder(image, options).encode();
}

}  // namespace pqx_codec::jpeg
