#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "h263/decoder.h"
#include "h263_writer.h"
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
  must_run(place, "ffmpeg -v error -threads 1 -flags bitexact -idct " + transform +
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

/// A stream of ffmpeg's, of a source that moves in both directions by all fractions of a sample. With `psnr`, how close
/// the encoder says that each picture is which it has reconstructed, and the source.
Bytes encode(Size size, int seed, const std::string& options, int frames = 10, std::vector<double>* psnr = nullptr,
             Bytes* source = nullptr) {
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
  if (psnr) {
    *source = read_bytes(place / "source.yuv");
    const Bytes log = read_bytes(place / "psnr");
    const std::string text(log.begin(), log.end()), key = "PSNR=";
    for (size_t at = 0; (at = text.find(key, at)) != std::string::npos;)
      psnr->push_back(std::stod(text.substr(at += key.size())));
  }
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
  const Size sizes[] = {{176, 144}, {100, 52}, {348, 284}, {64, 404}, {128, 96}, {352, 288}, {36, 820}, {704, 576}};
  int seed = 0, found = 0;
  for (const Size size : sizes)
    for (const std::string& encoder : encoders) {
      if (encoder.find("h263p") == std::string::npos && size.width % 88 != 0 && size.width != 128) continue;
      if (++seed % 6 != 1 && !thorough()) continue;
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

TEST(H263, DecodesWhatNoEncoderWrites) {
  using O = H263Options;
  const O kinds[] = {{},
                     {.width = 128, .height = 96, .unrestricted = true},
                     {.unrestricted = true, .overlapped = true},
                     {.plus = true, .unrestricted = true, .slices = true},
                     {.width = 192, .height = 160, .plus = true, .advanced_intra = true, .slices = true},
                     {.plus = true, .advanced_intra = true, .deblocking = true, .modified_quant = true},
                     {.width = 64, .height = 416, .plus = true, .deblocking = true, .slices = true},
                     {.width = 352,
                      .height = 288,
                      .plus = true,
                      .unrestricted = true,
                      .overlapped = true,
                      .advanced_intra = true,
                      .deblocking = true,
                      .slices = true,
                      .modified_quant = true}};
  for (const O& kind : kinds)
    for (unsigned seed = 1; seed <= (thorough() ? 25 : 1); ++seed) {
      const Bytes stream = H263Writer(kind, seed).write(), expected = exact(stream);
      ASSERT_FALSE(expected.empty());
      EXPECT_TRUE(decode(stream) == expected) << "kind " << &kind - kinds << ", seed " << seed;
    }
}

TEST(H263, SeesWithAnnexFWhatTheEncoderReconstructs) {
  // ffmpeg's decoder takes wrong vectors from macroblocks to the right, so its encoder is the judge.
  for (const std::string encoder : {"h263 -obmc 1 -qscale:v 8", "h263p -obmc 1 -umv 1 -qscale:v 31 -ps 300"}) {
    std::vector<double> psnr;
    Bytes source;
    const Bytes stream = encode({352, 288}, 7, "-c:v " + encoder, 10, &psnr, &source), ours = decode(stream);
    ASSERT_EQ(psnr.size(), 10u);
    ASSERT_EQ(ours.size(), source.size());
    const size_t luma = 352 * 288, picture = luma * 3 / 2;
    for (size_t k = 0; k < psnr.size(); ++k) {
      double squares = 0;
      for (size_t i = k * picture; i < k * picture + luma; ++i) squares += std::pow(ours[i] - source[i], 2);
      EXPECT_NEAR(10 * std::log10(255 * 255 * double(luma) / squares), psnr[k], 0.0101)
          << encoder << ", picture " << k;
    }
  }
}

TEST(H263, RefusesOtherAnnexesByName) {
  const Bytes plain = H263Writer({.pictures = 1}, 1).write(),
              plus = H263Writer({.plus = true, .pictures = 1}, 1).write();
  // Bits of the streams, counted from the picture's start code.
  const struct {
    const Bytes& stream;
    size_t bit;
    const char* name;
  } cases[] = {{plain, 40, "Annex E, "}, {plain, 42, "Annex G, "}, {plain, 48, "Annex C, "}, {plus, 46, "Annex E, "},
               {plus, 51, "Annex N, "},  {plus, 52, "Annex R, "},  {plus, 53, "Annex S, "},  {plus, 56, "Annex U, "},
               {plus, 57, "Annex V, "},  {plus, 59, "Annex O, "},  {plus, 60, "Annex M, "},  {plus, 62, "Annex P, "},
               {plus, 63, "Annex Q, "}};
  for (const auto& [stream, bit, name] : cases) {
    Bytes other = stream;
    other[bit / 8] ^= uint8_t(128 >> bit % 8);
    try {
      decode(other);
      ADD_FAILURE() << name;
    } catch (const Failure& failure) {
      EXPECT_EQ(std::string(failure.what()).find(std::string("not supported: H.263 with ") + name), 0u)
          << failure.what();
    }
  }
}

TEST(H263, ConcealsDamageUpToTheNextGroupOrSlice) {
  for (const std::string options : {"-c:v h263 -qscale:v 3 -ps 200", "-c:v h263p -qscale:v 3 -ps 200 -obmc 1"}) {
    Bytes stream = encode({352, 288}, 3, options);
    const Bytes whole = decode(stream);
    for (size_t i = 0; i < 20; ++i) stream[stream.size() * 3 / 4 + i] ^= uint8_t(0x55 + i);
    EXPECT_THROW(decode(stream), Failure);
    std::vector<std::string> reports;
    const Bytes concealed = decode(stream, [&](const std::string& damage) { reports.push_back(damage); });
    ASSERT_FALSE(reports.empty());
    EXPECT_EQ(reports[0].find("picture "), 0u) << reports[0];
    ASSERT_EQ(concealed.size(), whole.size());
    size_t equal = 0, first = std::mismatch(whole.begin(), whole.end(), concealed.begin()).first - whole.begin();
    for (size_t i = first; i < whole.size(); ++i) equal += std::abs(whole[i] - concealed[i]) < 8;
    EXPECT_GT(first, whole.size() / 4);
    EXPECT_GT(equal, (whole.size() - first) / 2);
  }
}

TEST(H263, ToolDecodesStreams) {
  const Workplace place;
  const Bytes stream = H263Writer({.width = 96, .height = 80, .plus = true}, 5).write();
  Bytes damaged = stream;
  damaged.resize(stream.size() * 3 / 4);
  write_files(place, {{"good.h263", stream}, {"damaged.h263", damaged}, {"other.h263", text("RIFF and more")}});
  expect_successes(place, {"h263 decode {good.h263} {out.y4m}"});
  const Bytes clip = read_bytes(place / "out.y4m"), expected = decode(stream);
  const std::string head = "YUV4MPEG2 W96 H80 F25:1 ";
  EXPECT_EQ(std::string(clip.begin(), clip.begin() + ptrdiff_t(head.size())), head);
  EXPECT_TRUE(std::equal(expected.end() - 96 * 80, expected.end(), clip.end() - 96 * 80));
  EXPECT_EQ(run(place, PQXVIDEO " h263 decode --conceal {damaged.h263} {out.y4m}").status, 0);
  const FailingCommand cases[] = {
      {"h263 decode {damaged.h263} {out.y4m}", 1, "damaged.h263", "damaged H.263 stream"},
      {"h263 decode {other.h263} {out.y4m}", 1, "other.h263", "not an H.263 stream"},
  };
  std::filesystem::remove(place / "out.y4m");
  expect_failures(place, cases);
}
