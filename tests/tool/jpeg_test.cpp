#include <gtest/gtest.h>

#include "jpeg/decoder.h"
#include "jpeg/encoder.h"
#include "jpeg/format.h"
#include "jpeg/huffman.h"
#include "pictures.h"
#include "psnr.h"

using namespace pqx_codec;
using namespace pqxvideo;
using namespace tool_test;

namespace {

struct Size {
  int width, height;
};
constexpr Size sizes[] = {{1, 1}, {2, 1}, {1, 9}, {3, 2}, {8, 8}, {16, 17}, {17, 16}, {33, 31}, {70, 45}, {129, 50}};
constexpr jpeg::Sampling samplings[] = {jpeg::Sampling::s444, jpeg::Sampling::s422, jpeg::Sampling::s420};

std::string describe(int width, int height, const std::string& what) {
  return std::to_string(width) + " x " + std::to_string(height) + " " + what;
}

/// How closely two decoders must agree.
void expect_agreement(const Image& ours, const Image& judge, const std::string& what) {
  const Difference difference = compare(ours, judge);
  EXPECT_LE(difference.largest_of_all(), ours.channels() == 1 ? 1 : 4) << what;
  EXPECT_GE(difference.psnr(), 45) << what;
}

void expect_agreement_with_judge(const Bytes& jpeg, int width, int height, const std::string& what) {
  expect_agreement(jpeg::decode(jpeg, jpeg::Upsampling::nearest), judge(jpeg, false),
                   describe(width, height, what) + ", nn");
  // With one or two columns of chroma the judge does not interpolate.
  if (width > 4) expect_agreement(jpeg::decode(jpeg), judge(jpeg, true), describe(width, height, what) + ", bl");
}

}  // namespace

TEST(Jpeg, ComesBackCloseToWhatWentIn) {
  constexpr struct {
    int quality;
    double grey, by_sampling[3];  // dB
  } bounds[] = {{100, 56, {45, 38, 37.5}},      {95, 43, {38.5, 36.5, 36}},    {75, 39, {36.4, 34.8, 34.2}},
                {40, 37.5, {34.4, 29.9, 31.9}}, {5, 25.5, {21.3, 20.7, 19.7}}, {1, 22.7, {18.6, 17.6, 16.7}}};
  for (const auto [width, height] : sizes)
    for (const auto& bound : bounds) {
      const auto loss = [&](const Image& image, jpeg::Sampling sampling) {
        return compare(image, jpeg::decode(jpeg::encode(image, {bound.quality, sampling}))).psnr();
      };
      const std::string what = describe(width, height, "at ") + std::to_string(bound.quality);
      EXPECT_GE(loss(make_picture(width, height, 1, Content::smooth), jpeg::Sampling::s420), bound.grey) << what;
      for (const jpeg::Sampling sampling : samplings)
        EXPECT_GE(loss(make_picture(width, height, 3, Content::smooth), sampling), bound.by_sampling[int(sampling)])
            << what << ", sampling " << int(sampling);
    }
}

TEST(Jpeg, OptimizedTablesChangeTheBytesOnly) {
  for (const Content content : {Content::smooth, Content::edges, Content::noise})
    for (const jpeg::Sampling sampling : samplings) {
      const Image image = make_picture(150, 120, 3, content);
      const Bytes plain = jpeg::encode(image, {90, sampling}), optimized = jpeg::encode(image, {90, sampling, true});
      EXPECT_LT(optimized.size(), plain.size());
      EXPECT_EQ(compare(jpeg::decode(plain), jpeg::decode(optimized)).largest_of_all(), 0);
    }
}

TEST(Jpeg, HeadersAreThoseOfTheOutsideEncoder) {
  const Image image = make_picture(20, 10, 3);
  for (const int quality : {1, 10, 33, 50, 51, 75, 99, 100}) {
    const Bytes ours = jpeg::encode(image, {.quality = quality});
    const Bytes theirs = encode_outside(image, "-baseline -sample 2x2 -quality " + std::to_string(quality));
    constexpr uint8_t scan[] = {0xFF, 0xDA, 0, 12, 3};
    const auto length = std::search(ours.begin(), ours.end(), std::begin(scan), std::end(scan)) - ours.begin() + 14;
    EXPECT_EQ(Bytes(ours.begin(), ours.begin() + length), Bytes(theirs.begin(), theirs.begin() + length)) << quality;
  }
}

TEST(Jpeg, OutsideDecoderReadsWhatWeWrite) {
  for (const auto [width, height] : sizes)
    for (const Content content : {Content::edges, Content::noise}) {
      const Image grey = make_picture(width, height, 1, content);
      expect_agreement_with_judge(jpeg::encode(grey, {.quality = 80, .optimize = true}), width, height, "grey");
      const Image colour = make_picture(width, height, 3, content);
      for (const jpeg::Sampling sampling : samplings) {
        const bool noise = content == Content::noise;
        expect_agreement_with_judge(jpeg::encode(colour, {noise ? 100 : 60, sampling, noise}), width, height,
                                    "sampling " + std::to_string(int(sampling)));
      }
    }
}

TEST(Jpeg, ReadsWhatAnOutsideEncoderWrites) {
  const char* const options[] = {"-grayscale",
                                 "-sample 1x1",
                                 "-sample 2x1",
                                 "-sample 2x2",
                                 "-sample 2x2 -restart 1B -optimize",
                                 "-sample 2x1 -restart 1",
                                 "-sample 2x2 -quality 98",
                                 "-sample 2x2 -quality 2",  // 16-bit steps, extended sequential
                                 "-sample 2x2,1x2,1x2",     // 4:2:2
                                 "-sample 2x1,2x1,2x1",     // 4:4:4
                                 "-grayscale -sample 2x2 -restart 2B",
                                 "-rgb -sample 1x1"};
  for (const auto [width, height] : sizes) {
    const Image image = make_picture(width, height, 3);
    for (const char* const option : options)
      expect_agreement_with_judge(encode_outside(image, option), width, height, option);
  }
}

TEST(Jpeg, ReadsScansOfSingleComponents) {
  const struct {
    std::vector<int> factors;
    int adobe_transform;
    const char* what;
  } cases[] = {{{0x11, 0x11, 0x11}, -1, "4:4:4"},
               {{0x21, 0x11, 0x11}, -1, "4:2:2"},
               {{0x22, 0x11, 0x11}, -1, "4:2:0"},
               {{0x41, 0x21, 0x21}, 1, "4:2:2, doubled"},
               {{0x11, 0x11, 0x11}, 0, "RGB"},
               {{0x22, 0x11, 0x11}, 0, "RGB 4:2:0"},
               {{0x21, 0x11, 0x11}, 0, "RGB 4:2:2"},
               {{0x11, 0x11, 0x11, 0x11}, -1, "CMYK, unnamed"},
               {{0x11, 0x11, 0x11, 0x11}, 0, "CMYK"},
               {{0x11, 0x11, 0x11, 0x11}, 2, "YCCK"},
               {{0x22, 0x11, 0x11, 0x22}, 2, "YCCK 4:2:0"},
               {{0x21, 0x11, 0x11, 0x21}, 2, "YCCK 4:2:2"}};
  for (const auto [width, height] : sizes)
    for (const auto& [factors, adobe_transform, what] : cases) {
      std::vector<Bytes> planes;
      for (size_t i = 0; i < factors.size(); ++i) {
        const int across = (factors[0] >> 4) / (factors[i] >> 4), down = (factors[0] & 15) / (factors[i] & 15);
        // Different for each component, of full contrast only where it does not need clipping.
        const Image plane = make_picture((width + across - 1) / across, (height + down - 1) / down, 1,
                                         i % 2 ? Content::smooth : Content::edges);
        planes.push_back(jpeg::encode(plane, {.quality = 90}));
      }
      expect_agreement_with_judge(assemble(width, height, planes, factors, adobe_transform), width, height, what);
    }
}

TEST(Jpeg, LoneChromaIsNotMixedWithItsPadding) {
  const Bytes block = jpeg::encode(make_picture(8, 8, 1, Content::noise), {.quality = 100});
  for (const std::vector<int>& factors :
       {std::vector{0x22, 0x11, 0x11}, {0x21, 0x11, 0x11}, {0x22, 0x11, 0x11, 0x22}})
    for (const int width : {1, 2}) {
      const Bytes jpeg = assemble(width, 2, std::vector(factors.size(), block), factors, 2);
      const Image nearest = jpeg::decode(jpeg, jpeg::Upsampling::nearest), bilinear = jpeg::decode(jpeg);
      EXPECT_EQ(compare(nearest, bilinear).largest_of_all(), 0) << width << " wide, " << factors[0];
    }
}

TEST(Jpeg, CoefficientsBeyondAllBoundsSaturate) {
  Image edge(8, 8, 1);
  for (int y = 0; y < 8; ++y) std::fill(std::fill_n(edge.row(y), 4, uint8_t{0}), edge.row(y) + 8, uint8_t{255});
  Bytes jpeg = jpeg::encode(edge, {.quality = 100});
  for (const int step : {40, 110, 180, 255}) {  // 16 bits would turn the sign of the largest level, -924, times these
    std::fill_n(jpeg.begin() + 25, 64, uint8_t(step));
    const Image decoded = jpeg::decode(jpeg);
    EXPECT_EQ(compare(decoded, edge).largest_of_all(), 0) << step;
  }
}

TEST(Jpeg, WhatCannotBeIsRefused) {
  const Bytes good = encode_outside(make_picture(40, 40, 3), "-sample 1x1 -quality 95");
  // Where a segment begins that starts with these bytes behind its length.
  const auto segment = [&](uint8_t marker, uint8_t first) {
    for (size_t at = 2;; at += 2 + size_t(good[at + 2] << 8 | good[at + 3]))
      if (good.at(at + 1) == marker && good[at + 4] == first) return at + 4;
  };
  const size_t frame = segment(0xC0, 8), dc = segment(0xC4, 0), ac = segment(0xC4, 0x10);
  const struct {
    const char* reason;
    std::vector<std::pair<size_t, uint8_t>> changes;
  } cases[] = {{"impossible Huffman table", {{dc + 1, 3}, {dc + 16, 3}, {dc + 3, 0}, {dc + 2, 0}}},
               {"a coefficient beyond 8-bit samples", {{ac + 17, 0x0B}}},
               {"a coefficient beyond 8-bit samples",
                {{dc + 20, 12}, {dc + 21, 12}, {dc + 22, 12}, {dc + 23, 12}, {dc + 24, 12}}},
               {"a quantization table is missing", {{frame + 8, 3}}},
               {"two components of one name", {{frame + 9, 1}}},
               {"too many blocks", {{frame + 7, 0x22}, {frame + 10, 0x22}, {frame + 13, 0x22}}}};
  jpeg::decode(good);
  for (const auto& [reason, changes] : cases) {
    Bytes bytes = good;
    for (const auto& [at, value] : changes) bytes[at] = value;
    try {
      jpeg::decode(bytes);
      ADD_FAILURE() << "accepted: " << reason;
    } catch (const Failure& failure) {
      EXPECT_NE(std::string(failure.what()).find(reason), std::string::npos) << failure.what();
    }
  }
}

TEST(Jpeg, OptimalCodesHaveAtMost16Bits) {
  // Fibonacci numbers ask for codes as long as the number of symbols.
  for (const size_t symbols : {1, 2, 3, 16, 17, 18, 40, 80}) {
    std::array<int64_t, 256> frequencies{};
    for (size_t i = 0; i < symbols; ++i)
      frequencies[255 - i] = i < 2 ? 1 : frequencies[256 - i] + frequencies[257 - i];
    const jpeg::HuffmanSpec table = jpeg::optimal_table(frequencies);
    EXPECT_EQ(table.size(), int(symbols));

    double space = 0;
    for (size_t i = 0; i < 16; ++i) space += table.counts[i] * std::ldexp(1.0, -int(i) - 1);
    EXPECT_LE(space, 1 - std::ldexp(1.0, -16)) << "no room for the code of ones with " << symbols << " symbols";
    for (size_t i = 1; i < symbols; ++i)
      EXPECT_GE(frequencies[table.symbols[i - 1]], frequencies[table.symbols[i]])
          << "a frequent symbol behind a rare one";
  }
}
