#include <cerrno>
#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <vector>

#include "commands.h"
#include "files.h"
#include "mpeg/decoder.h"
#include "naming.h"
#include "picture/y4m.h"
#include "progress.h"

namespace pqxvideo {
namespace {

/// The pictures of a stream that is read while it is decoded.
class StreamDecoder {
 public:
  StreamDecoder(const std::string& path, mpeg::DecoderOptions options)
      : file_(std::fopen(path.c_str(), "rb"), std::fclose), decoder_(std::move(options)), piece_(size_t{1} << 16) {
    check(file_ != nullptr);
  }

  const mpeg::Frame* next() {
    for (;;) {
      if (const mpeg::Frame* const frame = decoder_.next()) return frame;
      if (ended_) return nullptr;
      const size_t n = std::fread(piece_.data(), 1, piece_.size(), file_.get());
      check(!std::ferror(file_.get()));
      bytes_ += n;
      ended_ = n == 0;
      if (ended_)
        decoder_.finish();
      else
        decoder_.push(std::span(piece_).first(n));
    }
  }

  const mpeg::Sequence& sequence() const { return decoder_.sequence(); }
  size_t bytes() const { return bytes_; }

 private:
  static void check(bool success) {
    if (!success) throw Failure(std::string("cannot read: ") + std::strerror(errno));
  }

  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  mpeg::Decoder decoder_;
  std::vector<uint8_t> piece_;
  size_t bytes_ = 0;
  bool ended_ = false;
};

Y4mFormat header_of(const mpeg::Sequence& s, const mpeg::Frame& first) {
  Y4mFormat format{.width = s.width, .height = s.height, .rate = s.rate, .aspect = s.sample_aspect()};
  // Fields of a progressive frame belong together; of others the first to be shown is told.
  format.interlacing = s.progressive || first.progressive ? "p" : first.top_field_first ? "t" : "b";
  format.chroma = s.chroma_422 ? "422" : s.mpeg2 ? "420mpeg2" : "420jpeg";
  format.more = studio_range;
  return format;
}

void decode_mpeg(const std::string& in, Destination destination, bool conceal, int64_t max_pixels) {
  if (destination.path == "-") destination.path = "/dev/stdout";
  destination.choose({Format::y4m});
  const std::string source = in == "-" ? "/dev/stdin" : in, &out = destination.path;
  check_differs(out, std::span(&source, 1));
  Progress progress("decoding");
  const auto report = [&](const std::string& what) { progress.interrupt(in + ": " + what); };
  mpeg::DecoderOptions options{.max_pixels = max_pixels, .conceal = {}, .note = report};
  if (conceal) options.conceal = report;
  StreamDecoder decoder = naming(in, [&] { return StreamDecoder(source, options); });
  const auto next = [&] {
    const mpeg::Frame* frame = nullptr;
    progress.measure([&] { frame = naming(in, [&] { return decoder.next(); }); });
    return frame;
  };
  const mpeg::Frame* frame = next();
  if (!frame) throw Failure(in + ": no picture in it");
  const mpeg::Sequence& s = decoder.sequence();
  naming(out, [&] {
    OutputFile file(out);
    Y4mWriter writer(file, header_of(s, *frame));
    for (; frame; frame = next()) {
      PlaneView planes[3];
      for (size_t k = 0; k < 3; ++k) {
        const mpeg::Frame::Plane& plane = frame->planes[k];
        planes[k] = {plane.row(0), k ? (s.width + 1) / 2 : s.width,
                     k && !s.chroma_422 ? (s.height + 1) / 2 : s.height, plane.columns};
      }
      writer.write(planes);
      progress.picture();
    }
    file.commit();
  });
  if (!is_standard_output(out)) progress.finish(decoder.bytes());  // it holds the clip
}

}  // namespace

std::vector<Command> add_mpeg_command(CLI::App& app) {
  struct Arguments {
    std::string in;
    Destination out;
    bool conceal = false;
    int64_t max_pixels = mpeg::DecoderOptions{}.max_pixels;
  };
  const auto a = std::make_shared<Arguments>();
  CLI::App* const mpeg = app.add_subcommand("mpeg", "Decodes MPEG-1 and MPEG-2 video.")->require_subcommand(1);
  CLI::App* const decoder =
      mpeg->add_subcommand("decode", "Decodes a video stream or the video of a program stream.");
  decoder->add_option("IN", a->in, "MPEG-1 or MPEG-2 stream; - is standard input")->required();
  add_destination(*decoder, "OUT", a->out, {Format::y4m});
  decoder->add_flag("--conceal", a->conceal, "Go on behind damage, and report it");
  decoder->add_option("--max-pixels", a->max_pixels, "Refuse larger pictures")
      ->check(CLI::Range(int64_t{1}, std::numeric_limits<int64_t>::max()))
      ->capture_default_str();
  return {{decoder, [a] { decode_mpeg(a->in, a->out, a->conceal, a->max_pixels); }}};
}

}  // namespace pqxvideo
