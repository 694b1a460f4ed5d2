// A preload library that ends a program with SIGTERM while it writes a file:
//
//   SIGNAL_AT_WRITE=N LD_PRELOAD=libsignalwrite.so PROGRAM ...
//
// After the Nth write to a descriptor other than standard input, output and
// error has been done, the process raises SIGTERM (its default action ends
// the process), as a user's kill during a long write would. With
// NO_UNNAMED_FILES set, opening an unnamed file (O_TMPFILE) fails as on a
// file system without them, so that the named stand-in is used.
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>

extern "C" ssize_t write(int fd, const void* data, size_t size) {
  static long writes = 0;
  const ssize_t done = syscall(SYS_write, fd, data, size);
  const char* at = std::getenv("SIGNAL_AT_WRITE");
  if (fd > 2 && at && ++writes == std::atol(at)) std::raise(SIGTERM);
  return done;
}

extern "C" int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  if ((flags & O_TMPFILE) == O_TMPFILE && std::getenv("NO_UNNAMED_FILES")) {
    errno = EOPNOTSUPP;
    return -1;
  }
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}
