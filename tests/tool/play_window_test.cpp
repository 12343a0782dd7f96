#include <SDL.h>
#include <gtest/gtest.h>

#include <chrono>

#include "picture_file.h"
#include "pictures.h"
#include "player/clip.h"
#include "player/play.h"
#include "player/show.h"

using namespace pqx_codec;
using namespace pqxvideo;
using namespace tool_test;

TEST(PlayWindow, ShowsEveryPictureAndClosesAtTheEnd) {
  constexpr int frames = 10;
  const Bytes stream = encode(make_wandering(frames), {});
  for (const int zoom : {1, 2, 3}) {
    const Workplace place;
    write_bytes(place / "clip.h261", stream);
    const auto start = std::chrono::steady_clock::now();
    const Outcome played = run(place, "cd {} && SDL_VIDEODRIVER=dummy SDL_VIDEO_DUMMY_SAVE_FRAMES=1 " PQXVIDEO
                                      " play {clip.h261} --once --zoom " +
                                          std::to_string(zoom));
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    ASSERT_EQ(played.status, 0) << played.errors;
    EXPECT_EQ(played.out + played.errors, "");
    EXPECT_GE(passed.count(), frames * 1001 / 30000.0);
    EXPECT_EQ(place.files().size(), 1u + frames) << "not one frame for each picture";
    must_run(place, "ffmpeg -v error -i {SDL_window1-%08d.bmp} -pix_fmt rgb24 {%d.ppm}");
    const auto clip = open_clip(stream);
    do {
      write_picture(place / "expected.ppm", show(clip->picture(), zoom));
      const std::string name = std::to_string(clip->number() + 1) + ".ppm";
      EXPECT_TRUE(read_bytes(place / "expected.ppm") == read_bytes(place / name)) << name << ", zoom " << zoom;
    } while (clip->next());
  }
}

TEST(PlayWindow, NeedsADisplay) {
  const Workplace place;
  write_bytes(place / "clip.h261", encode(make_wandering(2), {}));
  expect_failure(place,
                 "env -u DISPLAY -u WAYLAND_DISPLAY -u SDL_VIDEODRIVER XDG_RUNTIME_DIR={} timeout 20 " PQXVIDEO
                 " play {clip.h261}",
                 1, "clip.h261", "cannot open a window");
}

TEST(PlayWindow, StaysAtTheEndUntilItIsClosed) {
  const Workplace place;
  write_bytes(place / "clip.h261", encode(make_wandering(2), {}));
  setenv("SDL_VIDEODRIVER", "dummy", 1);
  ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO | SDL_INIT_TIMER), 0) << SDL_GetError();
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  SDL_AddTimer(
      500,
      [](Uint32, void*) -> Uint32 {
        SDL_Event event{};
        event.type = SDL_QUIT;
        SDL_PushEvent(&event);
        return 0;
      },
      nullptr);
  play(place / "clip.h261", 1, false, default_max_pixels);
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(490));
  SDL_Quit();
}
