#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace pqx_codec {

/// Where a writer's bytes go, in order.
class ByteSink {
 public:
  virtual ~ByteSink() = default;

  /// Takes all the bytes or throws.
  virtual void write(std::span<const uint8_t> bytes) = 0;

  void write(std::string_view text) { write({reinterpret_cast<const uint8_t*>(text.data()), text.size()}); }
};

}  // namespace pqx_codec
