#pragma once

#include <stdint.h>

namespace plain {

/// A T in a place of any alignment.
template <class T>
struct [[gnu::packed, gnu::may_alias]] AnyAddress {
  T value;
  AnyAddress() = default;
  AnyAddress(const AnyAddress&) = default;
  AnyAddress& operator=(const AnyAddress& other) {
    value = other.value;  // the compiler vectorizes this but no copy of the whole
    return *this;
  }
  explicit AnyAddress(auto x) : value(T(x)) {}
  operator T() const { return value; }
};

using AnyAddress16 = AnyAddress<int16_t>;

template <class T>
AnyAddress<T>* any_address(T* p) {
  return reinterpret_cast<AnyAddress<T>*>(p);
}
template <class T>
const AnyAddress<T>* any_address(const T* p) {
  return reinterpret_cast<const AnyAddress<T>*>(p);
}

}  // namespace plain
