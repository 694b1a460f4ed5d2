#include "base/memory.h"

#include <cstdlib>

void OutOfMemory() { throw std::bad_alloc(); }

void* XMalloc(std::size_t bytes) {
  void* p = std::malloc(bytes ? bytes : 1);
  if (!p) OutOfMemory();
  return p;
}

void* XCalloc(std::size_t count, std::size_t size) {
  void* p = std::calloc(count ? count : 1, size ? size : 1);
  if (!p) OutOfMemory();
  return p;
}

void* XRealloc(void* old, std::size_t bytes) {
  void* p = std::realloc(old, bytes ? bytes : 1);
  if (!p) OutOfMemory();
  return p;
}
