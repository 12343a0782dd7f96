#pragma once

#include <stdexcept>

namespace pqx_codec {

/// Why something cannot be done, as one line for the user.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace pqx_codec
