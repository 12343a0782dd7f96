#include <gtest/gtest.h>

#include <functional>

#include "streams.h"

using namespace mpeg_test;

namespace {

/// Grey noise, blurred, of which a window that moves is seen: at all half-sample phases. Of an interlaced clip, each
/// field is a picture of its own.
std::string moving(const std::string& size, int seed, bool interlaced) {
  const std::string rate = interlaced ? "50" : "25";
  return "color=gray:s=704x576:r=" + rate + ",noise=alls=60:all_seed=" + std::to_string(seed) +
         ",gblur=sigma=6,eq=contrast=4,crop=" + size + ":x=80+60*sin(n/5):y=80+50*cos(n/4)" +
         (interlaced ? ",tinterlace=4" : "") + ",trim=end_frame=25";
}

/// Steps of 255, but for the DC.
std::string steps(int dc) {
  std::string all = std::to_string(dc);
  for (int k = 1; k < 64; ++k) all += ",255";
  return all;
}

/// So coarse that every conforming inverse transform gives the same.
struct Recipe {
  const char* encoder;
  std::string options;
  int inter_dc;  // its step
  bool interlaced = false;
};
const std::vector<Recipe> recipes{
    {"mpeg1video", "-pix_fmt yuv420p -bf 2 -g 12", 255},
    {"mpeg1video", "-pix_fmt yuv420p -bf 0 -g 25", 33},
    {"mpeg2video", "-pix_fmt yuv420p -bf 2 -g 12 -flags +ildct+ilme -alternate_scan 1", 48, true},
    {"mpeg2video", "-pix_fmt yuv420p -bf 1 -g 9 -intra_vlc 1 -slices 4", 255},
    {"mpeg2video", "-pix_fmt yuv422p -bf 2 -g 12 -flags +ildct+ilme", 255, true},
    {"mpeg2video", "-pix_fmt yuv420p -bf 2 -g 12 -non_linear_quant 1 -qmin 28 -qmax 28 -q:v 28", 255},
    {"mpeg2video", "-pix_fmt yuv420p -bf 2 -g 12 -f vob", 160},
    {"mpeg2enc", "-I 0 -R 0", 255},
    {"mpeg2enc", "-I 1 -R 0 --dualprime-mpeg2", 255, true},
    {"mpeg2enc", "-I 1 -R 2", 255, true},
    {"mpeg2enc", "-f 8 -p -I 0 -R 2 -F 4", 255},
};

Bytes encode(const Recipe& recipe, const std::string& source) {
  const std::string encoder = recipe.encoder;
  if (encoder == "mpeg2enc")
    return encode_by_mpeg2enc(source, "-f 3 -V 500 -D 8 -q 31 -K file={steps.txt} -b 9000 " + recipe.options);
  return encode_by_ffmpeg(source, "-c:v " + encoder + " -qmin 31 -qmax 31 -q:v 31 -intra_matrix " + steps(8) +
                                      " -inter_matrix " + steps(recipe.inter_dc) + " -f " + encoder + " " +
                                      recipe.options);
}

/// How samples of two decoders differ.
struct Agreement {
  double equal;
  int largest;
};
Agreement compare(const Bytes& a, const Bytes& b) {
  if (a.size() != b.size()) return {0, 255};
  size_t equal = 0;
  int largest = 0;
  for (size_t i = 0; i < a.size(); ++i) {
    equal += a[i] == b[i];
    largest = std::max(largest, std::abs(a[i] - b[i]));
  }
  return {double(equal) / double(a.size()), largest};
}

}  // namespace

TEST(Mpeg, DecodesExactStreamsToTheLastSample) {
  const std::string sizes[] = {"334:222", "176:144", "322:242", "256:130"};
  // Whose fields have whole macroblocks: for others mpeg2enc writes streams of frames with fields in them.
  const std::string even_sizes[] = {"334:222", "176:160", "322:256", "256:128"};
  int exact = 0, streams = 0;
  take_calls();
  for (int round = 0; round < (is_thorough() ? 12 : 1); ++round)
    for (const Recipe& recipe : recipes) {
      const bool even = recipe.encoder == std::string("mpeg2enc");
      const std::string size = (even ? even_sizes : sizes)[size_t(round + streams) % std::size(sizes)];
      const std::string what = recipe.encoder + (" " + recipe.options) + ", " + size + ", " + std::to_string(round);
      const Bytes stream = encode(recipe, moving(size, 7 + round, recipe.interlaced));
      ++streams;
      const Bytes judged = ffmpeg(stream, "faani");
      ASSERT_FALSE(judged.empty()) << what;
      if (judged != ffmpeg(stream, "simple") || judged != ffmpeg(stream, "int") || judged != ffmpeg(stream, "xvid"))
        continue;
      ++exact;
      const Decoded decoded = decode(stream);
      EXPECT_EQ(decoded.frames, 25) << what;
      EXPECT_TRUE(decoded.samples == judged) << what;
      if (decoded.sequence.chroma_422 || recipe.options.ends_with("vob")) continue;
      EXPECT_TRUE(mpeg2dec(stream, decoded.sequence.width, decoded.sequence.height) == judged) << what;
    }
  EXPECT_GE(exact, is_thorough() ? 100 : 9) << "of " << streams;

  const auto calls = take_calls();
  for (const char* const operation :
       {"CopyRef", "InterpX", "InterpY", "InterpXY", "CopyRefAve", "InterpAveX", "InterpAveY", "InterpAveXY"})
    for (const char* const size : {"16x16", "16x8", "8x16", "8x8", "8x4"}) {
      const std::string call = std::string(operation) + "_8U " + size;
      EXPECT_TRUE(calls.contains(call) && calls.at(call) >= 20) << call;
    }
  if (is_thorough())
    for (const auto& [call, times] : calls) std::printf("%s: %d\n", call.c_str(), times);
}

TEST(Mpeg, DecodesOrdinaryStreamsAlmostToTheLastSample) {
  const std::string source =
      "testsrc2=s=352x288:r=25,noise=alls=20:all_seed=3:allf=t,rotate=0.02*n,trim=end_frame=30";
  const std::function<Bytes()> encoders[] = {
      [&] { return encode_by_ffmpeg(source, "-c:v mpeg1video -pix_fmt yuv420p -q:v 4 -bf 2 -f mpeg1video"); },
      [&] {
        return encode_by_ffmpeg(source,
                                "-c:v mpeg2video -pix_fmt yuv420p -q:v 2 -bf 2 -flags +ildct+ilme -alternate_scan 1 "
                                "-intra_vlc 1 -dc 10 -f mpeg2video");
      },
      [&] { return encode_by_ffmpeg(source, "-c:v mpeg2video -pix_fmt yuv422p -b:v 8M -bf 2 -dc 9 -f mpeg2video"); },
      [&] { return encode_by_mpeg2enc(source, "-f 3 -I 1 -R 0 --dualprime-mpeg2 -q 5 -b 9000"); },
      [&] { return encode_by_mpeg2enc(source, "-f 3 -I 1 -R 2 -q 9 -b 9000"); },
  };
  for (const auto& encoder : encoders) {
    const Bytes stream = encoder();
    ASSERT_FALSE(stream.empty());
    const Decoded decoded = decode(stream);
    const auto [equal, largest] = compare(decoded.samples, ffmpeg(stream, "faani"));
    std::printf("%.4f %% equal, at most %d apart\n", 100 * equal, largest);
    EXPECT_EQ(decoded.frames, 30);
    EXPECT_GE(equal, 0.999);
    EXPECT_LE(largest, 3);
    if (decoded.sequence.chroma_422) continue;
    // Its integer transform drifts from picture to picture.
    const auto second = compare(decoded.samples, mpeg2dec(stream, 352, 288));
    EXPECT_GE(second.equal, 0.9);
    EXPECT_LE(second.largest, 6);
  }
}
