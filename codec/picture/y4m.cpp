#include "picture/y4m.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <string_view>

namespace pqx_codec {
namespace {

constexpr std::string_view magic = "YUV4MPEG2 ";

int number(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 0)
    throw Failure("damaged Y4M: '" + std::string(text) + "' is not a number");
  return value;
}

}  // namespace

bool is_y4m(std::span<const uint8_t> bytes) {
  return bytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), bytes.begin());
}

Y4mReader::Y4mReader(std::span<const uint8_t> bytes, int64_t max_pixels) : rest_(bytes) {
  if (!is_y4m(bytes)) throw Failure("not a Y4M file");
  std::istringstream fields(line().substr(magic.size()));
  for (std::string field; fields >> field;) {
    const std::string value = field.substr(1);
    switch (field[0]) {
      case 'W':
        width_ = number(value);
        break;
      case 'H':
        height_ = number(value);
        break;
      case 'F': {
        const size_t colon = std::min(value.find(':'), value.size());
        const FrameRate stated{number(value.substr(0, colon)),
                               number(value.substr(std::min(colon + 1, value.size())))};
        if ((stated.numerator == 0) != (stated.denominator == 0)) throw Failure("damaged Y4M: impossible frame rate");
        if (stated.numerator != 0) rate_ = stated;
        break;
      }
      case 'C':
        if (value != "420" && value != "420jpeg" && value != "420mpeg2" && value != "420paldv")
          throw Failure("not supported: Y4M of kind " + value);
        break;
      case 'X':
        full_range_ |= value == "COLORRANGE=FULL";
        break;
      case 'I':
        if (value != "p" && value != "?") throw Failure("not supported: interlaced Y4M");
        break;
    }
  }
  check_dimensions(width_, height_, max_pixels);
}

std::string Y4mReader::line() {
  constexpr size_t longest = 1024;
  const auto head = rest_.first(std::min(rest_.size(), longest));
  const auto end = std::find(head.begin(), head.end(), '\n');
  if (end == head.end())
    throw Failure(rest_.size() < longest ? "truncated Y4M" : "damaged Y4M: a header without end");
  const std::string text(head.begin(), end);
  rest_ = rest_.subspan(text.size() + 1);
  return text;
}

bool Y4mReader::next(YuvPicture& picture) {
  if (rest_.empty()) return false;
  if (!line().starts_with("FRAME")) throw Failure("damaged Y4M: no frame where one belongs");
  const auto half = [](int n) { return size_t(n + 1) / 2; };
  if (rest_.size() < size_t(width_) * size_t(height_) + 2 * half(width_) * half(height_))
    throw Failure("truncated Y4M: the last frame is incomplete");
  if (picture.width() != width_ || picture.height() != height_) picture = YuvPicture(width_, height_);
  for (YuvPicture::Component& plane : picture.planes) {
    std::copy_n(rest_.begin(), plane.samples.size(), plane.samples.begin());
    rest_ = rest_.subspan(plane.samples.size());
  }
  return true;
}

Y4mWriter::Y4mWriter(ByteSink& out, const Y4mFormat& format) : out_(out) {
  std::ostringstream header;
  header << magic << 'W' << format.width << " H" << format.height << " F" << format.rate.numerator << ':'
         << format.rate.denominator << " I" << format.interlacing << " A" << format.aspect.numerator << ':'
         << format.aspect.denominator << " C" << format.chroma << (format.more.empty() ? "" : " ") << format.more
         << '\n';
  out_.write(header.str());
}

Y4mWriter::Y4mWriter(ByteSink& out, int width, int height, FrameRate rate, const std::string& more)
    : Y4mWriter(out, {.width = width, .height = height, .rate = rate, .more = more}) {}

void Y4mWriter::write(const YuvPicture& picture) {
  out_.write("FRAME\n");
  for (const YuvPicture::Component& plane : picture.planes) out_.write(plane.samples);
}

void Y4mWriter::write(std::span<const PlaneView, 3> planes) {
  out_.write("FRAME\n");
  for (const PlaneView& plane : planes) {
    const bool packed = plane.step == plane.columns;
    for (int y = 0; y < (packed ? 1 : plane.rows); ++y)
      out_.write(
          {plane.samples + ptrdiff_t{plane.step} * y, size_t(plane.columns) * size_t(packed ? plane.rows : 1)});
  }
}

}  // namespace pqx_codec
