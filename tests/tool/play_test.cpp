#include <gtest/gtest.h>

#include <chrono>
#include <random>

#include "h261/encoder.h"
#include "picture_file.h"
#include "pictures.h"
#include "player/clip.h"
#include "player/player.h"
#include "player/show.h"

using namespace pqx_codec;
using namespace pqxvideo;
using namespace tool_test;
using namespace std::chrono_literals;

namespace {

using Clock = Player::Clock;

constexpr int frames = 24;

/// Between pictures 4 and 5 seven frames have been left out.
Bytes make_stream() {
  const Pictures clip = make_wandering(frames);
  h261::Encoder encoder(176, 144, {});
  Bytes stream;
  for (int k = 0; k < frames; ++k) {
    Bytes coded = encoder.encode(clip[size_t(k)]);
    const int reference = k < 5 ? k : k + 7;
    coded[2] = uint8_t((coded[2] & 0xF0) | (reference >> 1 & 15));
    coded[3] = uint8_t((coded[3] & 0x7F) | (reference & 1) << 7);
    stream.insert(stream.end(), coded.begin(), coded.end());
  }
  return stream;
}

/// Of odd width and height.
Bytes make_y4m() {
  Pictures clip(frames, YuvPicture(33, 19));
  std::mt19937 random;
  for (YuvPicture& picture : clip)
    for (YuvPicture::Component& plane : picture.planes)
      for (uint8_t& sample : plane.samples) sample = uint8_t(random());
  return y4m_of(clip, {50, 1});
}

bool equal(const YuvPicture& a, const YuvPicture& b) {
  constexpr auto samples = &YuvPicture::Component::samples;
  return std::ranges::equal(a.planes, b.planes, {}, samples, samples);
}

}  // namespace

TEST(Play, ConvertsWhatChangedAndNothingElse) {
  for (const Bytes& bytes : {make_stream(), make_y4m()})
    for (const int zoom : {1, 2, 3}) {
      const auto clip = open_clip(bytes);
      const int width = clip->picture().width() * zoom, height = clip->picture().height() * zoom;
      Image abgr(width, height, 4);
      int in_part = 0;
      do {
        for (int y = 0; y < height; ++y)
          for (int x = 0; x < width; ++x) abgr.row(y)[4 * x] = 0xEE;
        const Rectangle part = clip->changed();
        in_part += part.x1 - part.x0 < clip->picture().width() && part.y1 - part.y0 < clip->picture().height();
        show_part(clip->picture(), part, zoom, abgr);
        const Image whole = show(clip->picture(), zoom);
        for (int y = 0; y < height; ++y)
          for (int x = 0; x < width; ++x) {
            const uint8_t *p = abgr.row(y) + 4 * x, *rgb = whole.row(y) + 3 * x;
            const bool inside =
                x >= part.x0 * zoom && x < part.x1 * zoom && y >= part.y0 * zoom && y < part.y1 * zoom;
            ASSERT_TRUE(p[0] == (inside ? 0 : 0xEE) && p[1] == rgb[2] && p[2] == rgb[1] && p[3] == rgb[0])
                << "picture " << clip->number() << ", zoom " << zoom << ", pixel " << x << ", " << y;
          }
      } while (clip->next());
      EXPECT_EQ(clip->number(), frames - 1);
      if (is_y4m(bytes))
        EXPECT_EQ(in_part, 0);
      else
        EXPECT_GT(in_part, frames / 2);
    }
}

TEST(Play, ClipsAreWalkedInBothDirections) {
  for (const Bytes& bytes : {make_stream(), make_y4m()})
    for (const size_t most_kept : {2u, 4u, 128u}) {
      std::vector<YuvPicture> pictures;
      std::vector<int> stands;
      const auto clip = open_clip(bytes, most_kept);
      do {
        pictures.push_back(clip->picture());
        stands.push_back(clip->frames());
      } while (clip->next());
      ASSERT_EQ(pictures.size(), size_t(frames));
      for (int k = 0; k < frames; ++k) EXPECT_EQ(stands[size_t(k)], k == 4 && !is_y4m(bytes) ? 8 : 1) << k;
      std::mt19937 random(5);
      for (int step = 0; step < 100; ++step) {
        if (random() % 2) {
          clip->go_back(int(random() % unsigned(clip->number() + 1)));
          EXPECT_EQ(clip->changed().x1, clip->picture().width());
        }
        for (unsigned more = random() % 4; more > 0; --more) clip->next();
        ASSERT_TRUE(equal(clip->picture(), pictures[size_t(clip->number())])) << clip->number();
        ASSERT_EQ(clip->frames(), stands[size_t(clip->number())]);
      }
    }
}

TEST(Play, KeepsTheFrameRateOfTheClip) {
  for (const Bytes& bytes : {make_stream(), make_y4m()}) {
    const auto clip = open_clip(bytes);
    Player player(*clip, "clip", 1);
    EXPECT_FALSE(player.due());
    const Clock::time_point start{1h};
    player.pause_or_play(start);
    for (int k = 0; k < frames; ++k) {
      ASSERT_TRUE(player.due());
      const int passed = is_y4m(bytes) || k < 4 ? k + 1 : k + 8;
      const double seconds = is_y4m(bytes) ? passed / 50.0 : passed * 1001 / 30000.0;
      EXPECT_NEAR(std::chrono::duration<double>(*player.due() - start).count(), seconds, 1e-6) << k;
      player.advance(*player.due() - 1ns);
      EXPECT_EQ(clip->number(), k);
      player.advance(*player.due());
    }
    EXPECT_TRUE(player.at_end());
    EXPECT_FALSE(player.due());
    EXPECT_EQ(player.title().find("clip - picture 23, end, 0."), 0u) << player.title();
  }
  EXPECT_EQ(open_clip(text("YUV4MPEG2 W2 H2 F0:0\nFRAME\nyyyyuv"))->rate().denominator, 1001);
  // Whoever was held up does not race, and a second's figures are shown.
  const Bytes bytes = make_y4m();
  const auto clip = open_clip(bytes);
  Player player(*clip, "clip", 1);
  player.pause_or_play(Clock::time_point{1h});
  player.advance(Clock::time_point{1h + 2s});
  EXPECT_EQ(clip->number(), 1);
  EXPECT_EQ(*player.due(), Clock::time_point(1h + 2s - 200ms + 20ms));
  EXPECT_EQ(player.title().find("clip - 0.5 frames/s, 0."), 0u) << player.title();
  EXPECT_NE(player.title().find(" ms to convert"), std::string::npos) << player.title();
}

TEST(Play, KeysStopAndStep) {
  const Bytes bytes = make_stream();
  const auto clip = open_clip(bytes);
  Player player(*clip, "clip", 2);
  const Clock::time_point now{1h};
  // Space, right, left, and time that passes; then the picture and whether it goes on from there.
  const struct {
    const char* keys;
    int picture;
    bool playing;
  } cases[] = {
      {" ", 0, true},    {"..", 2, true},  {"l", 1, false},    {".", 1, false},   {"lll", 0, false},
      {"rrr", 3, false}, {" .", 4, true},  {" .", 4, false},   {" .r", 6, false}, {"rrrrrrrrrrrrrrrrrr", 23, false},
      {".r", 23, false}, {"l", 22, false}, {" ..", 23, false}, {"ll", 21, false}, {"rrr", 23, false},
      {" ", 0, true},    {".", 1, true}};
  const YuvPicture first = clip->picture();
  Image kept(352, 288, 4);
  for (const auto& [keys, picture, playing] : cases) {
    for (const char key : std::string(keys)) {
      if (key == ' ') player.pause_or_play(now);
      if (key == 'r') player.step_forward();
      if (key == 'l') player.step_back();
      if (key == '.') player.advance(player.due().value_or(now));
      // What a window copies piece by piece is the whole.
      const Rectangle r = player.take_converted();
      for (int y = r.y0; y < r.y1; ++y)
        std::copy(player.pixels().row(y) + 4 * r.x0, player.pixels().row(y) + 4 * r.x1, kept.row(y) + 4 * r.x0);
    }
    EXPECT_EQ(clip->number(), picture) << keys;
    EXPECT_EQ(player.due().has_value(), playing) << keys;
    const Image want = show(clip->picture(), 2);
    for (int y = 0; y < 288; ++y)
      for (int x = 0; x < 352; ++x)
        for (int c = 0; c < 3; ++c)
          ASSERT_EQ(kept.row(y)[4 * x + 3 - c], want.row(y)[3 * x + c]) << keys << ": " << x << ", " << y;
  }
}
