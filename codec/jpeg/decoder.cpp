#include "jpeg/decoder.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "core/failure.h"
#include "jpeg/header.h"
#include "jpeg/scan.h"
#include "picture/exif.h"
#include "picture/plane.h"

namespace pqx_codec::jpeg {
namespace {

class Decoder {
 public:
  Decoder(std::span<const uint8_t> bytes, Upsampling upsampling, int64_t max_pixels)
      : reader_(bytes), upsampling_(upsampling), max_pixels_(max_pixels) {}

  Image decode();

 private:
  void read_frame();
  void read_scan();
  void allocate(bool whole_planes);
  void pass_over(uint8_t marker);
  Image finish();

  MarkerReader reader_;
  Upsampling upsampling_;
  int64_t max_pixels_;
  Tables tables_;
  int restart_interval_ = 0;
  ColorHints hints_;

  std::optional<Frame> frame_;
  std::vector<Plane> planes_;
  std::optional<Image> image_;
  std::optional<RowConverter> converter_;
};

Image Decoder::decode() {
  if (reader_.next_marker() != SOI) damaged("no start of image");
  for (;;) {
    const uint8_t marker = reader_.next_marker();
    switch (marker) {
      case EOI:
        return finish();
      case SOI:
        damaged("a second start of image");
      case DQT:
        tables_.read_quantization(reader_.next_segment());
        break;
      case DHT:
        tables_.read_huffman(reader_.next_segment());
        break;
      case DRI:
        restart_interval_ = reader_.next_segment().word();
        break;
      case APP0:
        hints_.read_jfif(reader_.next_segment());
        break;
      case APP14:
        hints_.read_adobe(reader_.next_segment());
        break;
      case SOF0:
      case SOF1:
        read_frame();
        break;
      case SOS:
        read_scan();
        break;
      default:
        pass_over(marker);
    }
  }
}

void Decoder::read_frame() {
  const Segment segment = reader_.next_segment();
  if (frame_) damaged("a second picture in it");
  frame_.emplace(segment);
  check_dimensions(frame_->width, frame_->height, max_pixels_);
  // A block takes two bits at least, a code for the DC and one for the end of the block.
  if (int64_t(reader_.rest().size()) < frame_->blocks() / 4)
    throw Failure("truncated JPEG: too short for " + std::to_string(frame_->width) + " x " +
                  std::to_string(frame_->height) + " pixels");
}

void Decoder::read_scan() {
  const Segment segment = reader_.next_segment();
  if (!frame_) damaged("picture data before the kind of picture");
  Scan scan(segment, *frame_, tables_);
  if (!image_) allocate(!scan.is_whole());
  const auto convert_row = [&](int mcu_row) {
    if (scan.is_whole()) converter_->convert_through((mcu_row + 1) * frame_->vertical * 8);
  };
  reader_.skip(scan.decode(reader_.rest(), restart_interval_, planes_, convert_row));
}

/// Planes keep two rows of MCUs, as the conversion of the last row of one waits for the next, or all of them if the
/// components come in several scans.
void Decoder::allocate(bool whole_planes) {
  for (const Component& component : frame_->components) {
    const int step = frame_->mcu_columns() * component.horizontal * 8;
    const int mcu_rows = whole_planes ? frame_->mcu_rows() : std::min(frame_->mcu_rows(), 2);
    planes_.emplace_back(component.columns, component.rows, step, mcu_rows * component.vertical * 8);
  }
  image_.emplace(frame_->width, frame_->height, frame_->components.size() == 1 ? 1 : 3);
  converter_.emplace(hints_.model_of(*frame_), frame_->ratio, upsampling_, planes_, *image_);
}

void Decoder::pass_over(uint8_t marker) {
  if (marker == SOF2) not_supported("progressive JPEG");
  if (marker == SOF0 + 3) not_supported("lossless JPEG");
  if (marker > SOF2 && marker < JPG && marker != DHT) not_supported("hierarchical JPEG");
  if (marker > JPG && marker <= SOF15 && marker != DAC) not_supported("arithmetic coding in JPEG");
  const bool alone = marker == TEM || (marker >= RST0 && marker <= RST7);
  if (!alone) reader_.next_segment();
}

Image Decoder::finish() {
  if (!frame_) damaged("no picture in it");
  if (!std::ranges::all_of(frame_->components, &Component::decoded)) damaged("a component of the picture is missing");
  converter_->convert_through(frame_->height);
  return std::move(*image_);
}

}  // namespace

bool is_file(std::span<const uint8_t> bytes) {
  return bytes.size() >= 3 && bytes[0] == 0xFF && bytes[1] == SOI && bytes[2] == 0xFF;
}

Image decode(std::span<const uint8_t> bytes, Upsampling upsampling, int64_t max_pixels) {
  return Decoder(bytes, upsampling, max_pixels).decode();
}

int orientation(std::span<const uint8_t> bytes) {
  constexpr std::string_view exif("Exif\0\0", 6);
  try {
    MarkerReader reader(bytes);
    reader.next_marker();
    for (;;) {
      const uint8_t marker = reader.next_marker();
      if (marker == SOS || marker == EOI) return 1;
      Segment segment = reader.next_segment();
      if (marker == APP1 && segment.starts_with(exif)) return exif_orientation(segment.rest().subspan(exif.size()));
    }
  } catch (const Failure&) {
    return 1;
  }
}

}  // namespace pqx_codec::jpeg
