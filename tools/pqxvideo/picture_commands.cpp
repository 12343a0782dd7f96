#include <iostream>
#include <memory>

#include "commands.h"
#include "contact_sheet.h"
#include "files.h"
#include "naming.h"
#include "pan.h"
#include "picture/y4m.h"
#include "picture_file.h"
#include "player/clip_file.h"
#include "player/play.h"
#include "player/show.h"
#include "psnr.h"
#include "report.h"

namespace pqxvideo {
namespace {

struct Arguments {
  std::string in, other, size = "cif";
  Destination out;
  std::vector<std::string> decoded;
  int frames = 90, frame = 0, zoom = 1;
  bool once = false;
  int64_t max_pixels = default_max_pixels;
};

void print_psnr(const Arguments& a) {
  const auto limit = [&](std::span<const uint8_t> head) {
    return is_y4m(head) ? most_clip_bytes : picture_limit(head, a.max_pixels);
  };
  OwnedBytes first = read_file(a.in, limit), second = read_file(a.other, limit);
  const std::string both = a.in + ", " + a.other;
  if (is_y4m(first) && is_y4m(second)) {
    print(std::cout, naming(both, [&] {
            Y4mReader clip(first, a.max_pixels), other(second, a.max_pixels);
            return compare(clip, other);
          }));
    return;
  }
  const Image picture = decode_picture(a.in, std::move(first), a.max_pixels);
  const Image other = decode_picture(a.other, std::move(second), a.max_pixels);
  print(std::cout, naming(both, [&] { return compare(picture, other); }));
}

void write_sheet(const Arguments& a) {
  const Format::Kind format = a.out.choose(picture_formats);
  std::vector<std::string> inputs = a.decoded;
  inputs.push_back(a.in);
  check_differs(a.out.path, inputs);
  const Image first = read_picture(a.in, a.max_pixels);
  std::vector<Image> others;
  for (const std::string& path : a.decoded) others.push_back(read_picture(path, a.max_pixels));
  write_picture(a.out.path, naming(a.in, [&] { return contact_sheet(first, others); }), format);
}

void make_pan(const Arguments& a) {
  a.out.choose({Format::y4m});
  check_differs(a.out.path, std::span(&a.in, 1));
  const int width = a.size == "cif" ? 352 : 176, height = a.size == "cif" ? 288 : 144;
  const Image image = read_picture(a.in, a.max_pixels);
  const Pan pan = naming(a.in, [&] { return Pan(image, width, height); });
  naming(a.out.path, [&] {
    OutputFile file(a.out.path);
    Y4mWriter writer(file, width, height, FrameRate{}, studio_range);
    for (int k = 0; k < a.frames; ++k) writer.write(pan.frame(k));
    file.commit();
  });
}

void show_frame(const Arguments& a) {
  const Format::Kind format = a.out.choose(picture_formats);
  check_differs(a.out.path, std::span(&a.in, 1));
  const ClipFile file(a.in, a.max_pixels, 2);
  const Image shown = naming(a.in, [&] {
    while (file.clip().number() < a.frame)
      if (!file.clip().next()) throw Failure("its last picture has number " + std::to_string(file.clip().number()));
    return show(file.clip().picture(), a.zoom);
  });
  write_picture(a.out.path, shown, format);
}

}  // namespace

std::vector<Command> add_picture_commands(CLI::App& app) {
  const auto a = std::make_shared<Arguments>();

  CLI::App* const psnr = app.add_subcommand("psnr", "Prints how much two pictures or clips differ.");
  psnr->add_option("A", a->in, "PNG, PNM, JPEG or Y4M file")->required();
  psnr->add_option("B", a->other, "PNG, PNM, JPEG or Y4M file")->required();

  CLI::App* const sheet =
      app.add_subcommand("sheet", "Puts originals, decoded pictures and differences side by side.");
  add_destination(*sheet, "-o,--output", a->out, picture_formats);
  sheet->add_option("ORIGINAL", a->in, "PNG, PNM or JPEG file")->required();
  sheet->add_option("DECODED", a->decoded, "PNG, PNM or JPEG files of the same size")->required();

  CLI::App* const pan = app.add_subcommand("pan", "Makes a clip by moving a window over a picture.");
  pan->add_option("PICTURE", a->in, "PNG, PNM or JPEG file")->required();
  add_destination(*pan, "OUT", a->out, {Format::y4m});
  pan->add_option("--size", a->size, "Size of the clip")
      ->check(CLI::IsMember({"cif", "qcif"}))
      ->capture_default_str();
  pan->add_option("--frames", a->frames, "Number of pictures")->check(CLI::Range(1, 100000))->capture_default_str();

  CLI::App* const shown = app.add_subcommand("show", "Writes a picture of a clip as it is displayed.");
  shown->add_option("IN", a->in, "Y4M file or H.261 stream")->required();
  add_destination(*shown, "OUT", a->out, picture_formats);
  shown->add_option("--frame", a->frame, "Number of the picture, from 0")->check(CLI::NonNegativeNumber);

  CLI::App* const player =
      app.add_subcommand("play", "Plays a clip in a window. Space pauses, the arrow keys step, q quits.");
  player->add_option("IN", a->in, "Y4M file or H.261 stream")->required();
  player->add_flag("--once", a->once, "Close the window at the end instead of staying at the last picture");

  for (CLI::App* const command : {shown, player})
    command->add_option("--zoom", a->zoom, "Times its size")->check(CLI::Range(1, 3))->capture_default_str();
  for (CLI::App* const command : {psnr, sheet, pan, shown, player}) add_max_pixels(*command, a->max_pixels);
  return {{psnr, [a] { print_psnr(*a); }},
          {sheet, [a] { write_sheet(*a); }},
          {pan, [a] { make_pan(*a); }},
          {shown, [a] { show_frame(*a); }},
          {player, [a] { play(a->in, a->zoom, a->once, a->max_pixels); }}};
}

}  // namespace pqxvideo
