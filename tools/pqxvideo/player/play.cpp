#include "player/play.h"

#include <SDL.h>
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include "naming.h"
#include "player/clip_file.h"
#include "player/player.h"
#include "report.h"

namespace pqxvideo {
namespace {

/// What is called of SDL2, which is loaded to play and not linked: the libraries behind it would make every other
/// command take three times as long to start.
class Sdl {
  template <class Function>
  Function find(const char* name) const {
    void* const found = library_ ? ::dlsym(library_, name) : nullptr;
    if (!found) throw Failure(std::string("cannot open a window: ") + ::dlerror());
    return reinterpret_cast<Function>(found);
  }

  void* library_ = ::dlopen("libSDL2-2.0.so.0", RTLD_NOW);

 public:
#define PQXVIDEO_FIND(name) decltype(&::name) name = find<decltype(&::name)>(#name)
  PQXVIDEO_FIND(SDL_SetHint);
  PQXVIDEO_FIND(SDL_InitSubSystem);
  PQXVIDEO_FIND(SDL_QuitSubSystem);
  PQXVIDEO_FIND(SDL_GetCurrentVideoDriver);
  PQXVIDEO_FIND(SDL_GetError);
  PQXVIDEO_FIND(SDL_CreateWindow);
  PQXVIDEO_FIND(SDL_DestroyWindow);
  PQXVIDEO_FIND(SDL_SetWindowTitle);
  PQXVIDEO_FIND(SDL_GetWindowSurface);
  PQXVIDEO_FIND(SDL_UpdateWindowSurfaceRects);
  PQXVIDEO_FIND(SDL_CreateRGBSurfaceWithFormatFrom);
  PQXVIDEO_FIND(SDL_FreeSurface);
  PQXVIDEO_FIND(SDL_UpperBlit);
  PQXVIDEO_FIND(SDL_PollEvent);
  PQXVIDEO_FIND(SDL_Delay);
#undef PQXVIDEO_FIND
};

const Sdl& sdl() {
  static const Sdl functions;
  return functions;
}

[[noreturn]] void fail(const char* what) { throw Failure(std::string(what) + ": " + sdl().SDL_GetError()); }

struct Video {
  Video() {
    // An interrupted player ends as any program does.
    sdl().SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    if (sdl().SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) fail("cannot open a window");
    const std::string driver = sdl().SDL_GetCurrentVideoDriver();
    // Drivers that show nothing are taken only by who asks for them.
    if ((driver == "offscreen" || driver == "dummy") && !std::getenv("SDL_VIDEODRIVER")) {
      sdl().SDL_QuitSubSystem(SDL_INIT_VIDEO);
      throw Failure("cannot open a window: there is no display");
    }
    // An X server shares memory with the window; a renderer in between would take longer to start and to draw.
    if (driver == "x11") sdl().SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
  }
  ~Video() { sdl().SDL_QuitSubSystem(SDL_INIT_VIDEO); }
};

class Window {
 public:
  explicit Window(Image& pixels)
      : whole_{0, 0, pixels.width(), pixels.height()},
        window_(sdl().SDL_CreateWindow("pqxvideo", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, pixels.width(),
                                       pixels.height(), 0),
                sdl().SDL_DestroyWindow),
        // In memory the conversions write A = 0, B, G, R: words of R, G, B and a byte that does not count.
        pixels_(sdl().SDL_CreateRGBSurfaceWithFormatFrom(pixels.row(0), pixels.width(), pixels.height(), 32,
                                                         int(pixels.step()), SDL_PIXELFORMAT_RGBX8888),
                sdl().SDL_FreeSurface) {
    if (!window_ || !pixels_) fail("cannot open a window");
  }

  void set_title(const std::string& title) {
    if (title != std::exchange(title_, title)) sdl().SDL_SetWindowTitle(window_.get(), title.c_str());
  }
  void present(const Rectangle& r) {
    if (r.empty()) return;
    SDL_Rect part{r.x0, r.y0, r.x1 - r.x0, r.y1 - r.y0}, place = part;
    SDL_Surface* const surface = sdl().SDL_GetWindowSurface(window_.get());
    if (!surface || sdl().SDL_UpperBlit(pixels_.get(), &part, surface, &place) != 0 ||
        sdl().SDL_UpdateWindowSurfaceRects(window_.get(), &place, 1) != 0)
      fail("cannot draw");
  }
  void present() { present(whole_); }

 private:
  Rectangle whole_;
  std::unique_ptr<SDL_Window, void (*)(SDL_Window*)> window_;
  std::unique_ptr<SDL_Surface, void (*)(SDL_Surface*)> pixels_;
  std::string title_;
};

/// False when the player shall close.
bool handle(const SDL_Event& event, Player& player, Window& window) {
  switch (event.type) {
    case SDL_QUIT:
      return false;
    case SDL_WINDOWEVENT:
      if (event.window.event == SDL_WINDOWEVENT_EXPOSED) window.present();
      break;
    case SDL_KEYDOWN:
      switch (event.key.keysym.sym) {
        case SDLK_q:
          return false;
        case SDLK_SPACE:
          if (!event.key.repeat) player.pause_or_play(Player::Clock::now());
          break;
        case SDLK_RIGHT:
          player.step_forward();
          break;
        case SDLK_LEFT:
          player.step_back();
          break;
      }
      break;
  }
  return true;
}

/// Sleeps until there may be something to do. SDL's own way of waiting has messages sent to the window, which is an
/// error of the X server's when they come after its end.
void rest(const Player& player) {
  using std::chrono::milliseconds;
  const milliseconds longest(10);
  const auto due = player.due();
  const auto left = due ? std::chrono::ceil<milliseconds>(*due - Player::Clock::now()) : longest;
  sdl().SDL_Delay(Uint32(std::clamp(left, milliseconds(0), longest).count()));
}

void play(Clip& clip, const std::string& name, int zoom, bool to_end) {
  const Video video;
  Player player(clip, name, zoom);
  Window window(player.pixels());
  for (player.pause_or_play(Player::Clock::now());; rest(player)) {
    SDL_Event event;
    while (sdl().SDL_PollEvent(&event))
      if (!handle(event, player, window)) return;
    player.advance(Player::Clock::now());
    window.present(player.take_converted());
    window.set_title(player.title());
    if (to_end && player.at_end()) return;
  }
}

}  // namespace

void play(const std::string& path, int zoom, bool to_end, int64_t max_pixels) {
  const ClipFile file(path, max_pixels, 128);
  naming(path, [&] { play(file.clip(), printable(std::filesystem::path(path).filename().string()), zoom, to_end); });
}

}  // namespace pqxvideo
