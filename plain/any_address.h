#pragma once

#include <stdint.h>

namespace plain {

/// A 16-bit sample in a place of any alignment.
struct [[gnu::packed, gnu::may_alias]] AnyAddress16 {
  int16_t value;
  AnyAddress16() = default;
  explicit AnyAddress16(int x) : value(int16_t(x)) {}
  operator int() const { return value; }
};

inline AnyAddress16* any_address(int16_t* p) { return reinterpret_cast<AnyAddress16*>(p); }
inline const AnyAddress16* any_address(const int16_t* p) { return reinterpret_cast<const AnyAddress16*>(p); }

}  // namespace plain
