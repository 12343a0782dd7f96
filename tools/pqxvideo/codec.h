#pragma once

namespace pqx_codec {}

/// The tool speaks of what the codec library offers without its name.
namespace pqxvideo {
using namespace pqx_codec;
}
