#include "report.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iostream>

namespace pqxvideo {
namespace {

/// How many bytes at the beginning of a text make a character that can be shown; 0 if none do.
size_t shown_bytes(std::string_view text) {
  const auto byte = [&](size_t i) { return i < text.size() ? uint8_t(text[i]) : 0; };
  if (byte(0) < 0x80) return byte(0) >= ' ' && byte(0) != 0x7F;
  const size_t length = byte(0) >= 0xF0 ? 4 : byte(0) >= 0xE0 ? 3 : 2;
  if (byte(0) < 0xC2 || byte(0) > 0xF4) return 0;
  for (size_t i = 1; i < length; ++i)
    if (byte(i) >> 6 != 0b10) return 0;
  return byte(0) == 0xC2 && byte(1) < 0xA0 ? 0 : length;  // more control characters
}

}  // namespace

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const size_t shown = shown_bytes(text);
    char escaped[8];
    if (shown == 0) std::snprintf(escaped, sizeof escaped, "\\x%02x", uint8_t(text[0]));
    result += shown             ? text.substr(0, shown)
              : text[0] == '\n' ? std::string_view("\\n")
              : text[0] == '\t' ? std::string_view("\\t")
                                : std::string_view(escaped);
    text.remove_prefix(std::max<size_t>(shown, 1));
  }
  return result;
}

void report(std::string_view message) { std::cerr << "pqxvideo: " + printable(message) + '\n' << std::flush; }

}  // namespace pqxvideo
