// A reader of the tool, by its macro, on any bytes.
#include "h261/decoder.h"
#include "h263/decoder.h"
#include "jpeg/decoder.h"
#include "picture/pnm.h"
#include "picture/y4m.h"

using namespace pqx_codec;

namespace {

[[maybe_unused]] void fuzz_jpeg(std::span<const uint8_t> bytes) {
  jpeg::decode(bytes, bytes.size() % 2 ? jpeg::Upsampling::nearest : jpeg::Upsampling::bilinear);
}
/// Each stream strictly, and again with its damage concealed.
[[maybe_unused]] void fuzz_h261(std::span<const uint8_t> bytes) {
  for (h261::Decoder concealing(bytes, [](const std::string&) {}); concealing.next();) continue;
  for (h261::Decoder strict(bytes); strict.next();) continue;
}
[[maybe_unused]] void fuzz_h263(std::span<const uint8_t> bytes) {
  for (const bool conceal : {true, false}) {
    h263::Decoder decoder(conceal ? [](const std::string&) {} : h263::Decoder::Report());
    const auto half = bytes.first(bytes.size() / 2);
    decoder.push(half);
    while (decoder.next()) continue;
    decoder.push(bytes.subspan(half.size()));
    decoder.finish();
    while (decoder.next()) continue;
  }
}
[[maybe_unused]] void fuzz_y4m(std::span<const uint8_t> bytes) {
  YuvPicture picture;
  for (Y4mReader reader(bytes); reader.next(picture);) continue;
}

[[maybe_unused]] void fuzz_pnm(std::span<const uint8_t> bytes) {
  if (is_pnm(bytes)) read_pnm(bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  try {
    PQX_READER({data, size});
  } catch (const Failure&) {
  }
  return 0;
}
