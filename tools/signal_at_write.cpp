// A preload library that ends a program with SIGTERM while it writes a file:
//
//   SIGNAL_AT_WRITE=N LD_PRELOAD=libsignalwrite.so PROGRAM ...
//
// After the Nth write to a descriptor other than standard input, output and
// error has been done, the process raises SIGTERM (its default action ends
// the process), as a user's kill during a long write would.
#include <csignal>
#include <cstdlib>

#include <sys/syscall.h>
#include <unistd.h>

extern "C" ssize_t write(int fd, const void* data, size_t size) {
  static long writes = 0;
  const ssize_t done = syscall(SYS_write, fd, data, size);
  const char* at = std::getenv("SIGNAL_AT_WRITE");
  if (fd > 2 && at && ++writes == std::atol(at)) std::raise(SIGTERM);
  return done;
}
