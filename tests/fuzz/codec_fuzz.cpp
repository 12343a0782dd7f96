// A reader or an encoder of the codec library, by its macro, on any bytes.
#include <cstdlib>

#include "core/failure.h"
#include "h261/decoder.h"
#include "h261/encoder.h"
#include "h263/decoder.h"
#include "jpeg/decoder.h"
#include "jpeg/encoder.h"
#include "mpeg/decoder.h"
#include "picture/png.h"
#include "picture/pnm.h"
#include "picture/y4m.h"

using namespace pqx_codec;

namespace {

using Bytes = std::span<const uint8_t>;

[[maybe_unused]] void fuzz_jpeg(Bytes bytes) {
  jpeg::orientation(bytes);
  jpeg::decode(bytes, bytes.size() % 2 ? jpeg::Upsampling::nearest : jpeg::Upsampling::bilinear);
}
/// Each stream strictly, and again with its damage concealed.
[[maybe_unused]] void fuzz_h261(Bytes bytes) {
  for (h261::Decoder concealing(bytes, [](const std::string&) {}); concealing.next();) continue;
  for (h261::Decoder strict(bytes); strict.next();) continue;
}
[[maybe_unused]] void fuzz_h263(Bytes bytes) {
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
[[maybe_unused]] void fuzz_mpeg(Bytes bytes) {
  for (const bool conceal : {true, false}) {
    mpeg::DecoderOptions options{.max_pixels = 1 << 16};
    if (conceal) options.conceal = [](const std::string&) {};
    mpeg::Decoder decoder(options);
    const auto half = bytes.first(bytes.size() / 2);
    decoder.push(half);
    while (decoder.next()) continue;
    decoder.push(bytes.subspan(half.size()));
    decoder.finish();
    while (decoder.next()) continue;
  }
}
[[maybe_unused]] void fuzz_y4m(Bytes bytes) {
  YuvPicture picture;
  for (Y4mReader reader(bytes); reader.next(picture);) continue;
}
[[maybe_unused]] void fuzz_pnm(Bytes bytes) {
  if (is_pnm(bytes)) read_pnm(bytes);
}
[[maybe_unused]] void fuzz_png(Bytes bytes) {
  png_orientation(bytes);
  read_png(bytes);
}

void expect(bool condition) {
  if (!condition) std::abort();
}

/// Numbers from the front of the bytes, then samples, for ever.
class Choices {
 public:
  explicit Choices(Bytes bytes) : bytes_(bytes) {}
  int below(int n) { return next() % n; }
  uint8_t next() {
    if (bytes_.empty()) return 0;
    const uint8_t byte = bytes_[position_ % bytes_.size()];
    // Behind the end the bytes come again, in other company.
    return uint8_t(byte + position_++ / bytes_.size() * 29);
  }

 private:
  Bytes bytes_;
  size_t position_ = 0;
};

[[maybe_unused]] void fuzz_jpeg_encoder(Bytes bytes) {
  Choices choices(bytes);
  const jpeg::EncoderOptions options{1 + choices.below(100), jpeg::Sampling(choices.below(3)), choices.below(2) == 1};
  Image image(1 + choices.below(40), 1 + choices.below(40), choices.below(2) ? 3 : 1);
  for (int y = 0; y < image.height(); ++y)
    for (size_t i = 0; i < image.row_bytes(); ++i) image.row(y)[i] = choices.next();
  const Image decoded = jpeg::decode(jpeg::encode(image, options));
  expect(decoded.width() == image.width() && decoded.height() == image.height() &&
         decoded.channels() == image.channels());
}

/// What is decoded is what the encoder has reconstructed.
[[maybe_unused]] void fuzz_h261_encoder(Bytes bytes) {
  Choices choices(bytes);
  const h261::EncoderOptions options{1 + choices.below(31), choices.below(2) == 1, choices.below(4)};
  h261::Encoder encoder(176, 144, options);
  std::vector<uint8_t> stream;
  std::vector<YuvPicture> reconstructions;
  YuvPicture picture(176, 144);
  for (int pictures = 1 + choices.below(3); pictures > 0; --pictures) {
    const int kept = choices.below(4);  // of four macroblock rows
    for (YuvPicture::Component& plane : picture.planes)
      for (size_t i = plane.samples.size() * size_t(kept) / 4; i < plane.samples.size(); ++i)
        plane.samples[i] = choices.next();
    const auto coded = encoder.encode(picture);
    stream.insert(stream.end(), coded.begin(), coded.end());
    reconstructions.push_back(encoder.reconstruction());
  }
  h261::Decoder decoder(stream);
  for (const YuvPicture& expected : reconstructions) {
    expect(decoder.next());
    for (size_t k = 0; k < 3; ++k) expect(decoder.picture().planes[k].samples == expected.planes[k].samples);
  }
  expect(!decoder.next());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  try {
    PQX_CODEC({data, size});
  } catch (const Failure&) {
  }
  return 0;
}
