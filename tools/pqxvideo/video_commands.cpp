#include "video_commands.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <span>
#include <utility>

#include "files.h"
#include "h261/decoder.h"
#include "h261/encoder.h"
#include "h263/decoder.h"
#include "mpeg_command.h"
#include "naming.h"
#include "pan.h"
#include "picture/y4m.h"
#include "picture_file.h"
#include "player/clip.h"
#include "player/play.h"
#include "player/show.h"
#include "progress.h"

namespace pqxvideo {
namespace {

void encode(const std::string& in, const std::string& out, const h261::EncoderOptions& options) {
  const OwnedBytes bytes = read_file(in);
  auto reader = naming(in, [&] { return Y4mReader(bytes); });
  auto encoder = naming(in, [&] { return h261::Encoder(reader.width(), reader.height(), options); });
  Progress progress("encoding");
  size_t total = 0;
  YuvPicture picture;
  const auto next = [&] { return naming(in, [&] { return reader.next(picture); }); };
  bool more = next();
  if (!more) throw Failure(in + ": no picture in it");
  naming(out, [&] {
    OutputFile file(out);
    for (; more; more = next()) {
      std::vector<uint8_t> coded;
      progress.measure([&] { coded = encoder.encode(picture); });
      file.write(coded);
      total += coded.size();
      progress.picture();
    }
    file.commit();
  });
  progress.finish(total, out);
}

/// An H.263 stream, whose bytes go to the decoder as it needs them.
class H263Clip {
 public:
  static constexpr const char* kind = "H.263";

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

 private:
  std::span<const uint8_t> rest_;
  h263::Decoder decoder_;
  bool finished_ = false;
};

struct H261Clip : h261::Decoder {
  static constexpr const char* kind = "H.261";

  using h261::Decoder::Decoder;
  FrameRate rate() const { return {}; }
};

template <class Clip>
void decode(const std::string& in, const std::string& out, bool conceal) {
  const OwnedBytes bytes = read_file(in);
  Progress progress("decoding");
  const auto report = [&](const std::string& damage) {
    progress.clear();
    std::cerr << "pqxvideo: " << in << ": " << damage << '\n';
  };
  auto clip = naming(in, [&] { return conceal ? Clip(bytes, report) : Clip(bytes, {}); });
  const auto next = [&] {
    bool more = false;
    progress.measure([&] { more = naming(in, [&] { return clip.next(); }); });
    return more;
  };
  bool more = next();
  if (!more) throw Failure(in + ": damaged " + Clip::kind + " stream: no picture in it");
  naming(out, [&] {
    OutputFile file(out);
    Y4mWriter writer(file, clip.picture().width(), clip.picture().height(), clip.rate(), studio_range);
    for (; more; more = next()) {
      writer.write(clip.picture());
      progress.picture();
    }
    file.commit();
  });
  progress.finish(std::span<const uint8_t>(bytes).size(), out);
}

void make_pan(const std::string& in, const std::string& out, int width, int height, int frames) {
  const Image image = read_picture(in);
  const Pan pan = naming(in, [&] { return Pan(image, width, height); });
  naming(out, [&] {
    OutputFile file(out);
    Y4mWriter writer(file, width, height, FrameRate{}, studio_range);
    for (int k = 0; k < frames; ++k) writer.write(pan.frame(k));
    file.commit();
  });
}

void show_frame(const std::string& in, const std::string& out, int number, int zoom) {
  const OwnedBytes bytes = read_file(in);
  write_picture(out, naming(in, [&] {
                  const auto clip = open_clip(bytes, 2);
                  while (clip->number() < number)
                    if (!clip->next()) throw Failure("its last picture has number " + std::to_string(clip->number()));
                  return show(clip->picture(), zoom);
                }));
}

}  // namespace

CLI::Validator picture_to_write() {
  return {[](const std::string& path) {
            return is_writable_kind(path) ? "" : path + ": the name must end in .png, .ppm, .pgm or .pnm";
          },
          "{PNG,PNM}"};
}

std::vector<Command> add_video_commands(CLI::App& app) {
  struct Arguments {
    std::string in, out, size = "cif";
    h261::EncoderOptions options;
    bool no_loop_filter = false, conceal = false, once = false;
    int frames = 90, frame = 0, zoom = 1;
  };
  const auto a = std::make_shared<Arguments>();

  CLI::App* const h261 = app.add_subcommand("h261", "Encodes and decodes H.261 streams.")->require_subcommand(1);
  CLI::App* const encoder = h261->add_subcommand("encode", "Encodes a Y4M file of CIF or QCIF pictures.");
  encoder->add_option("IN", a->in, "Y4M file, 4:2:0, 8 bit")->required();
  encoder->add_option("OUT", a->out, "H.261 stream")->required();
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
  decoder->add_option("OUT", a->out, "Y4M file")->required();
  decoder->add_flag("--conceal", a->conceal, "Go on behind damaged groups of blocks, and report them");

  CLI::App* const h263 = app.add_subcommand("h263", "Decodes H.263 streams.")->require_subcommand(1);
  CLI::App* const h263_decoder = h263->add_subcommand("decode", "Decodes an H.263 stream.");
  h263_decoder->add_option("IN", a->in, "H.263 stream")->required();
  h263_decoder->add_option("OUT", a->out, "Y4M file")->required();
  h263_decoder->add_flag("--conceal", a->conceal, "Go on behind damage, and report it");

  CLI::App* const pan = app.add_subcommand("pan", "Makes a clip by moving a window over a picture.");
  pan->add_option("PICTURE", a->in, "PNG, PNM or JPEG file")->required();
  pan->add_option("OUT", a->out, "Y4M file")->required();
  pan->add_option("--size", a->size, "Size of the clip")
      ->check(CLI::IsMember({"cif", "qcif"}))
      ->capture_default_str();
  pan->add_option("--frames", a->frames, "Number of pictures")->check(CLI::Range(1, 100000))->capture_default_str();

  CLI::App* const shown = app.add_subcommand("show", "Writes a picture of a clip as it is displayed.");
  shown->add_option("IN", a->in, "Y4M file or H.261 stream")->required();
  shown->add_option("OUT", a->out, "PNG or PNM file")->required()->check(picture_to_write());
  shown->add_option("--frame", a->frame, "Number of the picture, from 0")->check(CLI::NonNegativeNumber);
  shown->add_option("--zoom", a->zoom, "Times its size")->check(CLI::Range(1, 3))->capture_default_str();

  CLI::App* const player =
      app.add_subcommand("play", "Plays a clip in a window. Space pauses, the arrow keys step, q quits.");
  player->add_option("IN", a->in, "Y4M file or H.261 stream")->required();
  player->add_option("--zoom", a->zoom, "Times its size")->check(CLI::Range(1, 3))->capture_default_str();
  player->add_flag("--once", a->once, "Close the window at the end instead of staying at the last picture");

  return {{encoder,
           [a] {
             a->options.loop_filter = !a->no_loop_filter;
             encode(a->in, a->out, a->options);
           }},
          {decoder, [a] { decode<H261Clip>(a->in, a->out, a->conceal); }},
          {h263_decoder, [a] { decode<H263Clip>(a->in, a->out, a->conceal); }},
          {shown, [a] { show_frame(a->in, a->out, a->frame, a->zoom); }},
          {player, [a] { play(a->in, a->zoom, a->once); }},
          {pan,
           [a] {
             const bool cif = a->size == "cif";
             make_pan(a->in, a->out, cif ? 352 : 176, cif ? 288 : 144, a->frames);
           }},
          add_mpeg_command(app)};
}

}  // namespace pqxvideo
