#include "jpeg/decoder.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jpeg/block_decoder.h"
#include "jpeg/format.h"
#include "jpeg/huffman.h"
#include "jpeg/scan_data.h"
#include "picture/plane.h"

namespace pqx_codec::jpeg {
namespace {

[[noreturn]] void damaged(const std::string& what) { throw Failure("damaged JPEG: " + what); }
[[noreturn]] void not_supported(const std::string& what) { throw Failure("not supported: " + what); }

constexpr int divide_up(int a, int b) { return (a + b - 1) / b; }

/// The bytes of a marker segment.
class Segment {
 public:
  explicit Segment(std::span<const uint8_t> bytes) : bytes_(bytes) {}

  bool empty() const { return bytes_.empty(); }
  int byte() { return take(1)[0]; }
  int word() {
    const auto bytes = take(2);
    return bytes[0] << 8 | bytes[1];
  }
  std::span<const uint8_t> take(size_t count) {
    if (bytes_.size() < count) damaged("a segment is shorter than its contents");
    const auto taken = bytes_.first(count);
    bytes_ = bytes_.subspan(count);
    return taken;
  }
  bool starts_with(std::string_view text) const {
    return bytes_.size() >= text.size() && std::equal(text.begin(), text.end(), bytes_.begin());
  }

 private:
  std::span<const uint8_t> bytes_;
};

struct Component {
  int id;
  int horizontal, vertical;  // blocks in an MCU of all components
  int steps_index;
  int columns = 0, rows = 0;  // samples
  bool decoded = false;
};

struct Frame {
  int width, height;
  int horizontal = 1, vertical = 1;  // the largest of the components
  std::vector<Component> components;

  int mcu_columns() const { return divide_up(width, 8 * horizontal); }
  int mcu_rows() const { return divide_up(height, 8 * vertical); }
};

struct ScanComponent {
  size_t index;
  int horizontal, vertical;  // blocks in an MCU of the scan
  BlockReconstruction reconstruct;
  const HuffmanDecoder& dc_codes;
  const HuffmanDecoder& ac_codes;
  int dc = 0;
};

class Decoder {
 public:
  Decoder(std::span<const uint8_t> bytes, Upsampling upsampling) : bytes_(bytes), upsampling_(upsampling) {}

  Image decode();

 private:
  uint8_t next_marker();
  Segment next_segment();
  void read_quant_tables(Segment segment);
  void read_huffman_tables(Segment segment);
  void read_frame(Segment segment);
  void read_adobe(Segment segment);
  void read_scan(Segment segment);

  void check_sampling();
  ColorModel color_model() const;
  void allocate(bool whole_planes);
  void decode_scan(std::vector<ScanComponent>& scan);

  std::span<const uint8_t> bytes_;
  size_t position_ = 0;
  Upsampling upsampling_;

  std::array<std::optional<QuantTable>, 4> quant_tables_;
  // Frames of motion JPEG leave the customary tables out.
  std::array<HuffmanSpec, 4> dc_specs_{standard_luma_dc, standard_chroma_dc};
  std::array<HuffmanSpec, 4> ac_specs_{standard_luma_ac, standard_chroma_ac};
  std::array<std::optional<HuffmanDecoder>, 4> dc_codes_, ac_codes_;  // of the current scan
  int restart_interval_ = 0;
  bool jfif_ = false;
  std::optional<int> adobe_transform_;

  std::optional<Frame> frame_;
  ChromaRatio ratio_{1, 1};
  std::vector<Plane> planes_;
  std::optional<Image> image_;
  std::optional<RowConverter> converter_;
};

Image Decoder::decode() {
  if (next_marker() != SOI) damaged("no start of image");
  for (;;) {
    const uint8_t marker = next_marker();
    switch (marker) {
      case EOI:
        if (!frame_) damaged("no picture in it");
        for (const Component& component : frame_->components)
          if (!component.decoded) damaged("a component of the picture is missing");
        converter_->convert_through(frame_->height);
        return std::move(*image_);
      case SOI:
        damaged("a second start of image");
      case DQT:
        read_quant_tables(next_segment());
        break;
      case DHT:
        read_huffman_tables(next_segment());
        break;
      case DRI:
        restart_interval_ = next_segment().word();
        break;
      case APP0:
        jfif_ |= next_segment().starts_with(std::string_view("JFIF\0", 5));
        break;
      case APP14:
        read_adobe(next_segment());
        break;
      case SOF0:
      case SOF1:
        read_frame(next_segment());
        break;
      case SOS:
        read_scan(next_segment());
        break;
      default:
        if (marker == SOF2) not_supported("progressive JPEG");
        if (marker == SOF0 + 3) not_supported("lossless JPEG");
        if (marker > SOF2 && marker < JPG && marker != DHT) not_supported("hierarchical JPEG");
        if (marker > JPG && marker <= SOF15 && marker != DAC) not_supported("arithmetic coding in JPEG");
        const bool alone = marker == TEM || (marker >= RST0 && marker <= RST7);
        if (!alone) next_segment();
    }
  }
}

uint8_t Decoder::next_marker() {
  const auto byte = [&] {
    if (position_ == bytes_.size()) throw Failure("truncated JPEG: the file ends before the picture does");
    return bytes_[position_++];
  };
  if (byte() != 0xFF) damaged("no marker where one belongs");
  uint8_t marker = byte();
  while (marker == 0xFF) marker = byte();
  if (marker == 0) damaged("no marker where one belongs");
  return marker;
}

Segment Decoder::next_segment() {
  const auto rest = bytes_.subspan(position_);
  if (rest.size() < 2) throw Failure("truncated JPEG: the file ends within its header");
  const size_t length = size_t(rest[0]) << 8 | rest[1];
  if (length < 2) damaged("a segment without length");
  if (length > rest.size()) throw Failure("truncated JPEG: the file ends within its header");
  position_ += length;
  return Segment(rest.first(length).subspan(2));
}

void Decoder::read_quant_tables(Segment segment) {
  while (!segment.empty()) {
    const int kind = segment.byte(), precision = kind >> 4, index = kind & 15;
    if (precision > 1 || index > 3) damaged("impossible quantization table");
    QuantTable& steps = quant_tables_[size_t(index)].emplace();
    for (size_t k = 0; k < 64; ++k)
      steps[natural_position[k]] = uint16_t(precision ? segment.word() : segment.byte());
  }
}

void Decoder::read_huffman_tables(Segment segment) {
  while (!segment.empty()) {
    const int kind = segment.byte(), table_class = kind >> 4, index = kind & 15;
    if (table_class > 1 || index > 3) damaged("impossible Huffman table");
    HuffmanSpec table;
    std::ranges::copy(segment.take(16), table.counts.begin());
    if (table.size() > 256) damaged("impossible Huffman table");
    std::ranges::copy(segment.take(size_t(table.size())), table.symbols.begin());
    (table_class == 0 ? dc_specs_ : ac_specs_)[size_t(index)] = table;
  }
}

void Decoder::read_adobe(Segment segment) {
  if (!segment.starts_with("Adobe")) return;
  segment.take(5 + 6);  // name, version, flags
  adobe_transform_ = segment.byte();
}

void Decoder::read_frame(Segment segment) {
  if (frame_) damaged("a second picture in it");
  const int precision = segment.byte();
  if (precision != 8) not_supported("JPEG of " + std::to_string(precision) + "-bit samples");
  Frame frame;
  frame.height = segment.word();
  frame.width = segment.word();
  if (frame.width == 0) damaged("picture without columns");
  if (frame.height == 0) not_supported("JPEG that states its height behind the picture");
  check_dimensions(frame.width, frame.height);

  const int count = segment.byte();
  if (count != 1 && count != 3 && count != 4) not_supported("JPEG of " + std::to_string(count) + " components");
  for (int i = 0; i < count; ++i) {
    const int id = segment.byte(), factors = segment.byte();
    const Component component{id, factors >> 4, factors & 15, segment.byte()};
    if (component.horizontal < 1 || component.horizontal > 4 || component.vertical < 1 || component.vertical > 4)
      damaged("impossible sampling factors");
    if (component.steps_index > 3) damaged("impossible quantization table");
    for (const Component& other : frame.components)
      if (other.id == id) damaged("two components of one name");
    frame.components.push_back(component);
  }
  // The blocks of a lone component are coded one by one, whatever its factors say.
  if (count == 1) frame.components[0].horizontal = frame.components[0].vertical = 1;
  frame_ = std::move(frame);
  check_sampling();

  // A block takes two bits at least, a code for the DC and one for the end of the block.
  int64_t blocks = 0;
  for (const Component& component : frame_->components)
    blocks += int64_t{divide_up(component.columns, 8)} * divide_up(component.rows, 8);
  if (int64_t(bytes_.size() - position_) < blocks / 4)
    throw Failure("truncated JPEG: too short for " + std::to_string(frame_->width) + " x " +
                  std::to_string(frame_->height) + " pixels");
}

void Decoder::check_sampling() {
  Frame& frame = *frame_;
  std::string factors;
  for (const Component& component : frame.components) {
    frame.horizontal = std::max(frame.horizontal, component.horizontal);
    frame.vertical = std::max(frame.vertical, component.vertical);
    if (!factors.empty()) factors += ',';
    factors += std::to_string(component.horizontal) + 'x' + std::to_string(component.vertical);
  }
  const auto ratio = [&](size_t index) -> ChromaRatio {
    const Component& component = frame.components[index];
    const bool whole = frame.horizontal % component.horizontal == 0 && frame.vertical % component.vertical == 0;
    return {whole ? frame.horizontal / component.horizontal : 0, whole ? frame.vertical / component.vertical : 0};
  };
  const size_t count = frame.components.size();
  if (count > 1) ratio_ = ratio(1);
  const bool chroma_fits =
      count == 1 || (ratio(2) == ratio_ &&
                     (ratio_ == ChromaRatio{1, 1} || ratio_ == ChromaRatio{2, 1} || ratio_ == ChromaRatio{2, 2}));
  const bool others_fit = ratio(0) == ChromaRatio{1, 1} && (count < 4 || ratio(3) == ChromaRatio{1, 1});
  if (!chroma_fits || !others_fit) not_supported("JPEG with sampling factors " + factors);

  for (size_t i = 0; i < count; ++i) {
    frame.components[i].columns = divide_up(frame.width, ratio(i).columns);
    frame.components[i].rows = divide_up(frame.height, ratio(i).rows);
  }
}

ColorModel Decoder::color_model() const {
  const auto& components = frame_->components;
  if (components.size() == 1) return ColorModel::grey;
  if (components.size() == 4) return adobe_transform_.value_or(0) == 0 ? ColorModel::cmyk : ColorModel::ycck;
  if (jfif_) return ColorModel::ycc;
  const bool named_rgb = components[0].id == 'R' && components[1].id == 'G' && components[2].id == 'B';
  return adobe_transform_ ? (*adobe_transform_ == 0 ? ColorModel::rgb : ColorModel::ycc)
         : named_rgb      ? ColorModel::rgb
                          : ColorModel::ycc;
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
  converter_.emplace(color_model(), ratio_, upsampling_, planes_, *image_);
}

void Decoder::read_scan(Segment segment) {
  if (!frame_) damaged("picture data before the kind of picture");
  const int count = segment.byte();
  if (count < 1 || count > 4) damaged("impossible number of components in a scan");
  std::vector<ScanComponent> scan;
  int blocks = 0;
  for (int i = 0; i < count; ++i) {
    const int id = segment.byte(), tables = segment.byte();
    const auto found = std::ranges::find(frame_->components, id, &Component::id);
    if (found == frame_->components.end()) damaged("a scan of a component that does not exist");
    if (std::exchange(found->decoded, true)) damaged("a component is coded twice");
    const auto& steps = quant_tables_[size_t(found->steps_index)];
    if (!steps) damaged("a quantization table is missing");
    if ((tables >> 4) > 3 || (tables & 15) > 3) damaged("impossible Huffman table");
    scan.push_back(
        {size_t(found - frame_->components.begin()), count == 1 ? 1 : found->horizontal,
         count == 1 ? 1 : found->vertical, BlockReconstruction(*steps),
         dc_codes_[size_t(tables >> 4)].emplace(dc_specs_[size_t(tables >> 4)], HuffmanDecoder::Kind::dc),
         ac_codes_[size_t(tables & 15)].emplace(ac_specs_[size_t(tables & 15)], HuffmanDecoder::Kind::ac)});
    blocks += scan.back().horizontal * scan.back().vertical;
  }
  if (count > 1 && blocks > 10) damaged("too many blocks in a group of components");
  if (!image_) allocate(size_t(count) < frame_->components.size());
  decode_scan(scan);
}

void Decoder::decode_scan(std::vector<ScanComponent>& scan) {
  const Component& first = frame_->components[scan[0].index];
  const bool alone = scan.size() == 1;
  const int mcu_columns = alone ? divide_up(first.columns, 8) : frame_->mcu_columns();
  const int mcu_rows = alone ? divide_up(first.rows, 8) : frame_->mcu_rows();
  const bool whole_picture = scan.size() == frame_->components.size();

  ScanData data(bytes_.subspan(position_));
  BitReader bits = data.next_interval();
  int left_in_interval = restart_interval_ ? restart_interval_ : mcu_columns * mcu_rows;
  int restarts = 0;
  const auto finish_interval = [&] {
    if (bits.bits_left() >= 8) damaged("data of the picture left over");
  };
  const auto restart = [&] {
    finish_interval();
    if (data.marker() != RST0 + restarts++ % 8) damaged("a restart marker is missing");
    data.skip_marker();
    bits = data.next_interval();
    for (ScanComponent& component : scan) component.dc = 0;
    left_in_interval = restart_interval_;
  };

  LevelBlock block;
  for (int mcu_row = 0; mcu_row < mcu_rows; ++mcu_row) {
    for (int mcu_column = 0; mcu_column < mcu_columns; ++mcu_column) {
      if (left_in_interval == 0) restart();
      --left_in_interval;
      for (ScanComponent& component : scan) {
        const Plane& plane = planes_[component.index];
        for (int v = 0; v < component.vertical; ++v) {
          uint8_t* pixels = plane.row((mcu_row * component.vertical + v) * 8) + mcu_column * component.horizontal * 8;
          for (int h = 0; h < component.horizontal; ++h, pixels += 8) {
            decode_block(bits, component.dc_codes, component.ac_codes, component.dc, block);
            component.reconstruct(block, pixels, plane.step());
          }
        }
      }
    }
    if (whole_picture) converter_->convert_through((mcu_row + 1) * frame_->vertical * 8);
  }
  finish_interval();
  position_ += data.marker_position();
}

}  // namespace

bool is_file(std::span<const uint8_t> bytes) {
  return bytes.size() >= 3 && bytes[0] == 0xFF && bytes[1] == SOI && bytes[2] == 0xFF;
}

Image decode(std::span<const uint8_t> bytes, Upsampling upsampling) { return Decoder(bytes, upsampling).decode(); }

}  // namespace pqx_codec::jpeg
