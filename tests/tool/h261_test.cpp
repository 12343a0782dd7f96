#include <gtest/gtest.h>

#include <algorithm>

#include "bits/bit_reader.h"
#include "bits/bit_writer.h"
#include "h261/decoder.h"
#include "h261/encoder.h"
#include "h261/format.h"
#include "pan.h"
#include "picture/y4m.h"
#include "picture_file.h"
#include "pictures.h"
#include "psnr.h"

using namespace pqx_codec;
using namespace pqxvideo;
using namespace tool_test;

namespace {

/// Conceals damage if a report of it is asked for.
Pictures decode(const Bytes& stream, const auto&... report) {
  h261::Decoder decoder(stream, report...);
  Pictures clip;
  while (decoder.next()) clip.push_back(decoder.picture());
  return clip;
}

Pictures read_y4m(const std::string& path) {
  const Bytes bytes = read_bytes(path);
  Y4mReader reader(bytes);
  Pictures clip;
  for (YuvPicture picture; reader.next(picture);) clip.push_back(picture);
  return clip;
}

Difference compare(const Pictures& a, const Pictures& b) {
  if (a.size() != b.size()) throw std::runtime_error("one clip is longer than the other");
  Difference difference{.channels = 3};
  for (size_t k = 0; k < a.size(); ++k)
    for (size_t p = 0; p < 3; ++p) {
      const auto &x = a[k].planes[p].samples, &y = b[k].planes[p].samples;
      difference.samples[p] += int64_t(x.size());
      for (size_t i = 0; i < x.size(); ++i) difference.add(p, x[i], y[i]);
    }
  return difference;
}

/// How closely the decoders of one stream must agree: inverse transforms may differ by one, which adds up from picture
/// to picture.
void expect_agreement(const Pictures& ours, const Pictures& judge, const std::string& what, int largest = 2) {
  ASSERT_EQ(ours.size(), judge.size()) << what;
  for (size_t k = 0; k < std::min<size_t>(5, ours.size()); ++k)
    EXPECT_LE(compare(Pictures{ours[k]}, Pictures{judge[k]}).largest_of_all(), std::min(int(k) + 1, largest))
        << what << ", picture " << k;
  EXPECT_GE(compare(ours, judge).psnr(), 59) << what;
}

/// What ffmpeg decodes of a stream.
Pictures judge(const Bytes& stream) {
  const Workplace place;
  write_bytes(place / "in.h261", stream);
  must_run(place, "ffmpeg -v error -f h261 -i {in.h261} -fps_mode passthrough -pix_fmt yuv420p {out.y4m}");
  return read_y4m(place / "out.y4m");
}

/// Decodes a stream, to what its encoder has reconstructed and to what the judge sees.
Pictures expect_reconstruction(const Bytes& stream, const Pictures& reconstruction, const std::string& what,
                               int largest = 2) {
  const Pictures decoded = decode(stream);
  EXPECT_EQ(compare(decoded, reconstruction).largest_of_all(), 0) << what;
  expect_agreement(decoded, judge(stream), what, largest);
  return decoded;
}

void expect_prefix_free(const auto& codes, std::initializer_list<Code> more, const char* what) {
  std::vector<Code> all(more);
  for (const auto& c : codes) all.push_back(c.code);
  // No code may begin with sixteen bits that could be taken for a start code, nor with another code.
  for (const Code a : all)
    for (const Code b : all)
      if (&a != &b && a.length <= b.length && (a.length != b.length || a.bits != b.bits)) {
        EXPECT_NE(b.bits >> (b.length - a.length), a.bits) << what;
      }
}

}  // namespace

TEST(H261, CodesCanBeToldApart) {
  expect_prefix_free(h261::address_codes, {}, "address");
  expect_prefix_free(h261::type_codes, {}, "type");
  expect_prefix_free(h261::vector_codes, {}, "vector");
  expect_prefix_free(h261::pattern_codes, {}, "pattern");
  expect_prefix_free(h261::coefficient_codes, {h261::end_of_block, h261::escape}, "coefficient");
}

TEST(H261, DecoderAndOutsideJudgeSeeWhatTheEncoderReconstructs) {
  for (const bool cif : {false, true})
    for (const int quant : {1, 4, 8, 31})
      for (const bool loop_filter : {true, false}) {
        const std::string what = std::string(cif ? "CIF" : "QCIF") + ", quantizer " + std::to_string(quant) +
                                 (loop_filter ? ", loop filter" : "");
        const Pictures clip = make_pan(cif, cif ? 8 : 20);
        Pictures reconstruction;
        const Bytes stream = encode(clip, {quant, loop_filter, 15}, &reconstruction);
        // One sample in the fourth picture is three off where the pictures, too large, are coded again more coarsely.
        const Pictures decoded = expect_reconstruction(stream, reconstruction, what, quant == 1 && !cif ? 3 : 2);
        EXPECT_GE(compare(decoded, clip).psnr(), quant == 31 ? 24 : quant == 8 ? 31 : 34) << what;
      }
}

TEST(H261, ReadsWhatAnOutsideEncoderWrites) {
  const Workplace place;
  write_bytes(place / "pan.y4m", y4m_of(make_pan(true, 15)));
  const std::string sources[] = {"-i {pan.y4m}", "-i {pan.y4m} -s 176x144",
                                 "-f lavfi -i testsrc=s=352x288 -frames:v 15",
                                 "-f lavfi -i mandelbrot=s=176x144 -frames:v 15"};
  for (const std::string& source : sources)
    for (const char* const options : {"-q:v 2", "-q:v 8 -flags +loop", "-q:v 31 -flags +loop -g 5"}) {
      must_run(place, "ffmpeg -v error -y " + source + " -pix_fmt yuv420p " + options + " {theirs.h261}");
      const Bytes theirs = read_bytes(place / "theirs.h261");
      expect_agreement(decode(theirs), judge(theirs), source + " " + options);
    }
}

TEST(H261, NoPictureTakesMoreBitsThanTheStandardAllows) {
  for (const bool cif : {false, true})
    for (const unsigned amplitude : {20u, 256u}) {  // beyond what quantizer 1 can do, beyond what any can
      const std::string what = (cif ? "CIF, noise of " : "QCIF, noise of ") + std::to_string(amplitude);
      // Its upper half stands still, its last picture fits.
      YuvPicture picture = make_pan(cif, 1)[0];
      Pictures clip;
      std::mt19937 random(amplitude);
      for (int k = 0; k < 3; ++k) {
        for (YuvPicture::Component& plane : picture.planes)
          for (size_t i = k ? plane.samples.size() / 2 : 0; i < plane.samples.size(); ++i)
            plane.samples[i] = uint8_t(plane.samples[i] + random() % amplitude);
        clip.push_back(picture);
      }
      for (YuvPicture::Component& plane : picture.planes) std::ranges::fill(plane.samples, uint8_t{90});
      clip.push_back(picture);

      Pictures reconstruction;
      const Bytes stream = encode(clip, {.quant = 1, .search = 2}, &reconstruction);
      std::vector<size_t> starts;  // at whole bytes, as this encoder has them
      for (size_t i = 0; i + 2 < stream.size(); ++i)
        if (stream[i] == 0 && stream[i + 1] == 1 && stream[i + 2] < 16) starts.push_back(i);
      ASSERT_EQ(starts.size(), clip.size()) << what;
      starts.push_back(stream.size());
      for (size_t k = 0; k < clip.size(); ++k) {
        EXPECT_LE((starts[k + 1] - starts[k]) * 8, (cif ? 256u : 64u) * 1024) << what << ", picture " << k;
        const int quant = (stream[starts[k] + 6] & 15) << 1 | stream[starts[k] + 7] >> 7;
        EXPECT_EQ(quant == 1, k == 3) << what << ", picture " << k << ": quantizer " << quant;
        EXPECT_EQ(quant == 31, amplitude == 256 && k == 0) << what << ", picture " << k << ": quantizer " << quant;
      }
      expect_reconstruction(stream, reconstruction, what);
    }
}

TEST(H261, EncoderUsesWhatItsOptionsAllow) {
  const Pictures clip = make_pan(false, 12);
  const size_t full = encode(clip, {}).size();
  EXPECT_LT(full, encode(clip, {.loop_filter = false}).size());
  size_t before = SIZE_MAX;
  for (const int search : {0, 4, 8}) {
    const size_t size = encode(clip, {.search = search}).size();
    EXPECT_LT(size, before) << "search range " << search;
    before = size;
  }
}

TEST(H261, NoMacroblockGoesWithoutIntraFor132Pictures) {
  // Without motion, what is wrong in the reference stays where it is until an intra macroblock takes its place.
  const Pictures clip(133, make_pan(false, 1)[0]);
  Pictures reconstruction;
  const Bytes stream = encode(clip, {8, true, 0}, &reconstruction);
  h261::Encoder first(176, 144, {8, true, 0});
  const auto second = stream.begin() + ptrdiff_t(first.encode(clip[0]).size());
  const Pictures decoded = decode(Bytes(second, stream.end()));
  ASSERT_EQ(decoded.size(), 132u);
  const auto wrong = [&](size_t k) { return compare(Pictures{decoded[k]}, Pictures{reconstruction[k + 1]}); };
  EXPECT_GT(wrong(60).largest_of_all(), 50);
  EXPECT_LT(wrong(60).psnr() + 1, wrong(90).psnr()) << "not spread";
  EXPECT_EQ(wrong(131).largest_of_all(), 0);
}

TEST(H261, ConcealsADamagedGroupOfBlocks) {
  const Pictures clip = make_pan(true, 4);
  Bytes stream = encode(clip, {});
  const Pictures whole = decode(stream);
  h261::Encoder encoder(352, 288, {});
  const size_t first = encoder.encode(clip[0]).size();
  for (size_t i = 0; i < 40; ++i) stream[first + 200 + i] ^= uint8_t(0x55 + i);
  EXPECT_THROW(decode(stream), Failure);
  std::vector<std::string> reports;
  const Pictures concealed = decode(stream, [&](const std::string& damage) { reports.push_back(damage); });
  ASSERT_FALSE(reports.empty());
  EXPECT_EQ(reports[0].find("picture 1, group "), 0u) << reports[0];
  EXPECT_EQ(compare(Pictures{concealed[0]}, Pictures{whole[0]}).largest_of_all(), 0);
  EXPECT_GE(compare(concealed, whole).psnr(), 20);
}

TEST(H261, DamageToAGroupOfBlocksStaysInIt) {
  const Bytes stream = encode(make_pan(false, 2), {20, true, 4});
  const Pictures whole = decode(stream);
  // Where start codes stand, and of what.
  const auto start_codes = [](const Bytes& bytes) {
    std::vector<std::pair<size_t, uint32_t>> found;
    BitReader bits(bytes);
    for (size_t at = 0; at < bytes.size() * 8; ++at) {
      bits.seek(at);
      if (bits.peek(20) >> 4 == 1) found.emplace_back(at, bits.peek(20) & 15);
    }
    return found;
  };
  const auto starts = start_codes(stream);
  ASSERT_EQ(starts.size(), 8u);
  std::mt19937 random(3);
  int damaged = 0;
  for (int k = 0; k < 400; ++k) {
    const size_t group = 5 + random() % 2;  // the first or the second of the second picture
    Bytes bytes = stream;
    for (int flips = 0; flips < 3; ++flips) {
      const size_t first = starts[group].first + 20, at = first + random() % (starts[group + 1].first - first);
      bytes[at / 8] ^= uint8_t(0x80 >> at % 8);
    }
    if (start_codes(bytes) != starts) continue;
    int reports = 0;
    const Pictures concealed = decode(bytes, [&](const std::string&) { ++reports; });
    ASSERT_EQ(concealed.size(), 2u);
    damaged += reports;
    for (int y = 0; y < 144; ++y) {
      const uint8_t *const row = whole[1].planes[0].at(0, y), *const kept = concealed[1].planes[0].at(0, y);
      if (y / 48 == int(starts[group].second) / 2) continue;
      ASSERT_TRUE(std::equal(row, row + 176, kept)) << "trial " << k << ", row " << y;
    }
  }
  EXPECT_GT(damaged, 100);
}

TEST(H261, CoefficientsAreClampedAndLevelsChecked) {
  // On a black picture, one macroblock with one coefficient, the second of its first row, written as an escape.
  const auto decode_level = [](int level) {
    BitBuffer bits(100);
    const auto put = [&](uint32_t value, int n) { bits.cursor().put(value, n); };
    put(1, 16), put(0, 4 + 5), put(0b000011, 6), put(0, 1);
    for (const uint32_t group : {1, 3, 5}) {
      put(1, 16), put(group, 4), put(31, 5), put(0, 1);
      if (group > 1) continue;
      put(1, 1), put(1, 1), put(0b1010, 4);  // the next macroblock, predicted, its first block
      put(h261::escape.bits, 6), put(1, 6), put(uint32_t(level) & 255, 8), put(0b10, 2);
    }
    bits.cursor().finish(false);
    return decode(Bytes(bits.bytes().begin(), bits.bytes().end())).at(0);
  };
  // 2047 / 8 * sqrt(2) * cos(7 pi / 16), as the coefficient 31 * (2 * 127 + 1) is clamped.
  EXPECT_EQ(*decode_level(127).planes[0].at(3, 0), 71);
  EXPECT_EQ(*decode_level(-127).planes[0].at(4, 0), 71);
  EXPECT_EQ(*decode_level(1).planes[0].at(0, 0), 16);  // 93 / 8 * sqrt(2) * cos(pi / 16)
  EXPECT_THROW(decode_level(-128), Failure);
  EXPECT_THROW(decode_level(0), Failure);
}

TEST(H261, RefreshCountsPicturesAndNotAttempts) {
  // Half of it stands still, the other is noise that takes quantizer 6 to fit.
  YuvPicture picture = make_pan(false, 1)[0];
  Pictures clip;
  std::mt19937 random(1);
  for (int k = 0; k < 6; ++k) {
    for (YuvPicture::Component& plane : picture.planes)
      for (size_t i = plane.samples.size() / 2; i < plane.samples.size(); ++i)
        plane.samples[i] = uint8_t(100 + random() % 60);
    clip.push_back(picture);
  }
  const Bytes stream = encode(clip, {6, true, 0});
  EXPECT_NE(stream, encode(clip, {7, true, 0}));
  EXPECT_EQ(stream, encode(clip, {2, true, 0})) << "tried four times more";
}

TEST(H261, ToolGoesFromPictureToStreamAndBack) {
  const Workplace place;
  write_picture(place / "in.png", make_picture(400, 310, 3, Content::smooth));
  expect_successes(place,
                   {"pan {in.png} {clip.y4m} --frames 4", "h261 encode {clip.y4m} {a.h261} --quant 5 --search 3",
                    "h261 decode {a.h261} {a.y4m}", "h261 encode --no-loop-filter {clip.y4m} {b.h261}",
                    "show {a.h261} --frame 3 {1.png}", "show {a.y4m} --frame 3 --zoom 2 {2.png}",
                    "show {a.y4m} --frame 3 --zoom 3 {3.ppm}", "psnr {a.y4m} {clip.y4m}"});
  EXPECT_GE(compare(read_y4m(place / "a.y4m"), read_y4m(place / "clip.y4m")).psnr(), 36);
  const Bytes clip = read_bytes(place / "a.y4m");
  EXPECT_TRUE(run(place, PQXVIDEO " h261 decode {a.h261} /dev/stdout | cat").out ==
              std::string(clip.begin(), clip.end()));
  const Image once = read_picture(place / "1.png");
  for (const int zoom : {2, 3}) {
    const Image enlarged = read_picture(place / (zoom == 2 ? "2.png" : "3.ppm"));
    ASSERT_EQ(enlarged.width(), 352 * zoom);
    ASSERT_EQ(enlarged.height(), 288 * zoom);
    for (int y = 0; y < enlarged.height(); ++y)
      for (int x = 0; x < enlarged.width(); ++x)
        for (int c = 0; c < 3; ++c)
          ASSERT_EQ(enlarged.row(y)[3 * x + c], once.row(y / zoom)[3 * (x / zoom) + c]) << x << ", " << y;
  }
}

TEST(H261, ToolShowsItsProgressOnATerminal) {
  const Workplace place;
  const Bytes stream = encode(make_pan(false, 3), {});
  write_files(place, {{"good.h261", stream}, {"damaged.h261", Bytes(stream.begin(), stream.end() - 100)}});
  const std::string in = place / "damaged.h261";
  const struct {
    std::string command;
    std::string shown;  // where the line of progress stood
  } cases[] = {{"{good.h261}", "3 pictures, "},
               {"{damaged.h261}", "pqxvideo: " + in + ": damaged H.261 stream"},
               {"--conceal {damaged.h261}", "pqxvideo: " + in + ": picture 2, group 5: damaged H.261 stream"}};
  for (const auto& [command, shown] : cases) {
    const std::string out =
        run(place, "script -qec '" PQXVIDEO " h261 decode " + command + " {out.y4m}' /dev/null").out;
    EXPECT_EQ(out.find("\rdecoding 1"), 0u) << out;
    EXPECT_NE(out.find("\r\033[K" + shown), std::string::npos) << out;
  }
}

TEST(H261, ToolReportsErrorsInOneLineAndLeavesNothing) {
  const Workplace place;
  const Bytes stream = encode(make_pan(false, 2), {});
  Bytes damaged = stream, cut = stream;
  for (size_t i = 300; i < 330; ++i) damaged[i] ^= 0x5A;
  cut.insert(cut.end(), stream.begin(), stream.begin() + 3);
  const Bytes odd = y4m_of({YuvPicture(64, 48)});
  write_files(place, {{"good.h261", stream},
                      {"damaged.h261", damaged},
                      {"cut.h261", cut},
                      {"odd.y4m", odd},
                      {"short.y4m", Bytes(odd.begin(), odd.end() - 1)},
                      {"444.y4m", text("YUV4MPEG2 W64 H48 F25:1 C444\n")},
                      {"empty.y4m", text("YUV4MPEG2 W176 H144 F25:1\n")},
                      {"picture.png", {0x89, 'P', 'N', 'G'}}});
  const FailingCommand cases[] = {
    {"h261 decode {damaged.h261} {out.y4m}", 1, "damaged.h261", "damaged H.261 stream"},
    {"h261 decode {cut.h261} {out.y4m}", 1, "cut.h261", "damaged H.261 stream: it ends in a picture header"},
    {"h261 decode {odd.y4m} {out.y4m}", 1, "odd.y4m", "not an H.261 stream"},
    {"h261 decode {good.h261} {nowhere/out.y4m}", 1, "nowhere/out.y4m", "No such file"},
    {"h261 encode {odd.y4m} {out.h261}", 1, "odd.y4m", "not supported: H.261 holds"},
    {"h261 encode {444.y4m} {out.h261}", 1, "444.y4m", "not supported: Y4M of kind 444"},
    {"h261 encode {missing.y4m} {out.h261}", 1, "missing.y4m", "No such file"},
    {"h261 decode {missing.h261} {out.y4m}", 1, "missing.h261", "No such file"},
    {"show {missing.y4m} {out.png}", 1, "missing.y4m", "No such file"},
    {"psnr {odd.y4m} {missing.y4m}", 1, "missing.y4m", "No such file"},
    {"h261 encode {empty.y4m} {out.h261}", 1, "empty.y4m", "no picture in it"},
    {"h261 encode {good.h261} {out.h261}", 1, "good.h261", "not a Y4M file"},
    {"h261 encode {good.h261} {out.h261} --quant 32", 2, "", "--quant"},
    {"show {short.y4m} {out.png}", 1, "short.y4m", "truncated Y4M"},
    {"show {good.h261} {out.png} --frame 2", 1, "good.h261", "its last picture has number 1"},
    {"show {picture.png} {out.png}", 1, "picture.png", "neither a Y4M file nor an H.261 stream"},
    {"show {good.h261} {out.png} --zoom 4", 2, "", "--zoom"},
    {"psnr {empty.y4m} {empty.y4m}", 1, "empty.y4m", "no picture in them"},
    {"psnr {odd.y4m} {short.y4m}", 1, "short.y4m", "truncated Y4M"},
#if HAS_PLAYER
    {"play {444.y4m}", 1, "444.y4m", "not supported: Y4M of kind 444"},
    {"play {picture.png}", 1, "picture.png", "neither a Y4M file nor an H.261 stream"},
    {"play {empty.y4m}", 1, "empty.y4m", "no picture in it"},
    {"play {damaged.h261} --once", 1, "damaged.h261", "damaged H.261 stream"},
#else
    {"play {good.h261}", 1, "", "this build has no player"},
#endif
    {"play {good.h261} --zoom 0", 2, "", "--zoom"},
  };
  setenv("SDL_VIDEODRIVER", "dummy", 1);
  expect_failures(place, cases);
  setenv("SDL_VIDEODRIVER", "none of this name", 1);
  constexpr FailingCommand unseen[] = {
      {"play {good.h261}", 1, "", HAS_PLAYER ? "cannot open a window" : "no player"}};
  expect_failures(place, unseen);
}
