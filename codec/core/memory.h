#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <span>

namespace pqx_codec {

struct Free {
  void operator()(void* p) const { std::free(p); }
};
using Memory = std::unique_ptr<uint8_t[], Free>;

/// n bytes of any value. Many of them lie on huge pages, as far as there are: a page costs a fault at its first use,
/// and small ones a large picture thousands of them.
inline Memory uninitialized_memory(size_t n) {
  constexpr size_t huge_page = size_t{1} << 21;
  const size_t whole_pages = (n + huge_page - 1) / huge_page * huge_page;
  void* const p = n < 2 * huge_page ? std::malloc(n) : std::aligned_alloc(huge_page, whole_pages);
  if (!p) throw std::bad_alloc();
  if (n >= 2 * huge_page) ::madvise(p, n, MADV_HUGEPAGE);
  return Memory(static_cast<uint8_t*>(p));
}

/// The same memory with room for n bytes. What it gains has any value.
inline Memory enlarged(Memory memory, size_t n) {
  void* const p = std::realloc(memory.get(), n);
  if (!p) throw std::bad_alloc();
  (void)memory.release();
  return Memory(static_cast<uint8_t*>(p));
}

/// Bytes with the memory that they lie in.
struct OwnedBytes {
  Memory memory;
  size_t size = 0;

  operator std::span<const uint8_t>() const { return {memory.get(), size}; }
};

}  // namespace pqx_codec
