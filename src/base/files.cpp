#include "base/files.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "base/memory.h"

std::FILE* XFopen(const std::string& path, const char* mode) {
  errno = 0;
  std::FILE* f = std::fopen(path.c_str(), mode);
  if (!f && errno == ENOMEM) OutOfMemory();
  // A folder opens for reading but reads as an empty file: it is no input
  // file, and taking it for one would read no classes or no cases.
  struct stat status;
  if (f && fstat(fileno(f), &status) == 0 && S_ISDIR(status.st_mode)) {
    std::fclose(f);
    errno = EISDIR;
    return nullptr;
  }
  return f;
}

Status WriteFailure(const std::string& path, int error) {
  return Status(StatusKind::WriteFailed, 1,
                "\nERROR:  cannot write file " + path + ": " + std::strerror(error ? error : EIO) + "\n");
}

Status CloseWritten(std::FILE* f, const std::string& path) {
  errno = 0;
  // Buffered output reaches the file only when flushed: a full device shows
  // itself here, or in the error flag of an earlier write.
  const bool flushed = std::fflush(f) == 0;
  const int flushError = errno;
  const bool clean = !std::ferror(f);
  errno = 0;
  const bool closed = std::fclose(f) == 0;
  const int closeError = errno;
  if (flushed && clean && closed) return Status();
  return WriteFailure(path, !flushed ? flushError : closeError);
}
