#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "formats.h"

namespace pqxvideo {

/// Runs the program. The result is its exit status.
int run(int argc, const char* const* argv);

/// A command and what it does once the command line has been read.
using Command = std::pair<CLI::App*, std::function<void()>>;

/// `jpeg encode` and `jpeg decode`.
std::vector<Command> add_jpeg_commands(CLI::App& app);
/// `h261 encode`, `h261 decode` and `h263 decode`.
std::vector<Command> add_stream_commands(CLI::App& app);
/// `mpeg decode`.
std::vector<Command> add_mpeg_command(CLI::App& app);
/// Those that compare, make and show pictures and clips.
std::vector<Command> add_picture_commands(CLI::App& app);

/// Adds what a command writes, by position ("OUT") or behind an option ("-o"), and what it may be.
void add_destination(CLI::App& command, const std::string& option, Destination& destination, const Formats& formats);
/// Adds the bound of pictures that are read.
void add_max_pixels(CLI::App& command, int64_t& max_pixels);

}  // namespace pqxvideo
