// Checked allocation. A failed allocation throws std::bad_alloc, as the
// standard containers do; the programs turn it into "Not enough memory" and
// exit status 0 (GuardedRun), so every failure ends the same way wherever it
// happens.
#pragma once

#include <cstddef>
#include <new>

[[noreturn]] void OutOfMemory();

// malloc, calloc and realloc that throw std::bad_alloc instead of giving
// null. A request of zero bytes gets one.
void* XMalloc(std::size_t bytes);
void* XCalloc(std::size_t count, std::size_t size);
void* XRealloc(void* old, std::size_t bytes);

// A zero-filled array of count elements (one at least).
template <class T>
T* XAllocArray(std::size_t count) {
  return static_cast<T*>(XCalloc(count ? count : 1, sizeof(T)));
}
