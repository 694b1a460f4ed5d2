#include "show/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <vector>

namespace show {

namespace {

mode_t CreationMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

bool Fail(int error, std::string& reason) {
  if (error == ENOMEM) throw std::bad_alloc();
  reason = std::strerror(error);
  return false;
}

}  // namespace

PendingFile::~PendingFile() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

bool PendingFile::Write(const std::string& path, const std::string& text, std::string& reason) {
  path_ = path;
  // The temporary file lies in the target's folder, so that the rename
  // stays on one file system and replaces the target at once.
  std::vector<char> name(path.begin(), path.end());
  const char suffix[] = ".tmp-XXXXXX";
  name.insert(name.end(), suffix, suffix + sizeof suffix);
  const int fd = mkstemp(name.data());
  if (fd < 0) return Fail(errno, reason);
  temporary_ = name.data();
  int error = 0;
  for (size_t written = 0; written < text.size() && error == 0;) {
    const ssize_t got = write(fd, text.data() + written, text.size() - written);
    if (got >= 0) written += static_cast<size_t>(got);
    else if (errno != EINTR) error = errno;
  }
  if (error == 0 && fchmod(fd, CreationMode()) != 0) error = errno;
  if (close(fd) != 0 && error == 0) error = errno;
  struct stat st;
  if (error == 0 && stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) error = EISDIR;
  if (error != 0) {
    unlink(temporary_.c_str());
    temporary_.clear();
    return Fail(error, reason);
  }
  return true;
}

bool PendingFile::Commit(std::string& reason) {
  if (rename(temporary_.c_str(), path_.c_str()) != 0) return Fail(errno, reason);
  temporary_.clear();
  return true;
}

bool WriteFileReplacing(const std::string& path, const std::string& text, std::string& reason) {
  PendingFile file;
  return file.Write(path, text, reason) && file.Commit(reason);
}

}  // namespace show
