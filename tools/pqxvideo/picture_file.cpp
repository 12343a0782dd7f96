#include "picture_file.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "files.h"
#include "jpeg/decoder.h"
#include "naming.h"
#include "picture/png.h"
#include "picture/pnm.h"

namespace pqxvideo {
namespace {

bool ends_with(const std::string& path, std::string ending) {
  const size_t n = ending.size();
  return path.size() > n && std::equal(path.end() - ptrdiff_t(n), path.end(), ending.begin(),
                                       [](char a, char b) { return std::tolower(uint8_t(a)) == b; });
}

bool is_pnm_name(const std::string& path) {
  return ends_with(path, ".ppm") || ends_with(path, ".pgm") || ends_with(path, ".pnm");
}

}  // namespace

Image read_picture(const std::string& path) {
  return naming(path, [&] {
    OwnedBytes bytes = read_file(path);
    if (is_png(bytes)) return read_png(bytes);
    if (is_pnm(bytes)) return read_pnm(std::move(bytes));
    if (jpeg::is_file(bytes)) return jpeg::decode(bytes);
    throw Failure("not a PNG, PNM or JPEG file");
  });
}

bool is_writable_kind(const std::string& path) { return ends_with(path, ".png") || is_pnm_name(path); }

void write_picture(const std::string& path, const Image& image) {
  naming(path, [&] {
    OutputFile file(path);
    if (is_pnm_name(path)) {
      write_pnm(image, file);
    } else {
      write_png(image, file);
    }
    file.commit();
  });
}

}  // namespace pqxvideo
