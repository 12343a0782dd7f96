#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "codec.h"
#include "picture/image.h"
#include "player/clip.h"

namespace pqxvideo {

/// Plays a clip into memory: when which picture is shown, and what of it is converted. It begins paused at the first
/// picture and stops at the last.
class Player {
 public:
  using Clock = std::chrono::steady_clock;

  Player(Clip& clip, std::string name, int zoom);

  /// Goes on or stops; at the end, begins again.
  void pause_or_play(Clock::time_point now);
  /// Stops at the next picture or at the one before.
  void step_forward();
  void step_back();
  /// Shows the next picture if it is time for it.
  void advance(Clock::time_point now);

  /// When there will be something to do; nothing while it has stopped.
  std::optional<Clock::time_point> due() const;
  bool at_end() const { return state_ == State::ended; }

  /// What is shown: pixels of four bytes A, B, G, R.
  Image& pixels() { return pixels_; }
  /// The part of it, in pixels, that has been converted since this was last asked for.
  Rectangle take_converted();
  const std::string& title() const { return title_; }

 private:
  enum class State { playing, paused, ended };

  void show();
  void stop(State state);
  void set_title(const std::string& what);

  Clip& clip_;
  std::string name_, title_;
  int zoom_;
  Image pixels_;
  Rectangle converted_;
  State state_ = State::paused;
  Clock::time_point due_;
  Clock::time_point since_;  // that pictures are counted for the title
  int shown_ = 0;
  Clock::duration converting_{}, conversion_{};
};

}  // namespace pqxvideo
