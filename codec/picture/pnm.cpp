#include "picture/pnm.h"

#include <algorithm>
#include <array>
#include <string>

namespace pqx_codec {
namespace {

class HeaderReader {
 public:
  explicit HeaderReader(std::span<const uint8_t> bytes) : bytes_(bytes) {}

  /// The next decimal number, behind white space and comments.
  int64_t number() {
    skip_space();
    if (position_ == bytes_.size()) throw Failure("truncated PNM: end of file in the header");
    int64_t value = 0;
    const size_t first = position_;
    for (; position_ < bytes_.size() && is_digit(bytes_[position_]); ++position_)
      value = std::min(value * 10 + (bytes_[position_] - '0'), int64_t{1} << 40);
    if (position_ == first) throw Failure("damaged PNM: the header holds no number where one belongs");
    return value;
  }

  /// What follows the one byte of white space that ends the header.
  std::span<const uint8_t> samples() const {
    if (position_ == bytes_.size()) throw Failure("truncated PNM: end of file in the header");
    if (!is_space(bytes_[position_])) throw Failure("damaged PNM: no white space behind the header");
    return bytes_.subspan(position_ + 1);
  }

 private:
  static bool is_digit(uint8_t c) { return c >= '0' && c <= '9'; }
  static bool is_space(uint8_t c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

  void skip_space() {
    bool comment = false;
    for (; position_ < bytes_.size(); ++position_) {
      const uint8_t c = bytes_[position_];
      if (c == '#') comment = true;
      if (!comment && !is_space(c)) return;
      if (c == '\n' || c == '\r') comment = false;
    }
  }

  std::span<const uint8_t> bytes_;
  size_t position_ = 2;
};

struct Header {
  int width, height, channels, maximum;
  std::span<const uint8_t> samples;
};

Header read_header(std::span<const uint8_t> bytes, int64_t max_pixels) {
  if (bytes[1] != '5' && bytes[1] != '6')
    throw Failure(std::string("not supported: PNM of type P") + char(bytes[1]) + " (only P5 and P6 are)");
  HeaderReader header(bytes);
  const int64_t width = header.number(), height = header.number(), maximum = header.number();
  check_dimensions(width, height, max_pixels);
  if (maximum > 255) throw Failure("not supported: PNM with more than 8 bits in a sample");
  if (maximum == 0) throw Failure("damaged PNM: the largest sample value is 0");

  const std::span<const uint8_t> samples = header.samples();
  const int channels = bytes[1] == '5' ? 1 : 3;
  if (samples.size() < size_t(width * height * channels)) throw Failure("truncated PNM: samples are missing");
  return {int(width), int(height), channels, int(maximum), samples};
}

/// Scales samples of a smaller maximum up to 255.
void stretch(Image& image, int maximum) {
  if (maximum == 255) return;
  std::array<uint8_t, 256> scaled;
  for (int i = 0; i < 256; ++i) scaled[size_t(i)] = uint8_t(std::min((i * 255 + maximum / 2) / maximum, 255));
  for (int y = 0; y < image.height(); ++y)
    std::transform(image.row(y), image.row(y) + image.row_bytes(), image.row(y),
                   [&](uint8_t s) { return scaled[s]; });
}

}  // namespace

bool is_pnm(std::span<const uint8_t> bytes) {
  return bytes.size() > 2 && bytes[0] == 'P' && bytes[1] >= '1' && bytes[1] <= '7' &&
         (bytes[2] == '#' || bytes[2] == ' ' || (bytes[2] >= '\t' && bytes[2] <= '\r'));
}

Image read_pnm(std::span<const uint8_t> bytes, int64_t max_pixels) {
  const Header header = read_header(bytes, max_pixels);
  Image image{header.width, header.height, header.channels};
  for (int y = 0; y < image.height(); ++y)
    std::copy_n(&header.samples[size_t(y) * image.row_bytes()], image.row_bytes(), image.row(y));
  stretch(image, header.maximum);
  return image;
}

Image read_pnm(OwnedBytes&& file, int64_t max_pixels) {
  const std::span<const uint8_t> bytes = file;
  const Header header = read_header(bytes, max_pixels);
  if (header.width % 2) return read_pnm(bytes, max_pixels);
  const auto offset = header.samples.data() - bytes.data();
  Memory memory = std::move(file.memory);
  uint8_t* const samples = memory.get() + offset;
  Image image{header.width, header.height, header.channels, std::move(memory), samples};
  stretch(image, header.maximum);
  return image;
}

void write_pnm(const Image& image, ByteSink& out) {
  const std::string header = std::string(image.channels() == 1 ? "P5\n" : "P6\n") + std::to_string(image.width()) +
                             ' ' + std::to_string(image.height()) + "\n255\n";
  out.write(header);
  if (image.step() == image.row_bytes()) {
    out.write(std::span<const uint8_t>{image.row(0), image.row_bytes() * size_t(image.height())});
  } else {
    for (int y = 0; y < image.height(); ++y) out.write(std::span<const uint8_t>{image.row(y), image.row_bytes()});
  }
}

}  // namespace pqx_codec
