#include <signal.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <iomanip>
#include <iostream>
#include <limits>
#include <map>

#include "contact_sheet.h"
#include "files.h"
#include "jpeg/decoder.h"
#include "jpeg/encoder.h"
#include "naming.h"
#include "picture_file.h"
#include "pqx_video.h"
#include "psnr.h"
#include "video_commands.h"

namespace {

using namespace pqxvideo;

/// Does something; if timed, for half a second, and prints the best speed.
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

void encode(const std::string& in, const std::string& out, const jpeg::EncoderOptions& options, bool time) {
  const Image image = read_picture(in);
  naming(out, [&] {
    const auto bytes = perform(
        time, [&] { return jpeg::encode(image, options); }, [&](const auto&) -> auto& { return image; });
    OutputFile file(out);
    file.write(bytes);
    file.commit();
  });
}

void decode(const std::string& in, const std::string& out, jpeg::Upsampling upsampling, bool time) {
  const Image image = naming(in, [&] {
    const OwnedBytes bytes = read_file(in);
    if (!jpeg::is_file(bytes)) throw Failure("not a JPEG file");
    return perform(
        time, [&] { return jpeg::decode(bytes, upsampling); }, [](const Image& decoded) -> auto& { return decoded; });
  });
  write_picture(out, image);
}

void print_psnr(const std::string& a, const std::string& b) {
  if (const OwnedBytes first = read_file(a), second = read_file(b); is_y4m(first) && is_y4m(second)) {
    print(std::cout, naming(a + ", " + b, [&] {
            Y4mReader clip(first), other(second);
            return compare(clip, other);
          }));
    return;
  }
  const Image first = read_picture(a), second = read_picture(b);
  print(std::cout, naming(a + ", " + b, [&] { return compare(first, second); }));
}

void write_sheet(const std::string& out, const std::string& original, const std::vector<std::string>& decoded) {
  const Image first = read_picture(original);
  std::vector<Image> others;
  for (const std::string& path : decoded) others.push_back(read_picture(path));
  write_picture(out, naming(original, [&] { return contact_sheet(first, others); }));
}

/// What was printed has to arrive.
int finish(int status) {
  if (std::cout.flush()) return status;
  std::cerr << "pqxvideo: cannot write to standard output\n";
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  // A pipe without a reader and a file that would grow too large are errors like others.
  for (const int signal : {SIGPIPE, SIGXFSZ}) ::signal(signal, SIG_IGN);
  CLI::App app("Codes still and moving pictures with libpqx_video.", "pqxvideo");
  app.require_subcommand(1);
  app.set_version_flag("--version", pqx_GetVersion());
  std::string in, out;
  std::vector<std::string> decoded;
  jpeg::EncoderOptions options;
  std::string sampling = "420", upsampling = "bl";
  bool time = false;

  CLI::App* const jpeg = app.add_subcommand("jpeg", "Encodes and decodes JPEG files.")->require_subcommand(1);
  CLI::App* const encoder = jpeg->add_subcommand("encode", "Encodes a picture as baseline JPEG.");
  encoder->add_option("IN", in, "PNG or PNM file; alpha is dropped")->required();
  encoder->add_option("OUT", out, "JPEG file")->required();
  encoder->add_option("--quality", options.quality, "Scale of the quantization, 1..100")
      ->check(CLI::Range(1, 100))
      ->capture_default_str();
  const std::map<std::string, jpeg::Sampling> samplings{
      {"420", jpeg::Sampling::s420}, {"422", jpeg::Sampling::s422}, {"444", jpeg::Sampling::s444}};
  encoder->add_option("--sampling", sampling, "Resolution of the chroma")
      ->check(CLI::IsMember(samplings))
      ->capture_default_str();
  encoder->add_flag("--optimize", options.optimize, "Make the Huffman tables for this picture");

  CLI::App* const decoder = jpeg->add_subcommand("decode", "Decodes a baseline JPEG file.");
  decoder->add_option("IN", in, "JPEG file")->required();
  decoder->add_option("OUT", out, "PNG or PNM file, by the ending of its name")
      ->required()
      ->check(picture_to_write());
  const std::map<std::string, jpeg::Upsampling> upsamplings{{"bl", jpeg::Upsampling::bilinear},
                                                            {"nn", jpeg::Upsampling::nearest}};
  decoder->add_option("--upsampling", upsampling, "Chroma bilinear (bl) or by nearest neighbour (nn)")
      ->check(CLI::IsMember(upsamplings))
      ->capture_default_str();
  for (CLI::App* const command : {encoder, decoder})
    command->add_flag("--time", time, "Repeat for half a second and print the best speed");

  CLI::App* const psnr = app.add_subcommand("psnr", "Prints how much two pictures or clips differ.");
  psnr->add_option("A", in, "PNG, PNM, JPEG or Y4M file")->required();
  psnr->add_option("B", out, "PNG, PNM, JPEG or Y4M file")->required();

  CLI::App* const sheet =
      app.add_subcommand("sheet", "Puts originals, decoded pictures and differences side by side.");
  sheet->add_option("OUT", out, "PNG or PNM file, by the ending of its name")->required()->check(picture_to_write());
  sheet->add_option("ORIGINAL", in, "PNG, PNM or JPEG file")->required();
  sheet->add_option("DECODED", decoded, "PNG, PNM or JPEG files of the same size")->required();

  const std::vector<Command> video_commands = add_video_commands(app);

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& success) {
    return finish(app.exit(success));
  } catch (const CLI::ParseError& error) {
    std::cerr << "pqxvideo: " << error.what() << '\n';
    return 2;
  }
  try {
    options.sampling = samplings.at(sampling);
    if (encoder->parsed()) encode(in, out, options, time);
    if (decoder->parsed()) decode(in, out, upsamplings.at(upsampling), time);
    if (psnr->parsed()) print_psnr(in, out);
    if (sheet->parsed()) write_sheet(out, in, decoded);
    for (const auto& [command, action] : video_commands)
      if (command->parsed()) action();
  } catch (const std::exception& error) {
    std::cerr << "pqxvideo: " << error.what() << '\n';
    return 1;
  }
  return finish(0);
}
