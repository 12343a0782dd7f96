#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>

#include "h261/decoder.h"
#include "h263/decoder.h"
#include "h263_writer.h"
#include "jpeg/decoder.h"
#include "jpeg/encoder.h"
#include "picture/png.h"
#include "picture/pnm.h"
#include "picture_file.h"
#include "pictures.h"

using namespace pqx_codec;
using namespace pqxvideo;
using namespace tool_test;

namespace {

std::vector<Bytes> make_pictures() {
  std::vector<Bytes> seeds;
  for (const auto& [width, height] : {std::pair{1, 1}, {33, 17}, {64, 40}}) {
    const Image grey = make_picture(width, height, 1), colour = make_picture(width, height, 3);
    seeds.push_back(jpeg::encode(grey, {}));
    for (const jpeg::Sampling sampling : {jpeg::Sampling::s444, jpeg::Sampling::s422, jpeg::Sampling::s420})
      seeds.push_back(jpeg::encode(colour, {50, sampling, true}));
    for (const char* const options : {"-restart 1B", "-quality 3", "-rgb -optimize", "-sample 2x1 -restart 1"})
      seeds.push_back(encode_outside(colour, options));
    const Bytes plane = jpeg::encode(grey, {.quality = 30});
    seeds.push_back(assemble(width, height, {plane, plane, plane, plane}, {0x11, 0x11, 0x11, 0x11}, 2));
    const Workplace place;
    for (const char* const name : {"picture.png", "picture.ppm"}) {
      write_picture(place / name, make_picture(width / 2 + 1, height / 2 + 1, 3, Content::smooth));
      seeds.push_back(read_bytes(place / name));
    }
  }
  return seeds;
}

}  // namespace

TEST(Damage, NeverDoesMoreThanFail) {
  using Clock = std::chrono::steady_clock;
  int concealed = 0;
  Bytes y4m = y4m_of({YuvPicture(2, 4000)});  // which one wrong digit makes wide, too
  y4m.insert(std::ranges::find(y4m, uint8_t{'W'}) + 1, 3, uint8_t{'0'});
  const struct {
    std::vector<Bytes> seeds;
    std::function<void(const Bytes&, int)> read;
    int times = 20000;
    int memory_of_pictures = 0;  // in MiB, of sizes that one wrong bit can ask for
  } kinds[] = {
      {make_pictures(),
       [](const Bytes& bytes, int i) {
         is_png(bytes)   ? read_png(bytes)
         : is_pnm(bytes) ? read_pnm(bytes)
                         : jpeg::decode(bytes, i % 2 ? jpeg::Upsampling::nearest : jpeg::Upsampling::bilinear);
       }},
      {{encode(make_pan(false, 3), {20, true, 4}), encode(make_pan(false, 3), {31, true, 4})},
       [&](const Bytes& bytes, int i) {
         h261::Decoder decoder = i % 4 ? h261::Decoder(bytes) : h261::Decoder(bytes, [&](auto&) { ++concealed; });
         while (decoder.next()) continue;
       }},
      {{H263Writer({.width = 128, .height = 96, .unrestricted = true, .overlapped = true}, 1).write(),
        H263Writer(
            {.plus = true, .unrestricted = true, .advanced_intra = true, .slices = true, .modified_quant = true}, 2)
            .write(),
        H263Writer({.width = 96, .height = 64, .plus = true, .overlapped = true, .deblocking = true}, 3).write()},
       [&](const Bytes& bytes, int i) {
         h263::Decoder decoder(i % 4 ? h263::Decoder::Report() : [&](auto&) { ++concealed; });
         decoder.push(bytes);
         decoder.finish();
         while (decoder.next()) continue;
       },
       std::getenv("PQX_THOROUGH") ? 20000 : 2000,
       48},  // the largest size of a picture has the most
      {{y4m}, [](const Bytes& bytes, int) {
         Y4mReader reader(bytes);
         for (YuvPicture picture; reader.next(picture);) continue;
       }}};
  std::mt19937 random(20240723);
  Clock::duration longest{};
  for (const auto& [seeds, read, times, memory_of_pictures] : kinds) {
    const int memory = peak_memory();
    int done = 0, refused = 0;
    for (const Bytes& seed : seeds) ASSERT_LT(seed.size(), 16384u);
    for (int i = 0; i < times; ++i) {
      Bytes bytes = seeds[size_t(i) % seeds.size()];
      damage(bytes, random);
      const auto start = Clock::now();
      try {
        read(bytes, i);
        ++done;
      } catch (const Failure&) {
        ++refused;
      }
      longest = std::max(longest, Clock::now() - start);
    }
    EXPECT_GT(done, times / 20);
    EXPECT_GT(refused, times / 20);
    EXPECT_LT(peak_memory() - memory, MEMORY_FOR_DAMAGE + memory_of_pictures) << "MiB";
  }
  EXPECT_GT(concealed, 1000);
  EXPECT_LT(longest, std::chrono::seconds(2));
}
