#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>

#include "h263/decoder.h"
#include "pictures.h"

using namespace pqx_codec;
using namespace tool_test;

namespace {

bool thorough() { return std::getenv("PQX_THOROUGH") != nullptr; }

/// The samples of all pictures of a stream, which comes in parts of random sizes.
Bytes decode(const Bytes& stream, h263::Decoder::Report report = {}) {
  h263::Decoder decoder(std::move(report));
  Bytes samples;
  const auto drain = [&] {
    while (decoder.next())
      for (const auto& plane : decoder.picture().planes)
        samples.insert(samples.end(), plane.samples.begin(), plane.samples.end());
  };
  std::mt19937 random(unsigned(stream.size()));
  for (size_t at = 0; at < stream.size();) {
    const size_t size = std::min<size_t>(random() % 3 ? random() % 5000 : random() % 4, stream.size() - at);
    decoder.push(std::span(stream).subspan(at, size));
    drain();
    at += size;
  }
  decoder.finish();
  drain();
  return samples;
}

/// What ffmpeg decodes of a stream with one of its inverse transforms.
Bytes decode_outside(const Bytes& stream, const std::string& transform) {
  const Workplace place;
  write_bytes(place / "in.h263", stream);
  must_run(place, "ffmpeg -v error -threads 1 -idct " + transform +
                      " -f h263 -i {in.h263} -vsync passthrough -f rawvideo {out.yuv}");
  return read_bytes(place / "out.yuv");
}

/// What all of ffmpeg's inverse transforms decode alike of a stream; nothing if they do not.
Bytes exact(const Bytes& stream) {
  const Bytes samples = decode_outside(stream, "simple");
  for (const char* const transform : {"int", "faani", "xvid"})
    if (decode_outside(stream, transform) != samples) return {};
  return samples;
}

struct Size {
  int width, height;
};

/// A stream of ffmpeg's, of a source that moves in both directions by all fractions of a sample. With `psnr`, what the
/// encoder says of each picture that it has reconstructed.
Bytes encode(Size size, int seed, const std::string& options, int frames = 10, std::vector<double>* psnr = nullptr) {
  const Workplace place;
  const std::string w = std::to_string(size.width), h = std::to_string(size.height);
  must_run(place, "ffmpeg -v error -f lavfi -i 'color=gray:s=" + std::to_string(size.width + 352) + "x" +
                      std::to_string(size.height + 288) + ":r=25,noise=alls=60:all_seed=" + std::to_string(seed) +
                      ",gblur=sigma=6,eq=contrast=4,crop=" + w + ":" + h +
                      ":x=80+60*sin(n/5):y=80+50*cos(n/4)' -frames:v " + std::to_string(frames) +
                      " -pix_fmt yuv420p {source.yuv}");
  must_run(place, "ffmpeg -v error -f rawvideo -pix_fmt yuv420p -r 25 -s " + w + "x" + h + " -i {source.yuv} " +
                      options + (psnr ? " -idct faani -flags +psnr -vstats_file {psnr}" : "") +
                      " -f h263 {out.h263}");
  return read_bytes(place / "out.h263");
}

}  // namespace

TEST(H263, DecodesExactStreamsToTheSamePictures) {
  const std::string encoders[] = {"h263p",
                                  "h263p -umv 1",
                                  "h263p -flags +mv4",
                                  "h263p -flags +loop",
                                  "h263p -umv 1 -flags +mv4+loop",
                                  "h263p -ps 200",
                                  "h263p -umv 1 -flags +mv4+loop -ps 500",
                                  "h263",
                                  "h263 -flags +loop -ps 300",
                                  "h263 -flags +mv4 -ps 100"};
  const Size sizes[] = {{352, 288}, {176, 144}, {100, 52}, {348, 284}, {64, 404}, {704, 576}, {128, 96}, {36, 820}};
  int seed = 0, found = 0;
  for (const Size size : sizes)
    for (const std::string& encoder : encoders) {
      if (encoder.find("h263p") == std::string::npos && size.width % 88 != 0 && size.width != 128) continue;
      if (++seed % 7 != 1 && !thorough()) continue;
      const Bytes stream = encode(size, seed, "-c:v " + encoder + " -qscale:v 31");
      const Bytes expected = exact(stream);
      if (expected.empty()) continue;
      ++found;
      EXPECT_TRUE(decode(stream) == expected) << encoder << ", " << size.width << " x " << size.height;
    }
  EXPECT_GE(found, thorough() ? 50 : 9);
}

TEST(H263, FollowsOrdinaryStreamsAlmostSampleForSample) {
  const std::string encoders[] = {"h263 -qscale:v 3",
                                  "h263p -qscale:v 5 -flags +aic",
                                  "h263p -qscale:v 8 -flags +aic+mv4+loop -umv 1 -ps 600",
                                  "h263 -b:v 300k -flags +loop -ps 400",
                                  "h263p -b:v 200k -mbd rd -flags +mv4 -umv 1",
                                  "h263p -qmin 2 -qmax 31 -b:v 400k -flags +aic -lumi_mask 0.5"};
  int seed = 100;
  for (const std::string& encoder : encoders) {
    const Bytes stream = encode({352, 288}, ++seed, "-c:v " + encoder, thorough() ? 120 : 25);
    const Bytes ours = decode(stream), theirs = decode_outside(stream, "faani");
    ASSERT_EQ(ours.size(), theirs.size()) << encoder;
    size_t different = 0;
    int largest = 0;
    for (size_t i = 0; i < ours.size(); ++i) {
      different += ours[i] != theirs[i];
      largest = std::max(largest, std::abs(ours[i] - theirs[i]));
    }
    EXPECT_LE(different, ours.size() / 1000) << encoder;
    EXPECT_LE(largest, 3) << encoder;
  }
}
