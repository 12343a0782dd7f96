#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <utility>
#include <vector>

namespace pqxvideo {

/// A command and what it does once the command line has been read.
using Command = std::pair<CLI::App*, std::function<void()>>;

/// Takes only names that write_picture() knows the kind of.
CLI::Validator picture_to_write();

/// Adds the commands for moving pictures.
std::vector<Command> add_video_commands(CLI::App& app);

}  // namespace pqxvideo
