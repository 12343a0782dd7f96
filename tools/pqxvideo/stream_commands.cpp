#include <algorithm>
#include <memory>
#include <span>
#include <utility>

#include "commands.h"
#include "files.h"
#include "h261/decoder.h"
#include "h261/encoder.h"
#include "h263/decoder.h"
#include "naming.h"
#include "picture/y4m.h"
#include "player/clip_file.h"
#include "progress.h"

namespace pqxvideo {
namespace {

struct Arguments {
  std::string in;
  Destination out;
  h261::EncoderOptions options;
  bool no_loop_filter = false, conceal = false;
};

/// What a stream cannot say of its pictures.
void report_losses(const std::string& path, const Y4mReader& clip) {
  if (clip.rate() != FrameRate{})
    report(path + ": " + std::to_string(clip.rate().numerator) + ':' + std::to_string(clip.rate().denominator) +
           " pictures a second become the 30000:1001 of H.261");
  if (clip.is_full_range()) report(path + ": full-range samples are coded as if they were of studio range");
}

void encode_h261(const Arguments& a) {
  a.out.choose({Format::h261});
  check_differs(a.out.path, std::span(&a.in, 1));
  h261::EncoderOptions options = a.options;
  options.loop_filter = !a.no_loop_filter;
  const OwnedBytes bytes = read_file(a.in, [](std::span<const uint8_t> head) {
    if (!is_y4m(head)) throw Failure("not a Y4M file");
    return most_clip_bytes;
  });
  auto reader = naming(a.in, [&] { return Y4mReader(bytes); });
  auto encoder = naming(a.in, [&] { return h261::Encoder(reader.width(), reader.height(), options); });
  Progress progress("encoding");
  size_t total = 0;
  YuvPicture picture;
  const auto next = [&] { return naming(a.in, [&] { return reader.next(picture); }); };
  bool more = next();
  if (!more) throw Failure(a.in + ": no picture in it");
  report_losses(a.in, reader);
  naming(a.out.path, [&] {
    OutputFile file(a.out.path);
    for (; more; more = next()) {
      std::vector<uint8_t> coded;
      progress.measure([&] { coded = encoder.encode(picture); });
      file.write(coded);
      total += coded.size();
      progress.picture();
    }
    file.commit();
  });
  if (!is_standard_output(a.out.path)) progress.finish(total);  // it holds the stream
}

/// An H.263 stream, whose bytes go to the decoder as it needs them.
class H263Clip {
 public:
  static constexpr const char* kind = "H.263";
  static constexpr auto is_stream = h263::is_stream;

  H263Clip(std::span<const uint8_t> bytes, h263::Decoder::Report report)
      : rest_(bytes), decoder_(std::move(report)) {}

  bool next() {
    constexpr size_t most = 65536;
    while (!decoder_.next()) {
      if (finished_) return false;
      const auto part = rest_.first(std::min(most, rest_.size()));
      rest_ = rest_.subspan(part.size());
      decoder_.push(part);
      if (rest_.empty()) decoder_.finish();
      finished_ = rest_.empty();
    }
    return true;
  }
  const YuvPicture& picture() const { return decoder_.picture(); }
  FrameRate rate() const { return decoder_.rate(); }
  FrameRate aspect() const { return decoder_.aspect(); }

 private:
  std::span<const uint8_t> rest_;
  h263::Decoder decoder_;
  bool finished_ = false;
};

struct H261Clip : h261::Decoder {
  static constexpr const char* kind = "H.261";
  static constexpr auto is_stream = h261::is_stream;

  using h261::Decoder::Decoder;
  FrameRate rate() const { return {}; }
  FrameRate aspect() const { return {12, 11}; }
};

template <class Clip>
void decode_stream(const Arguments& a) {
  a.out.choose({Format::y4m});
  check_differs(a.out.path, std::span(&a.in, 1));
  const OwnedBytes bytes = read_file(a.in, [](std::span<const uint8_t> head) {
    if (!Clip::is_stream(head)) throw Failure(std::string("not an ") + Clip::kind + " stream");
    return most_clip_bytes;
  });
  Progress progress("decoding");
  const auto report_damage = [&](const std::string& damage) { progress.interrupt(a.in + ": " + damage); };
  auto clip = naming(a.in, [&] { return a.conceal ? Clip(bytes, report_damage) : Clip(bytes, {}); });
  const auto next = [&] {
    bool more = false;
    progress.measure([&] { more = naming(a.in, [&] { return clip.next(); }); });
    return more;
  };
  bool more = next();
  if (!more) throw Failure(a.in + ": damaged " + Clip::kind + " stream: no picture in it");
  naming(a.out.path, [&] {
    OutputFile file(a.out.path);
    Y4mWriter writer(file, {.width = clip.picture().width(),
                            .height = clip.picture().height(),
                            .rate = clip.rate(),
                            .aspect = clip.aspect(),
                            .more = studio_range});
    for (; more; more = next()) {
      writer.write(clip.picture());
      progress.picture();
    }
    file.commit();
  });
  if (!is_standard_output(a.out.path)) progress.finish(bytes.size);  // it holds the clip
}

}  // namespace

std::vector<Command> add_stream_commands(CLI::App& app) {
  const auto a = std::make_shared<Arguments>();
  CLI::App* const h261 = app.add_subcommand("h261", "Encodes and decodes H.261 streams.")->require_subcommand(1);

  CLI::App* const encoder = h261->add_subcommand("encode", "Encodes a Y4M file of CIF or QCIF pictures.");
  encoder->add_option("IN", a->in, "Y4M file, 4:2:0, 8 bit")->required();
  add_destination(*encoder, "OUT", a->out, {Format::h261});
  encoder
      ->add_option("--quant", a->options.quant, "Quantizer; coarser where the standard allows a picture no more bits")
      ->check(CLI::Range(1, h261::max_quant))
      ->capture_default_str();
  encoder->add_flag("--no-loop-filter", a->no_loop_filter, "Never filter a prediction");
  encoder->add_option("--search", a->options.search, "Farthest motion vector, in samples")
      ->check(CLI::Range(0, 15))
      ->capture_default_str();

  CLI::App* const decoder = h261->add_subcommand("decode", "Decodes an H.261 stream.");
  decoder->add_option("IN", a->in, "H.261 stream")->required();
  add_destination(*decoder, "OUT", a->out, {Format::y4m});
  decoder->add_flag("--conceal", a->conceal, "Go on behind damaged groups of blocks, and report them");

  CLI::App* const h263 = app.add_subcommand("h263", "Decodes H.263 streams.")->require_subcommand(1);
  CLI::App* const h263_decoder = h263->add_subcommand("decode", "Decodes an H.263 stream.");
  h263_decoder->add_option("IN", a->in, "H.263 stream")->required();
  add_destination(*h263_decoder, "OUT", a->out, {Format::y4m});
  h263_decoder->add_flag("--conceal", a->conceal, "Go on behind damage, and report it");

  return {{encoder, [a] { encode_h261(*a); }},
          {decoder, [a] { decode_stream<H261Clip>(*a); }},
          {h263_decoder, [a] { decode_stream<H263Clip>(*a); }}};
}

}  // namespace pqxvideo
