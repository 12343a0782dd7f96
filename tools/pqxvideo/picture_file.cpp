#include "picture_file.h"

#include <utility>

#include "files.h"
#include "jpeg/decoder.h"
#include "naming.h"
#include "picture/png.h"
#include "picture/pnm.h"
#include "report.h"

namespace pqxvideo {

size_t picture_limit(std::span<const uint8_t> head, int64_t max_pixels) {
  if (!is_png(head) && !is_pnm(head) && !jpeg::is_file(head)) throw Failure("not a PNG, PNM or JPEG file");
  return most_picture_bytes(max_pixels);
}

Image read_picture(const std::string& path, int64_t max_pixels) {
  const auto limit = [&](std::span<const uint8_t> head) { return picture_limit(head, max_pixels); };
  return decode_picture(path, read_file(path, limit), max_pixels);
}

Image decode_picture(const std::string& path, OwnedBytes bytes, int64_t max_pixels) {
  return naming(path, [&] {
    if (is_pnm(bytes)) return read_pnm(std::move(bytes), max_pixels);
    picture_limit(bytes, max_pixels);
    const bool png = is_png(bytes);
    Image image = png ? read_png(bytes, max_pixels) : jpeg::decode(bytes, jpeg::Upsampling::bilinear, max_pixels);
    report_orientation(path, png ? png_orientation(bytes) : jpeg::orientation(bytes));
    return image;
  });
}

void report_orientation(const std::string& path, int orientation) {
  if (orientation != 1)
    report(path + ": its Exif orientation, " + std::to_string(orientation) + ", is dropped, not applied");
}

void write_picture(const std::string& path, const Image& image, Format::Kind format) {
  naming(path, [&] {
    OutputFile file(path);
    if (format == Format::pnm)
      write_pnm(image, file);
    else
      write_png(image, file);
    file.commit();
  });
}

void write_picture(const std::string& path, const Image& image) {
  write_picture(path, image, Destination{path, ""}.choose(picture_formats));
}

}  // namespace pqxvideo
