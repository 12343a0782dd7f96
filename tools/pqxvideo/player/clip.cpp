#include "player/clip.h"

#include <utility>
#include <vector>

#include "h261/decoder.h"

namespace pqxvideo {
namespace {

struct Y4mSource {
  Y4mReader reader;

  bool read(YuvPicture& picture, Rectangle& changed, int& frames) {
    if (!reader.next(picture)) return false;
    changed = {0, 0, picture.width(), picture.height()};
    frames = 1;
    return true;
  }
};

struct H261Source {
  h261::Decoder decoder;

  bool read(YuvPicture& picture, Rectangle& changed, int& frames) {
    if (!decoder.next()) return false;
    picture = decoder.picture();
    changed = decoder.changed();
    frames = decoder.frames_to_next();
    return true;
  }
};

/// Keeps the source as it was before every interval-th picture. When too many are kept, every second one goes.
template <class Source>
class SourceClip final : public Clip {
 public:
  SourceClip(Source source, FrameRate rate, size_t most_kept) : source_(std::move(source)), most_kept_(most_kept) {
    rate_ = rate;
    if (!next()) throw Failure("no picture in it");
    changed_ = whole();
  }

  bool next() override {
    keep();
    if (!source_.read(picture_, changed_, frames_)) return false;
    ++number_;
    return true;
  }

  void go_back(int number) override {
    const size_t nearest = size_t(number) / interval_;
    source_ = kept_[nearest];
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
    kept_.push_back(source_);
  }

  Source source_;
  std::vector<Source> kept_;
  size_t most_kept_, interval_ = 1;
};

}  // namespace

std::unique_ptr<Clip> open_clip(std::span<const uint8_t> bytes, size_t most_kept) {
  if (is_y4m(bytes)) {
    const Y4mReader reader(bytes);
    return std::make_unique<SourceClip<Y4mSource>>(Y4mSource{reader}, reader.rate(), most_kept);
  }
  if (h261::is_stream(bytes))
    return std::make_unique<SourceClip<H261Source>>(H261Source{h261::Decoder(bytes)}, FrameRate{}, most_kept);
  throw Failure("neither a Y4M file nor an H.261 stream");
}

}  // namespace pqxvideo
