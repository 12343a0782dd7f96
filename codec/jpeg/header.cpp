#include "jpeg/header.h"

#include <algorithm>

#include "bits/zig_zag.h"
#include "core/failure.h"

namespace pqx_codec::jpeg {

void damaged(const std::string& what) { throw Failure("damaged JPEG: " + what); }
void not_supported(const std::string& what) { throw Failure("not supported: " + what); }

int Segment::word() {
  const auto bytes = take(2);
  return bytes[0] << 8 | bytes[1];
}

std::span<const uint8_t> Segment::take(size_t count) {
  if (bytes_.size() < count) damaged("a segment is shorter than its contents");
  const auto taken = bytes_.first(count);
  bytes_ = bytes_.subspan(count);
  return taken;
}

bool Segment::starts_with(std::string_view text) const {
  return bytes_.size() >= text.size() && std::equal(text.begin(), text.end(), bytes_.begin());
}

uint8_t MarkerReader::next_marker() {
  const auto byte = [&] {
    if (rest_.empty()) throw Failure("truncated JPEG: the file ends before the picture does");
    const uint8_t first = rest_[0];
    skip(1);
    return first;
  };
  if (byte() != 0xFF) damaged("no marker where one belongs");
  uint8_t marker = byte();
  while (marker == 0xFF) marker = byte();
  if (marker == 0) damaged("no marker where one belongs");
  return marker;
}

Segment MarkerReader::next_segment() {
  if (rest_.size() < 2) throw Failure("truncated JPEG: the file ends within its header");
  const size_t length = size_t(rest_[0]) << 8 | rest_[1];
  if (length < 2) damaged("a segment without length");
  if (length > rest_.size()) throw Failure("truncated JPEG: the file ends within its header");
  const Segment segment(rest_.first(length).subspan(2));
  skip(length);
  return segment;
}

void Tables::read_quantization(Segment segment) {
  while (!segment.empty()) {
    const int kind = segment.byte(), precision = kind >> 4, index = kind & 15;
    if (precision > 1 || index > 3) damaged("impossible quantization table");
    QuantTable& table = steps[size_t(index)].emplace();
    for (size_t k = 0; k < 64; ++k)
      table[natural_position[k]] = uint16_t(precision ? segment.word() : segment.byte());
  }
}

void Tables::read_huffman(Segment segment) {
  while (!segment.empty()) {
    const int kind = segment.byte(), table_class = kind >> 4, index = kind & 15;
    if (table_class > 1 || index > 3) damaged("impossible Huffman table");
    HuffmanSpec table;
    std::ranges::copy(segment.take(16), table.counts.begin());
    if (table.size() > 256) damaged("impossible Huffman table");
    std::ranges::copy(segment.take(size_t(table.size())), table.symbols.begin());
    (table_class == 0 ? dc : ac)[size_t(index)] = table;
  }
}

Frame::Frame(Segment segment) {
  const int precision = segment.byte();
  if (precision != 8) not_supported("JPEG of " + std::to_string(precision) + "-bit samples");
  height = segment.word();
  width = segment.word();
  if (width == 0) damaged("picture without columns");
  if (height == 0) not_supported("JPEG that states its height behind the picture");

  const int count = segment.byte();
  if (count != 1 && count != 3 && count != 4) not_supported("JPEG of " + std::to_string(count) + " components");
  for (int i = 0; i < count; ++i) {
    const int id = segment.byte(), factors = segment.byte();
    const Component component{id, factors >> 4, factors & 15, segment.byte()};
    if (component.horizontal < 1 || component.horizontal > 4 || component.vertical < 1 || component.vertical > 4)
      damaged("impossible sampling factors");
    if (component.steps_index > 3) damaged("impossible quantization table");
    if (std::ranges::count(components, id, &Component::id)) damaged("two components of one name");
    components.push_back(component);
  }
  // The blocks of a lone component are coded one by one, whatever its factors say.
  if (count == 1) components[0].horizontal = components[0].vertical = 1;
  check_sampling();
}

void Frame::check_sampling() {
  std::string factors;
  for (const Component& component : components) {
    horizontal = std::max(horizontal, component.horizontal);
    vertical = std::max(vertical, component.vertical);
    if (!factors.empty()) factors += ',';
    factors += std::to_string(component.horizontal) + 'x' + std::to_string(component.vertical);
  }
  const auto ratio_of = [&](size_t index) -> ChromaRatio {
    const Component& component = components[index];
    const bool whole = horizontal % component.horizontal == 0 && vertical % component.vertical == 0;
    return {whole ? horizontal / component.horizontal : 0, whole ? vertical / component.vertical : 0};
  };
  const size_t count = components.size();
  if (count > 1) ratio = ratio_of(1);
  const bool chroma_fits =
      count == 1 || (ratio_of(2) == ratio &&
                     (ratio == ChromaRatio{1, 1} || ratio == ChromaRatio{2, 1} || ratio == ChromaRatio{2, 2}));
  const bool others_fit = ratio_of(0) == ChromaRatio{1, 1} && (count < 4 || ratio_of(3) == ChromaRatio{1, 1});
  if (!chroma_fits || !others_fit) not_supported("JPEG with sampling factors " + factors);

  for (size_t i = 0; i < count; ++i) {
    components[i].columns = divide_up(width, ratio_of(i).columns);
    components[i].rows = divide_up(height, ratio_of(i).rows);
  }
}

int64_t Frame::blocks() const {
  int64_t sum = 0;
  for (const Component& c : components) sum += int64_t{divide_up(c.columns, 8)} * divide_up(c.rows, 8);
  return sum;
}

void ColorHints::read_jfif(Segment segment) { jfif |= segment.starts_with(std::string_view("JFIF\0", 5)); }

void ColorHints::read_adobe(Segment segment) {
  if (!segment.starts_with("Adobe")) return;
  segment.take(5 + 6);  // name, version, flags
  adobe_transform = segment.byte();
}

ColorModel ColorHints::model_of(const Frame& frame) const {
  const auto& components = frame.components;
  if (components.size() == 1) return ColorModel::grey;
  if (components.size() == 4) return adobe_transform.value_or(0) == 0 ? ColorModel::cmyk : ColorModel::ycck;
  if (jfif) return ColorModel::ycc;
  const bool named_rgb = components[0].id == 'R' && components[1].id == 'G' && components[2].id == 'B';
  return adobe_transform ? (*adobe_transform == 0 ? ColorModel::rgb : ColorModel::ycc)
         : named_rgb     ? ColorModel::rgb
                         : ColorModel::ycc;
}

}  // namespace pqx_codec::jpeg
