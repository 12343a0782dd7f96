#include <signal.h>

#include <CLI/CLI.hpp>
#include <iostream>

#include "codec.h"
#include "commands.h"
#include "files.h"
#include "naming.h"
#include "picture/image.h"
#include "pqx_video.h"
#include "report.h"

namespace pqxvideo {
namespace {

/// What was printed has to arrive.
int finish(int status) {
  if (std::cout.flush()) return status;
  report("cannot write to standard output");
  return 1;
}

}  // namespace

void add_destination(CLI::App& command, const std::string& option, Destination& destination, const Formats& formats) {
  command.add_option(option, destination.path, "What is written: " + names_of(formats))->required();
  std::vector<std::string> names;
  for (const Format::Kind kind : formats) names.push_back(format_of(kind).name);
  command.add_option("--format", destination.format, "Write this, whatever the name ends in")
      ->check(CLI::IsMember(names));
}

void add_max_pixels(CLI::App& command, int64_t& max_pixels) {
  command.add_option("--max-pixels", max_pixels, "Refuse to read pictures of more")
      ->check(CLI::Range(int64_t{1}, most_pixels))
      ->capture_default_str();
}

int run(int argc, const char* const* argv) {
  open_standard_descriptors();
  // A pipe without a reader and a file that would grow too large are errors like others.
  for (const int signal : {SIGPIPE, SIGXFSZ}) ::signal(signal, SIG_IGN);
  CLI::App app("Codes still and moving pictures with libpqx_video.", "pqxvideo");
  app.require_subcommand(1);
  app.set_version_flag("--version", pqx_GetVersion());
  std::vector<Command> commands;
  for (const auto add : {add_jpeg_commands, add_stream_commands, add_mpeg_command, add_picture_commands})
    for (Command& command : add(app)) commands.push_back(std::move(command));

  try {
    app.parse(argc, argv);
    for (const auto& [command, action] : commands)
      if (command->parsed()) action();
  } catch (const CLI::Success& success) {
    return finish(app.exit(success));
  } catch (const CLI::ParseError& error) {
    report(error.what());
    return 2;
  } catch (const UsageFailure& failure) {
    report(failure.what());
    return 2;
  } catch (const std::exception& error) {
    report(error.what());
    return 1;
  }
  return finish(0);
}

}  // namespace pqxvideo
