#pragma once

#include <string>
#include <string_view>

namespace pqxvideo {

/// The text with control characters and bytes that are no UTF-8 written as \n, \t or \x1b, so that it stays in its line
/// and sends nothing to a terminal.
std::string printable(std::string_view text);

/// Tells the user something, in one line on standard error.
void report(std::string_view message);

}  // namespace pqxvideo
