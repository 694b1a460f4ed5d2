// A preload library that makes one allocation of a program fail:
//
//   ALLOC_FAIL_AT=N LD_PRELOAD=libfailalloc.so PROGRAM ...
//
// The Nth allocation counted from the start of main (malloc, calloc,
// realloc, the aligned allocators, and operator new, which then throws
// std::bad_alloc or returns null for its nothrow forms) fails; every other
// one is passed on. N = 0 or no ALLOC_FAIL_AT: nothing fails, the
// allocations are only counted. With ALLOC_FAIL_REPORT=PATH, the count and
// whether the failure happened are written to PATH when the process ends:
// "allocations N failed 0|1\n".
//
// The allocations are passed to the next definition in the search order:
// the C library's, or the sanitizer runtime's in a sanitizer build (run
// those with ASAN_OPTIONS=verify_asan_link_order=0, as this library must
// come first).
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
}

namespace {

using MallocFn = void* (*)(size_t);
using CallocFn = void* (*)(size_t, size_t);
using ReallocFn = void* (*)(void*, size_t);
using AlignFn = int (*)(void**, size_t, size_t);
using AlignedAllocFn = void* (*)(size_t, size_t);
using NewFn = void* (*)(size_t);
using MainFn = int (*)(int, char**, char**);
using StartFn = int (*)(MainFn, int, char**, void (*)(), void (*)(), void (*)(), void*);

MallocFn real_malloc;
CallocFn real_calloc;
ReallocFn real_realloc;
AlignFn real_posix_memalign;
AlignedAllocFn real_aligned_alloc;
AlignedAllocFn real_memalign;
NewFn real_new;
NewFn real_new_array;

bool resolving = false;   // inside dlsym: serve from the C library directly
bool counting = false;    // main has started
int inside_new = 0;       // the allocation under operator new is not counted again
long fail_at = 0;
long allocations = 0;
bool failed = false;
const char* report_path = nullptr;

void Resolve() {
  if (real_malloc || resolving) return;
  resolving = true;
  real_calloc = reinterpret_cast<CallocFn>(dlsym(RTLD_NEXT, "calloc"));
  real_realloc = reinterpret_cast<ReallocFn>(dlsym(RTLD_NEXT, "realloc"));
  real_posix_memalign = reinterpret_cast<AlignFn>(dlsym(RTLD_NEXT, "posix_memalign"));
  real_aligned_alloc = reinterpret_cast<AlignedAllocFn>(dlsym(RTLD_NEXT, "aligned_alloc"));
  real_memalign = reinterpret_cast<AlignedAllocFn>(dlsym(RTLD_NEXT, "memalign"));
  real_new = reinterpret_cast<NewFn>(dlsym(RTLD_NEXT, "_Znwm"));
  real_new_array = reinterpret_cast<NewFn>(dlsym(RTLD_NEXT, "_Znam"));
  real_malloc = reinterpret_cast<MallocFn>(dlsym(RTLD_NEXT, "malloc"));
  resolving = false;
}

// True when this allocation is the one to fail.
bool FailThisOne() {
  if (!counting || inside_new > 0) return false;
  ++allocations;
  if (fail_at > 0 && allocations == fail_at) {
    failed = true;
    return true;
  }
  return false;
}

void WriteReport() {
  if (!report_path) return;
  const int fd = open(report_path, O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (fd < 0) return;
  char line[64];
  const int n = std::snprintf(line, sizeof line, "allocations %ld failed %d\n", allocations, failed ? 1 : 0);
  if (n > 0 && write(fd, line, static_cast<size_t>(n)) < 0) {
  }
  close(fd);
}

MainFn real_main;

int CountingMain(int argc, char** argv, char** envp) {
  const char* at = std::getenv("ALLOC_FAIL_AT");
  fail_at = at ? std::strtol(at, nullptr, 10) : 0;
  report_path = std::getenv("ALLOC_FAIL_REPORT");
  std::atexit(WriteReport);  // registered before counting: it cannot fail
  counting = true;
  return real_main(argc, argv, envp);
}

}  // namespace

extern "C" {

int __libc_start_main(MainFn main, int argc, char** argv, void (*init)(), void (*fini)(), void (*rtld_fini)(),
                      void* stack_end) {
  const auto real_start = reinterpret_cast<StartFn>(dlsym(RTLD_NEXT, "__libc_start_main"));
  real_main = main;
  return real_start(CountingMain, argc, argv, init, fini, rtld_fini, stack_end);
}

void* malloc(size_t size) {
  Resolve();
  if (resolving) return __libc_malloc(size);
  if (FailThisOne()) {
    errno = ENOMEM;
    return nullptr;
  }
  return real_malloc(size);
}

void* calloc(size_t count, size_t size) {
  Resolve();
  if (resolving || !real_calloc) return __libc_calloc(count, size);
  if (FailThisOne()) {
    errno = ENOMEM;
    return nullptr;
  }
  return real_calloc(count, size);
}

void* realloc(void* old, size_t size) {
  Resolve();
  if (resolving) return __libc_realloc(old, size);
  if (FailThisOne()) {
    errno = ENOMEM;
    return nullptr;
  }
  return real_realloc(old, size);
}

int posix_memalign(void** out, size_t alignment, size_t size) {
  Resolve();
  if (FailThisOne()) return ENOMEM;
  return real_posix_memalign(out, alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
  Resolve();
  if (FailThisOne()) {
    errno = ENOMEM;
    return nullptr;
  }
  return real_aligned_alloc(alignment, size);
}

void* memalign(size_t alignment, size_t size) {
  Resolve();
  if (FailThisOne()) {
    errno = ENOMEM;
    return nullptr;
  }
  return real_memalign(alignment, size);
}

}  // extern "C"

namespace {

void* CountedNew(NewFn next, size_t size) {
  Resolve();
  if (FailThisOne()) throw std::bad_alloc();
  ++inside_new;
  void* p = nullptr;
  try {
    p = next(size);
  } catch (...) {
    --inside_new;
    throw;
  }
  --inside_new;
  return p;
}

}  // namespace

void* operator new(size_t size) { return CountedNew(real_new, size); }
void* operator new[](size_t size) { return CountedNew(real_new_array, size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  try {
    return CountedNew(real_new, size);
  } catch (...) {
    return nullptr;
  }
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  try {
    return CountedNew(real_new_array, size);
  } catch (...) {
    return nullptr;
  }
}
