#include <algorithm>
#include <chrono>
#include <iomanip>
#include <iostream>
#include <limits>
#include <map>
#include <memory>

#include "commands.h"
#include "files.h"
#include "jpeg/decoder.h"
#include "jpeg/encoder.h"
#include "naming.h"
#include "picture_file.h"

namespace pqxvideo {
namespace {

struct Arguments {
  std::string in;
  Destination out;
  jpeg::EncoderOptions options;
  std::string sampling = "420", upsampling = "bl";
  bool time = false;
  int64_t max_pixels = default_max_pixels;
};

const std::map<std::string, jpeg::Sampling> samplings{
    {"420", jpeg::Sampling::s420}, {"422", jpeg::Sampling::s422}, {"444", jpeg::Sampling::s444}};
const std::map<std::string, jpeg::Upsampling> upsamplings{{"bl", jpeg::Upsampling::bilinear},
                                                          {"nn", jpeg::Upsampling::nearest}};

/// Runs the action; with --time repeats it for half a second and prints the best rate.
template <class Action>
auto perform(bool timed, Action action, auto picture_of) {
  auto result = action();
  if (!timed) return result;
  using Clock = std::chrono::steady_clock;
  double best = std::numeric_limits<double>::infinity();
  const auto end = Clock::now() + std::chrono::milliseconds(500);
  do {
    const auto start = Clock::now();
    result = action();
    best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
  } while (Clock::now() < end);
  const Image& picture = picture_of(result);
  std::cout << picture.width() << " x " << picture.height() << " pixels, " << std::fixed << std::setprecision(1)
            << picture.width() * (picture.height() / best) / 1e6 << " MP/s\n";
  return result;
}

void encode_jpeg(const Arguments& a) {
  a.out.choose({Format::jpeg});
  check_differs(a.out.path, std::span(&a.in, 1));
  jpeg::EncoderOptions options = a.options;
  options.sampling = samplings.at(a.sampling);
  const Image image = read_picture(a.in, a.max_pixels);
  naming(a.out.path, [&] {
    const auto bytes = perform(
        a.time, [&] { return jpeg::encode(image, options); }, [&](const auto&) -> auto& { return image; });
    OutputFile file(a.out.path);
    file.write(bytes);
    file.commit();
  });
}

void decode_jpeg(const Arguments& a) {
  const Format::Kind format = a.out.choose(picture_formats);
  check_differs(a.out.path, std::span(&a.in, 1));
  const OwnedBytes bytes = read_file(a.in, [&](std::span<const uint8_t> head) {
    if (!jpeg::is_file(head)) throw Failure("not a JPEG file");
    return most_picture_bytes(a.max_pixels);
  });
  const Image image = naming(a.in, [&] {
    return perform(
        a.time, [&] { return jpeg::decode(bytes, upsamplings.at(a.upsampling), a.max_pixels); },
        [](const Image& decoded) -> auto& { return decoded; });
  });
  report_orientation(a.in, jpeg::orientation(bytes));
  write_picture(a.out.path, image, format);
}

}  // namespace

std::vector<Command> add_jpeg_commands(CLI::App& app) {
  const auto a = std::make_shared<Arguments>();
  CLI::App* const jpeg = app.add_subcommand("jpeg", "Encodes and decodes JPEG files.")->require_subcommand(1);

  CLI::App* const encoder = jpeg->add_subcommand("encode", "Encodes a picture as baseline JPEG.");
  encoder->add_option("IN", a->in, "PNG or PNM file; alpha is dropped")->required();
  add_destination(*encoder, "OUT", a->out, {Format::jpeg});
  encoder->add_option("--quality", a->options.quality, "Scale of the quantization, 1..100")
      ->check(CLI::Range(1, 100))
      ->capture_default_str();
  encoder->add_option("--sampling", a->sampling, "Resolution of the chroma")
      ->check(CLI::IsMember(samplings))
      ->capture_default_str();
  encoder->add_flag("--optimize", a->options.optimize, "Make the Huffman tables for this picture");

  CLI::App* const decoder = jpeg->add_subcommand("decode", "Decodes a baseline JPEG file.");
  decoder->add_option("IN", a->in, "JPEG file")->required();
  add_destination(*decoder, "OUT", a->out, picture_formats);
  decoder->add_option("--upsampling", a->upsampling, "Chroma bilinear (bl) or by nearest neighbour (nn)")
      ->check(CLI::IsMember(upsamplings))
      ->capture_default_str();

  for (CLI::App* const command : {encoder, decoder}) {
    command->add_flag("--time", a->time, "Repeat for half a second and print the best speed");
    add_max_pixels(*command, a->max_pixels);
  }
  return {{encoder, [a] { encode_jpeg(*a); }}, {decoder, [a] { decode_jpeg(*a); }}};
}

}  // namespace pqxvideo
