/// MPEG streams of random but valid syntax, for what no encoder at hand makes.
#pragma once

#include "streams.h"

namespace mpeg_test {

struct WrittenKind {
  bool mpeg2, progressive, chroma_422;
  int width, height;
};

/// A stream of a few pictures, whose blocks have a DC alone, of values that every inverse transform rounds alike.
/// @param used  counts by name what the stream has in it
Bytes write_stream(const WrittenKind& kind, unsigned seed, std::map<std::string, int>& used);

}  // namespace mpeg_test
