#include <stdlib.h>
#include <string.h>

#include "common/export.h"

namespace {
constexpr uintptr_t alignment = 64;
constexpr uintptr_t slot = sizeof(void*);  // below the block: the address to give back
}  // namespace

void* pqx_Malloc(int32_t size) {
  if (size < 1) return nullptr;
  // The sum wraps near INT32_MAX; sign-extended it is then a request that no allocator can meet.
  const auto padded = int32_t(uint32_t(size) + uint32_t(alignment));
  void* raw = malloc(size_t(int64_t(padded)) + slot);
  if (raw == nullptr) return nullptr;
  const uintptr_t aligned = (uintptr_t(raw) + slot + alignment - 1) & ~(alignment - 1);
  memcpy(reinterpret_cast<void*>(aligned - slot), &raw, slot);
  return reinterpret_cast<void*>(aligned);
}
PQX_SECOND_NAME(pqx_Malloc);

void pqx_Free(void* ptr) {
  if (ptr == nullptr) return;
  void* raw;
  memcpy(&raw, static_cast<const char*>(ptr) - slot, slot);
  free(raw);
}
PQX_SECOND_NAME(pqx_Free);

void* pqx_AlignPointer(void* ptr, int32_t align) {
  const auto below = int32_t(uint32_t(align) - 1);
  const auto mask = int32_t(0 - uint32_t(align));
  return reinterpret_cast<void*>((uintptr_t(ptr) + uintptr_t(intptr_t(below))) & uintptr_t(intptr_t(mask)));
}
PQX_SECOND_NAME(pqx_AlignPointer);
