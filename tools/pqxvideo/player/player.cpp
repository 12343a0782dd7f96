#include "player/player.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "player/show.h"

namespace pqxvideo {
namespace {

using Clock = Player::Clock;

/// For how long the picture stands.
Clock::duration duration(const Clip& clip) {
  const FrameRate rate = clip.rate();
  // A rate of next to nothing keeps the picture for ever rather than for more than the clock can count.
  const double seconds = std::min(double(clip.frames()) * rate.denominator / rate.numerator, 1e8);
  return std::chrono::round<Clock::duration>(std::chrono::duration<double>(seconds));
}

std::string milliseconds(Clock::duration time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f ms", std::chrono::duration<double, std::milli>(time).count());
  return text;
}

}  // namespace

Player::Player(Clip& clip, std::string name, int zoom)
    : clip_(clip),
      name_(std::move(name)),
      zoom_(zoom),
      pixels_(clip.picture().width() * zoom, clip.picture().height() * zoom, 4) {
  show();
  stop(State::paused);
}

void Player::pause_or_play(Clock::time_point now) {
  if (state_ == State::playing) return stop(State::paused);
  if (state_ == State::ended) {
    clip_.go_back(0);
    show();
  }
  state_ = State::playing;
  due_ = now + duration(clip_);
  since_ = now;
  set_title("playing");
}

void Player::step_forward() {
  const bool more = clip_.next();
  if (more) show();
  stop(more ? State::paused : State::ended);
}

void Player::step_back() {
  if (clip_.number() > 0) {
    clip_.go_back(clip_.number() - 1);
    show();
  }
  stop(State::paused);
}

void Player::advance(Clock::time_point now) {
  if (state_ != State::playing || now < due_) return;
  if (!clip_.next()) return stop(State::ended);
  show();
  // Held up for long, it goes on from there and does not race.
  due_ = std::max(due_, now - std::chrono::milliseconds(200)) + duration(clip_);
  if (const std::chrono::duration<double> passed = now - since_; passed >= std::chrono::seconds(1)) {
    char rate[32];
    std::snprintf(rate, sizeof rate, "%.1f frames/s", shown_ / passed.count());
    set_title(rate);
    since_ = now;
  }
}

std::optional<Clock::time_point> Player::due() const {
  if (state_ != State::playing) return {};
  return due_;
}

Rectangle Player::take_converted() {
  const Rectangle r = std::exchange(converted_, {});
  return {r.x0 * zoom_, r.y0 * zoom_, r.x1 * zoom_, r.y1 * zoom_};
}

void Player::show() {
  const auto start = Clock::now();
  show_part(clip_.picture(), clip_.changed(), zoom_, pixels_);
  converting_ += Clock::now() - start;
  ++shown_;
  converted_.add(clip_.changed());
}

void Player::stop(State state) {
  state_ = state;
  set_title("picture " + std::to_string(clip_.number()) + (state == State::ended ? ", end" : ", paused"));
}

void Player::set_title(const std::string& what) {
  if (shown_ > 0) conversion_ = converting_ / shown_;
  shown_ = 0;
  converting_ = {};
  title_ = name_ + " - " + what + ", " + milliseconds(conversion_) + " to convert";
}

}  // namespace pqxvideo
