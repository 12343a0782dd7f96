#include "player/clip.h"

#include <utility>
#include <vector>

#include "core/failure.h"
#include "h261/decoder.h"

namespace pqxvideo {
namespace {

/// Pictures of a Y4M file. A place in it is a reader that stands there.
class Y4mSource {
 public:
  using Place = Y4mReader;

  explicit Y4mSource(const Y4mReader& reader) : reader_(reader) {}

  const YuvPicture& picture() const { return picture_; }
  Rectangle changed() const { return {0, 0, picture_.width(), picture_.height()}; }
  int frames() const { return 1; }
  FrameRate rate() const { return reader_.rate(); }
  bool is_full_range() const { return reader_.is_full_range(); }

  bool next() { return reader_.next(picture_); }
  const Place& place() const { return reader_; }
  void go_to(const Place& place) { reader_ = place; }

 private:
  Y4mReader reader_;
  YuvPicture picture_;
};

/// Pictures of an H.261 stream. A place in it is a decoder with its reference.
class H261Source {
 public:
  using Place = h261::Decoder;

  explicit H261Source(const h261::Decoder& decoder) : decoder_(decoder) {}

  const YuvPicture& picture() const { return decoder_.picture(); }
  const Rectangle& changed() const { return decoder_.changed(); }
  int frames() const { return decoder_.frames_to_next(); }
  FrameRate rate() const { return {}; }
  bool is_full_range() const { return false; }

  bool next() { return decoder_.next(); }
  const Place& place() const { return decoder_; }
  void go_to(const Place& place) { decoder_ = place; }

 private:
  h261::Decoder decoder_;
};

/// Keeps the place before every interval-th picture. When too many are kept, every second one goes.
template <class Source>
class SourceClip final : public Clip {
 public:
  SourceClip(Source source, size_t most_kept) : source_(std::move(source)), most_kept_(most_kept) {
    rate_ = source_.rate();
    full_range_ = source_.is_full_range();
    if (!next()) throw Failure("no picture in it");
    changed_ = whole();
  }

  const YuvPicture& picture() const override { return source_.picture(); }

  bool next() override {
    keep();
    if (!source_.next()) return false;
    changed_ = source_.changed();
    frames_ = source_.frames();
    ++number_;
    return true;
  }

  void go_back(int number) override {
    const size_t nearest = size_t(number) / interval_;
    source_.go_to(kept_[nearest]);
    for (number_ = int(nearest * interval_) - 1; number_ < number;) next();
    changed_ = whole();
  }

 private:
  void keep() {
    if (size_t(number_ + 1) != kept_.size() * interval_) return;
    if (kept_.size() == most_kept_) {
      for (size_t k = 1; k < most_kept_ / 2; ++k) kept_[k] = std::move(kept_[2 * k]);
      kept_.erase(kept_.begin() + ptrdiff_t(most_kept_ / 2), kept_.end());
      interval_ *= 2;
    }
    kept_.push_back(source_.place());
  }

  Source source_;
  std::vector<typename Source::Place> kept_;
  size_t most_kept_, interval_ = 1;
};

}  // namespace

std::unique_ptr<Clip> open_clip(std::span<const uint8_t> bytes, size_t most_kept, int64_t max_pixels) {
  if (is_y4m(bytes))
    return std::make_unique<SourceClip<Y4mSource>>(Y4mSource(Y4mReader(bytes, max_pixels)), most_kept);
  if (h261::is_stream(bytes))
    return std::make_unique<SourceClip<H261Source>>(H261Source(h261::Decoder(bytes)), most_kept);
  throw Failure("neither a Y4M file nor an H.261 stream");
}

}  // namespace pqxvideo
