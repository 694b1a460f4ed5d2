#include "base/staged_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <vector>

namespace {

mode_t CreationMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// Writes all of text to fd; 0, or the errno value of the failure.
int WriteAll(int fd, const std::string& text) {
  for (size_t written = 0; written < text.size();) {
    const ssize_t got = write(fd, text.data() + written, text.size() - written);
    if (got >= 0) written += static_cast<size_t>(got);
    else if (errno != EINTR) return errno;
  }
  return 0;
}

}  // namespace

PendingFile::~PendingFile() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

bool PendingFile::Fail(int error, std::string& reason) {
  if (error == ENOMEM) throw std::bad_alloc();
  error_ = error;
  reason = std::strerror(error);
  return false;
}

bool PendingFile::Write(const std::string& path, const std::string& text, std::string& reason) {
  path_ = path;
  struct stat st;
  if (stat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
    if (S_ISDIR(st.st_mode)) return Fail(EISDIR, reason);
    const int fd = open(path.c_str(), O_WRONLY | O_TRUNC);
    if (fd < 0) return Fail(errno, reason);
    int error = WriteAll(fd, text);
    if (close(fd) != 0 && error == 0) error = errno;
    return error == 0 || Fail(error, reason);
  }
  // The temporary file lies in the target's folder, so that the rename
  // stays on one file system and replaces the target at once.
  std::vector<char> name(path.begin(), path.end());
  const char suffix[] = ".tmp-XXXXXX";
  name.insert(name.end(), suffix, suffix + sizeof suffix);
  // The name is kept before the file exists, so that nothing allocates
  // between creating the file and taking charge of removing it.
  std::string temporary(name.begin(), name.end() - 1);
  const int fd = mkstemp(name.data());
  if (fd < 0) return Fail(errno, reason);
  temporary.assign(name.data());
  temporary_.swap(temporary);
  int error = WriteAll(fd, text);
  if (error == 0 && fchmod(fd, CreationMode()) != 0) error = errno;
  if (close(fd) != 0 && error == 0) error = errno;
  if (error == 0 && stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) error = EISDIR;
  if (error != 0) {
    unlink(temporary_.c_str());
    temporary_.clear();
    return Fail(error, reason);
  }
  return true;
}

bool PendingFile::Commit(std::string& reason) {
  if (temporary_.empty()) return true;  // written in place
  if (rename(temporary_.c_str(), path_.c_str()) != 0) return Fail(errno, reason);
  temporary_.clear();
  return true;
}

bool WriteFileReplacing(const std::string& path, const std::string& text, std::string& reason, int* error) {
  PendingFile file;
  if (file.Write(path, text, reason) && file.Commit(reason)) return true;
  if (error) *error = file.error();
  return false;
}
