#pragma once

#include <initializer_list>
#include <string>
#include <vector>

namespace pqxvideo {

/// A kind of file that can be written, by the name that --format has for it, and the endings of names that ask for it.
struct Format {
  enum Kind { png, pnm, jpeg, h261, y4m } kind;
  const char* name;
  std::initializer_list<const char*> endings;
};

using Formats = std::vector<Format::Kind>;
inline const Formats picture_formats{Format::png, Format::pnm};

const Format& format_of(Format::Kind kind);
/// "png, pnm"
std::string names_of(const Formats& formats);

/// Where a command writes and, unless the ending of the name shall decide, what.
struct Destination {
  std::string path, format;

  /// Which of the formats is written. Throws UsageFailure for a name of another ending: it may be that of an original.
  /// Devices, pipes and standard output need none where there is but one format.
  Format::Kind choose(const Formats& formats) const;
};

}  // namespace pqxvideo
