#include "picture/png.h"

#include <png.h>

#include <algorithm>
#include <string>
#include <vector>

#include "picture/exif.h"

namespace pqx_codec {
namespace {

// libpng asks only that its error function does not return; an exception leaves it as well as a jump does, and
// destroys the objects on its way.
[[noreturn]] void on_error(png_structp, png_const_charp message) { throw Failure(message); }
void on_warning(png_structp, png_const_charp) {}

struct PngReader {
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, on_error, on_warning);
  png_infop info = png_create_info_struct(png);
  std::span<const uint8_t> rest;

  explicit PngReader(std::span<const uint8_t> bytes) : rest(bytes) { png_set_read_fn(png, this, read); }
  ~PngReader() { png_destroy_read_struct(&png, &info, nullptr); }
  PngReader(const PngReader&) = delete;

  static void read(png_structp png, png_bytep out, size_t count) {
    auto& rest = static_cast<PngReader*>(png_get_io_ptr(png))->rest;
    if (rest.size() < count) throw Failure("the file ends too early");
    std::copy_n(rest.data(), count, out);
    rest = rest.subspan(count);
  }
};

struct PngWriter {
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, on_error, on_warning);
  png_infop info = png_create_info_struct(png);

  explicit PngWriter(ByteSink& out) {
    png_set_write_fn(png, &out, write, [](png_structp) {});
  }
  ~PngWriter() { png_destroy_write_struct(&png, &info); }
  PngWriter(const PngWriter&) = delete;

  static void write(png_structp png, png_bytep bytes, size_t count) {
    static_cast<ByteSink*>(png_get_io_ptr(png))->write(std::span<const uint8_t>(bytes, count));
  }
};

Image read_samples(PngReader& reader, size_t file_bytes, int64_t max_pixels) {
  const png_structp png = reader.png;
  png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
  // Of the ancillary chunks only transparency is read: a few MB of compressed text can unpack to gigabytes.
  png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
  png_set_chunk_cache_max(png, 16);
  png_set_chunk_malloc_max(png, size_t{1} << 20);
  png_read_info(png, reader.info);
  const png_uint_32 width = png_get_image_width(png, reader.info), height = png_get_image_height(png, reader.info);
  check_dimensions(width, height, max_pixels);
  // Deflate packs at best 1032 to 1.
  if (png_get_rowbytes(png, reader.info) * height / 1032 > file_bytes) throw Failure("the file ends too early");

  png_set_palette_to_rgb(png);
  if (png_get_color_type(png, reader.info) == PNG_COLOR_TYPE_GRAY) png_set_expand_gray_1_2_4_to_8(png);
  png_set_scale_16(png);
  png_set_strip_alpha(png);
  const int passes = png_set_interlace_handling(png);
  png_read_update_info(png, reader.info);

  Image image(int(width), int(height), png_get_channels(png, reader.info));
  if (png_get_rowbytes(png, reader.info) != image.row_bytes()) throw Failure("unexpected kind of samples");
  for (int pass = 0; pass < passes; ++pass)
    for (int y = 0; y < image.height(); ++y) png_read_row(png, image.row(y), nullptr);
  png_read_end(png, nullptr);
  return image;
}

}  // namespace

bool is_png(std::span<const uint8_t> bytes) { return bytes.size() >= 8 && png_sig_cmp(bytes.data(), 0, 8) == 0; }

Image read_png(std::span<const uint8_t> bytes, int64_t max_pixels) {
  PngReader reader(bytes);
  try {
    return read_samples(reader, bytes.size(), max_pixels);
  } catch (const Failure& failure) {
    throw Failure(std::string("damaged PNG: ") + failure.what());
  }
}

int png_orientation(std::span<const uint8_t> bytes) {
  for (auto rest = bytes.subspan(std::min<size_t>(bytes.size(), 8)); rest.size() >= 12;) {
    const size_t length = size_t{rest[0]} << 24 | size_t{rest[1]} << 16 | size_t{rest[2]} << 8 | rest[3];
    if (length > rest.size() - 12) break;
    if (std::equal(&rest[4], &rest[8], "eXIf")) return exif_orientation(rest.subspan(8, length));
    rest = rest.subspan(12 + length);
  }
  return 1;
}

void write_png(const Image& image, ByteSink& out) {
  PngWriter writer(out);
  png_set_user_limits(writer.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
  png_set_IHDR(writer.png, writer.info, png_uint_32(image.width()), png_uint_32(image.height()), 8,
               image.channels() == 1 ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(writer.png, writer.info);
  for (int y = 0; y < image.height(); ++y) png_write_row(writer.png, image.row(y));
  png_write_end(writer.png, writer.info);
}

}  // namespace pqx_codec
