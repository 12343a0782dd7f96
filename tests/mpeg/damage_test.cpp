#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

#include "core/failure.h"
#include "written.h"

using namespace mpeg_test;
using namespace tool_test;
using pqx_codec::Failure;
using pqx_codec::mpeg::DecoderOptions;

namespace {

Bytes written(unsigned seed, WrittenKind kind = {true, false, false, 64, 64}) {
  std::map<std::string, int> used;
  return write_stream(kind, seed, used);
}

/// Where the n-th unit with a start code begins.
size_t unit(const Bytes& stream, int code, int n = 0) {
  const Bytes start{0, 0, 1, uint8_t(code)};
  auto found = stream.begin();
  for (; n >= 0; --n) found = std::search(found + 1, stream.end(), start.begin(), start.end());
  return size_t(found - stream.begin());
}

Bytes joined(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

/// The stream in packets of a program stream.
Bytes packed(const Bytes& stream, bool encrypted = false) {
  Bytes program{0, 0, 1, 0xBA, 0x44, 0, 4, 0, 4, 1, 0, 3, 0xFF, 0xF8};
  for (size_t at = 0; at < stream.size(); at += 200) {
    const size_t n = std::min<size_t>(200, stream.size() - at);
    program = joined(program, {0, 0, 1, 0xC0, 0, 3, 0, 0, 1});  // of another stream
    program = joined(program, {0, 0, 1, 0xE0, 0, uint8_t(n + 3), uint8_t(encrypted ? 0xB0 : 0x80), 0, 0});
    program.insert(program.end(), stream.begin() + ptrdiff_t(at), stream.begin() + ptrdiff_t(at + n));
  }
  return program;
}

std::string failure(const Bytes& stream, const DecoderOptions& options = {}) {
  try {
    decode(stream, options);
    return "";
  } catch (const Failure& failure) {
    return failure.what();
  }
}

}  // namespace

TEST(Mpeg, DamageNeverDoesMoreThanFail) {
  using Clock = std::chrono::steady_clock;
  std::vector<Bytes> seeds{encode_by_ffmpeg("testsrc2=s=96x80,trim=end_frame=5",
                                            "-c:v mpeg2video -pix_fmt yuv420p -bf 1 -q:v 20 -f mpeg2video"),
                           encode_by_ffmpeg("testsrc2=s=96x80,trim=end_frame=5",
                                            "-c:v mpeg1video -pix_fmt yuv420p -bf 1 -q:v 20 -f mpeg")};
  for (unsigned seed = 0; seed < 12; ++seed)
    seeds.push_back(written(seed, {seed % 4 != 0, seed % 4 < 2, seed % 8 == 7, 64, 48}));
  std::mt19937 random(20240723);
  int done = 0, refused = 0, concealed = 0;
  Clock::duration longest{};
  const int memory = peak_memory();
  for (int i = 0; i < (is_thorough() ? 20000 : 1500); ++i) {
    Bytes bytes = seeds[size_t(i) % seeds.size()];
    damage(bytes, random);
    DecoderOptions options{.max_pixels = 1 << 16};
    if (i % 3 == 0) options.conceal = [&](const std::string&) { ++concealed; };
    const auto start = Clock::now();
    try {
      EXPECT_LT(decode(bytes, options, 1 + random() % 4000).frames, 100);
      ++done;
    } catch (const Failure&) {
      ++refused;
    }
    longest = std::max(longest, Clock::now() - start);
  }
  EXPECT_GT(done, 300);
  EXPECT_GT(refused, 300);
  EXPECT_GT(concealed, 300);
  EXPECT_LT(peak_memory() - memory, MEMORY_FOR_DAMAGE) << "MiB";
  EXPECT_LT(longest, std::chrono::seconds(2));
}

TEST(Mpeg, ConcealsWhatIsDamaged) {
  const Bytes stream = encode_by_ffmpeg("testsrc2=s=176x144,trim=end_frame=12",
                                        "-c:v mpeg2video -pix_fmt yuv420p -bf 2 -g 6 -q:v 5 -f mpeg2video");
  const Decoded whole = decode(stream);
  Bytes damaged = stream;
  // Of the fourth slice of the second picture, one byte after the other is wrong.
  const size_t slice = unit(stream, 4, 1);
  for (size_t i = 8; i < 40; ++i) damaged[slice + i] ^= 0x55;
  EXPECT_NE(failure(damaged).find("damaged MPEG stream"), std::string::npos);
  std::vector<std::string> reports;
  const Decoded concealed = decode(damaged, {.conceal = [&](const std::string& what) { reports.push_back(what); }});
  ASSERT_EQ(reports.size(), 2u);
  EXPECT_EQ(reports[0].find("picture 1: damaged MPEG stream: "), 0u) << reports[0];
  EXPECT_EQ(reports[1].find("picture 1: damaged MPEG stream: "), std::string::npos) << reports[1];
  EXPECT_NE(reports[1].find("macroblocks are missing"), std::string::npos) << reports[1];
  ASSERT_EQ(concealed.samples.size(), whole.samples.size());
  const size_t picture = whole.samples.size() / 12;
  EXPECT_TRUE(
      std::equal(whole.samples.begin(), whole.samples.begin() + ptrdiff_t(picture), concealed.samples.begin()));
  // The second group of pictures does not refer to the first.
  EXPECT_TRUE(std::equal(whole.samples.end() - ptrdiff_t(4 * picture), whole.samples.end(),
                         concealed.samples.end() - ptrdiff_t(4 * picture)));
  double error = 0;
  for (size_t i = 0; i < whole.samples.size(); ++i) error += std::abs(whole.samples[i] - concealed.samples[i]);
  EXPECT_LT(error / double(whole.samples.size()), 2);
}

TEST(Mpeg, RefusesAndLeavesOutByName) {
  const Bytes stream = written(5);
  const size_t extension = unit(stream, 0xB5);
  Bytes other_chroma = stream, scalable = stream, transport(1000, 0);
  other_chroma[extension + 5] |= 6;
  scalable[unit(stream, 0xB5, 1) + 4] = 5 << 4;
  for (size_t i = 0; i < transport.size(); i += 188) transport[i] = 0x47;
  const struct {
    Bytes stream;
    std::string reason;
  } refused[] = {
      {{}, "not an MPEG video stream"},
      {text("YUV4MPEG2 W64 H64"), "not an MPEG video stream"},
      {Bytes(100000, 7), "not an MPEG video or program stream"},
      {transport, "not supported: MPEG transport stream"},
      {packed(stream, true), "not supported: encrypted MPEG program stream"},
      {other_chroma, "not supported: MPEG-2 with chroma 4:4:4"},
      {scalable, "not supported: scalable MPEG-2"},
      {joined(stream, written(5, {true, false, false, 96, 64})),
       "not supported: MPEG stream that changes the size or kind of its pictures"},
      {Bytes(stream.begin(), stream.begin() + ptrdiff_t(stream.size() * 2 / 3)), "damaged MPEG stream: "},
  };
  for (const auto& [bytes, reason] : refused)
    EXPECT_EQ(failure(bytes).find(reason), 0u) << reason << ", " << failure(bytes);
  EXPECT_EQ(failure(stream, {.max_pixels = 64 * 64 - 1}), "picture too large: 64 x 64 pixels");
  EXPECT_EQ(failure(stream, {.max_pixels = 64 * 64}), "");

  const Decoded whole = decode(stream);
  const auto notes = [](const Bytes& bytes, Decoded& decoded) {
    std::string all;
    decoded = decode(bytes, {.note = [&](const std::string& what) { all += what + ';'; }});
    return all;
  };
  Decoded decoded;
  EXPECT_EQ(notes(packed(stream), decoded), "");
  EXPECT_TRUE(decoded.samples == whole.samples);
  // Pieces may end anywhere.
  EXPECT_TRUE(decode(packed(stream), {}, 1).samples == whole.samples);
  EXPECT_TRUE(decode(stream, {}, 1).samples == whole.samples);

  // Without the first picture, the next one has nothing to refer to.
  const Bytes twice = encode_by_ffmpeg("testsrc2=s=96x80,trim=end_frame=12",
                                       "-c:v mpeg1video -pix_fmt yuv420p -bf 2 -g 6 -q:v 9 -f mpeg1video");
  Bytes cut = twice;
  cut.erase(cut.begin() + ptrdiff_t(unit(cut, 0xB8)), cut.begin() + ptrdiff_t(unit(cut, 0, 1)));
  EXPECT_EQ(notes(cut, decoded), "pictures that refer to missing ones are left out;");
  const Decoded all = decode(twice);
  ASSERT_GE(decoded.frames, 5);
  EXPECT_TRUE(std::equal(decoded.samples.rbegin(), decoded.samples.rend(), all.samples.rbegin()));
  Bytes quick(twice.begin(), twice.begin() + ptrdiff_t(unit(twice, 0, 1)));
  uint8_t& type = quick[unit(quick, 0) + 5];
  type = uint8_t((type & 0xC7) | 4 << 3);
  EXPECT_EQ(notes(quick, decoded), "D pictures are left out;");
  EXPECT_EQ(decoded.frames, 0);
}

TEST(Mpeg, HoldsAFewFramesHoweverLongTheStreamIs) {
  const Bytes stream = encode_by_ffmpeg("testsrc2=s=720x576,trim=end_frame=10",
                                        "-c:v mpeg2video -pix_fmt yuv420p -bf 2 -q:v 6 -f mpeg2video");
  const pid_t child = fork();
  if (child == 0) {
    const int before = peak_memory();
    pqx_codec::mpeg::Decoder decoder;
    int frames = 0;
    for (int k = 0; k < 40; ++k)
      for (size_t at = 0; at < stream.size(); at += 65536) {
        decoder.push(std::span(stream).subspan(at, std::min<size_t>(65536, stream.size() - at)));
        while (decoder.next()) ++frames;
      }
    const int most = (6 * 720 * 576 * 3 / 2 >> 20) + MEMORY_FOR_DAMAGE;
    _exit(frames < 390 ? 1 : peak_memory() - before > most ? 2 : 0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(Mpeg, ToolDecodesFilesAndPipes) {
  const Workplace place;
  const Bytes stream = encode_by_ffmpeg("testsrc2=s=98x80:r=24,trim=end_frame=7",
                                        "-c:v mpeg2video -pix_fmt yuv420p -bf 2 -q:v 5 -aspect 4:3 -f mpeg2video");
  Bytes damaged = stream;
  for (size_t i = 0; i < 30; ++i) damaged[stream.size() * 2 / 3 + i] ^= 0x5A;
  write_files(
      place,
      {{"good.m2v", stream}, {"damaged.m2v", damaged}, {"none.m2v", Bytes(stream.begin(), stream.begin() + 30)}});
  const Outcome decoded = run(place, PQXVIDEO " mpeg decode {good.m2v} {out.y4m}");
  EXPECT_EQ(decoded.out.find("7 pictures, " + std::to_string(stream.size()) + " bytes, "), 0u) << decoded.out;
  const Bytes y4m = read_bytes(place / "out.y4m");
  const std::string header = "YUV4MPEG2 W98 H80 F24:1 Ip A160:147 C420mpeg2 XCOLORRANGE=LIMITED\n";
  EXPECT_EQ(std::string(y4m.begin(), y4m.end()).find(header), 0u) << std::string(y4m.begin(), y4m.begin() + 80);
  must_run(place, "ffmpeg -v error -i {out.y4m} -f rawvideo {raw}");
  EXPECT_TRUE(read_bytes(place / "raw") == decode(stream).samples);
  EXPECT_TRUE(run(place, "cat {good.m2v} | " PQXVIDEO " mpeg decode - - | cat").out ==
              std::string(y4m.begin(), y4m.end()));
  const Outcome concealed = run(place, PQXVIDEO " mpeg decode --conceal {damaged.m2v} {out.y4m}");
  EXPECT_EQ(concealed.status, 0);
  EXPECT_EQ(concealed.errors.find("pqxvideo: " + place / "damaged.m2v" + ": picture "), 0u) << concealed.errors;
  EXPECT_EQ(read_bytes(place / "out.y4m").size(), y4m.size());
  const FailingCommand cases[] = {
      {"mpeg decode {damaged.m2v} {new.y4m}", 1, "damaged.m2v", "damaged MPEG stream"},
      {"mpeg decode {missing.m2v} {new.y4m}", 1, "missing.m2v", "No such file"},
      {"mpeg decode {good.m2v} {nowhere/new.y4m}", 1, "nowhere/new.y4m", "No such file"},
      {"mpeg decode {none.m2v} {new.y4m}", 1, "none.m2v", "no picture in it"},
      {"mpeg decode {good.m2v} {new.y4m} --max-pixels 7839", 1, "good.m2v", "picture too large: 98 x 80 pixels"},
      {"mpeg decode {good.m2v} {new.y4m} --max-pixels 0", 2, "", "--max-pixels"},
  };
  expect_failures(place, cases);
}
