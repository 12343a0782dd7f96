#include "formats.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string_view>

#include "files.h"
#include "naming.h"

namespace pqxvideo {
namespace {

const Format all[] = {{Format::png, "png", {".png"}},
                      {Format::pnm, "pnm", {".ppm", ".pgm", ".pnm"}},
                      {Format::jpeg, "jpeg", {".jpg", ".jpeg"}},
                      {Format::h261, "h261", {".h261"}},
                      {Format::y4m, "y4m", {".y4m"}}};

bool ends_with(std::string_view path, std::string_view ending) {
  return path.size() > ending.size() && std::equal(ending.rbegin(), ending.rend(), path.rbegin(),
                                                   [](char a, char b) { return a == std::tolower(uint8_t(b)); });
}

/// "a, b or c"
std::string list(const std::vector<std::string>& words, const char* conjunction) {
  std::string text;
  for (size_t i = 0; i < words.size(); ++i)
    text += (i == 0 ? "" : i + 1 < words.size() ? ", " : conjunction) + words[i];
  return text;
}

}  // namespace

const Format& format_of(Format::Kind kind) { return all[kind]; }

std::string names_of(const Formats& formats) {
  std::vector<std::string> names;
  for (const Format::Kind kind : formats) names.push_back(format_of(kind).name);
  return list(names, " or ");
}

Format::Kind Destination::choose(const Formats& formats) const {
  std::vector<std::string> endings;
  for (const Format::Kind kind : formats) {
    if (format == format_of(kind).name) return kind;
    for (const char* const ending : format_of(kind).endings) {
      if (format.empty() && ends_with(path, ending)) return kind;
      endings.push_back(ending);
    }
  }
  if (formats.size() == 1 && is_stream(path)) return formats[0];
  throw UsageFailure(path + ": the name must end in " + list(endings, " or ") +
                     ", or --format must say what to write");
}

}  // namespace pqxvideo
