#include "base/staged_file.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// ---- The named stand-in's removal on a signal ----
//
// A named temporary file (used only where the file system cannot make an
// unnamed one) would outlive a process ended by a signal. Its name is put
// here while it exists, for the handler to remove before the signal takes
// its default course. This table is process-wide because a signal handler
// can reach nothing else; the owners' strings stay in place while their
// names are listed, and an owner takes its name out before it frees it.
constexpr int kNamedSlots = 16;
std::atomic<const char*> namedTemporaries[kNamedSlots];
constexpr int kCleanedSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

void RemoveNamedAndRaise(int signal) {
  for (auto& slot : namedTemporaries)
    if (const char* name = slot.load()) unlink(name);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void ListNamed(const char* name) {
  for (auto& slot : namedTemporaries) {
    const char* none = nullptr;
    if (slot.compare_exchange_strong(none, name)) break;
  }
  // The handler goes only where the signal would end the process anyway.
  for (int signal : kCleanedSignals) {
    struct sigaction now;
    if (sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_DFL) std::signal(signal, RemoveNamedAndRaise);
  }
}

void UnlistNamed(const char* name) {
  for (auto& slot : namedTemporaries) {
    const char* listed = name;
    slot.compare_exchange_strong(listed, nullptr);
  }
}

// Writes all of data to fd; 0, or the errno value of the failure.
int WriteAll(int fd, const char* data, size_t size) {
  for (size_t written = 0; written < size;) {
    const ssize_t got = write(fd, data + written, size - written);
    if (got >= 0) written += static_cast<size_t>(got);
    else if (errno != EINTR) return errno;
  }
  return 0;
}

// A stdio stream whose writes go to fd through write, the first failure's
// errno kept in *error.
std::FILE* CheckedStream(void* cookie, cookie_write_function_t* write) {
  cookie_io_functions_t io = {};
  io.write = write;
  std::FILE* f = fopencookie(cookie, "w", io);
  if (!f) throw std::bad_alloc();
  return f;
}

// Blocks the signals that end a process while a finished file takes its
// name, so that no named file is left half way.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t held;
    sigemptyset(&held);
    for (int signal : kCleanedSignals) sigaddset(&held, signal);
    pthread_sigmask(SIG_BLOCK, &held, &previous_);
  }
  ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }

 private:
  sigset_t previous_;
};

}  // namespace

// ---- PendingFile ----

ssize_t PendingFile::WriteCookie(void* cookie, const char* data, size_t size) {
  PendingFile* file = static_cast<PendingFile*>(cookie);
  const int error = WriteAll(file->fd_, data, size);
  if (error == 0) return static_cast<ssize_t>(size);
  if (file->writeError_ == 0) file->writeError_ = error;
  return -1;
}

PendingFile::~PendingFile() { Discard(); }

void PendingFile::Discard() {
  if (stream_) std::fclose(stream_);
  stream_ = nullptr;
  if (fd_ >= 0) close(fd_);
  fd_ = -1;
  if (!temporary_.empty()) {
    unlink(temporary_.c_str());
    UnlistNamed(temporary_.c_str());
    temporary_.clear();
  }
}

bool PendingFile::Fail(int error, std::string& reason) {
  Discard();
  if (error == ENOMEM) throw std::bad_alloc();
  error_ = error;
  reason = std::strerror(error);
  return false;
}

bool PendingFile::Open(const std::string& path, std::string& reason) {
  Discard();
  path_ = path;
  inPlace_ = finished_ = false;
  writeError_ = 0;
  struct stat st;
  if (path.empty() || path.back() == '/') return Fail(path.empty() ? ENOENT : EISDIR, reason);
  // A link is written through: the file it leads to is replaced, the link
  // stays (a link into a missing folder cannot be written).
  if (lstat(path.c_str(), &st) == 0 && S_ISLNK(st.st_mode)) {
    char* target = realpath(path.c_str(), nullptr);
    if (!target) return Fail(errno, reason);
    path_ = target;
    std::free(target);
  }
  const bool exists = stat(path_.c_str(), &st) == 0;
  if (exists && !S_ISREG(st.st_mode)) {
    if (S_ISDIR(st.st_mode)) return Fail(EISDIR, reason);
    fd_ = open(path_.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    inPlace_ = true;
  } else {
    // The file lies in the target's folder, so that it takes the target's
    // name on the same file system, at once.
    const size_t slash = path_.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : path_.substr(0, slash);
    const bool unnamed = access("/proc/self/fd", X_OK) == 0;
    if (unnamed) fd_ = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    if (!unnamed || (fd_ < 0 && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL))) {
      // No unnamed files here: a named one beside the target. Its name is
      // kept before the file exists, so that nothing allocates between
      // creating the file and taking charge of removing it.
      std::string name = path_ + ".tmp-XXXXXX";
      temporary_ = name;
      fd_ = mkostemp(&name[0], O_CLOEXEC);
      if (fd_ < 0) {
        temporary_.clear();
      } else {
        temporary_.replace(0, std::string::npos, name);  // same length: stays in place
        ListNamed(temporary_.c_str());
      }
    }
    // The file replacing another keeps its permissions; a new one has those
    // the creation mask leaves.
    mode_t mode = exists ? st.st_mode & 07777 : 0;
    if (!exists) {
      mode = umask(0);
      umask(mode);
      mode = 0666 & ~mode;
    }
    if (fd_ >= 0 && (exists || !temporary_.empty()) && fchmod(fd_, mode) != 0) return Fail(errno, reason);
  }
  if (fd_ < 0) return Fail(errno, reason);
  stream_ = CheckedStream(this, &PendingFile::WriteCookie);
  return true;
}

bool PendingFile::Finish(std::string& reason) {
  if (finished_) return true;
  if (!stream_) return Fail(EBADF, reason);
  const bool flushed = std::fflush(stream_) == 0 && !std::ferror(stream_);
  if (!flushed || writeError_ != 0) return Fail(writeError_ ? writeError_ : EIO, reason);
  struct stat st;
  // A folder made at the target's name while the file was written.
  if (!inPlace_ && stat(path_.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) return Fail(EISDIR, reason);
  finished_ = true;
  return true;
}

bool PendingFile::Write(const std::string& path, const std::string& text, std::string& reason) {
  if (!Open(path, reason)) return false;
  std::fwrite(text.data(), 1, text.size(), stream_);
  return Finish(reason);
}

bool PendingFile::Commit(std::string& reason) {
  if (!Finish(reason)) return false;
  std::fclose(stream_);
  stream_ = nullptr;
  const int fd = fd_;
  fd_ = -1;
  if (inPlace_) return close(fd) == 0 || Fail(errno, reason);
  SignalsHeld held;
  if (temporary_.empty()) {
    // The unnamed file takes a name beside the target, then the target's.
    const std::string self = "/proc/self/fd/" + std::to_string(fd);
    temporary_ = path_ + ".tmp-" + std::to_string(getpid()) + "-0";
    for (int n = 1; linkat(AT_FDCWD, self.c_str(), AT_FDCWD, temporary_.c_str(), AT_SYMLINK_FOLLOW) != 0; ++n) {
      const int error = errno;
      if (error != EEXIST) {
        temporary_.clear();
        close(fd);
        return Fail(error, reason);
      }
      temporary_ = path_ + ".tmp-" + std::to_string(getpid()) + "-" + std::to_string(n);
    }
  }
  if (close(fd) != 0 || rename(temporary_.c_str(), path_.c_str()) != 0) return Fail(errno, reason);
  UnlistNamed(temporary_.c_str());
  temporary_.clear();
  return true;
}

bool WriteFileReplacing(const std::string& path, const std::string& text, std::string& reason, int* error) {
  PendingFile file;
  if (file.Write(path, text, reason) && file.Commit(reason)) return true;
  if (error) *error = file.error();
  return false;
}

// ---- CheckedStandardOutput ----

ssize_t CheckedStandardOutput::WriteCookie(void* cookie, const char* data, size_t size) {
  CheckedStandardOutput* out = static_cast<CheckedStandardOutput*>(cookie);
  const int error = WriteAll(STDOUT_FILENO, data, size);
  if (error == 0) return static_cast<ssize_t>(size);
  if (out->writeError_ == 0) out->writeError_ = error;
  return -1;
}

CheckedStandardOutput::CheckedStandardOutput() {
  std::signal(SIGXFSZ, SIG_IGN);
  std::fflush(stdout);
  // stdout is the C library's own variable, meant to be set (glibc documents
  // it so): every printf of the programs then goes through the checked
  // stream. Without memory for the stream, stdout stays as it was.
  cookie_io_functions_t io = {};
  io.write = &CheckedStandardOutput::WriteCookie;
  stream_ = fopencookie(this, "w", io);
  if (!stream_) return;
  if (isatty(STDOUT_FILENO)) setvbuf(stream_, nullptr, _IOLBF, BUFSIZ);
  original_ = stdout;
  stdout = stream_;
}

CheckedStandardOutput::~CheckedStandardOutput() {
  if (!stream_) return;
  stdout = original_;
  std::fclose(stream_);
}

int CheckedStandardOutput::Finish(const char* program, int status) {
  const bool flushed = std::fflush(stdout) == 0 && !std::ferror(stdout);
  int error = writeError_ ? writeError_ : flushed ? 0 : EIO;
  if (error == 0 && close(STDOUT_FILENO) != 0 && errno != EBADF) error = errno;
  if (error == 0) return status;
  std::fprintf(stderr, "%s: cannot write standard output: %s\n", program, std::strerror(error));
  return 1;
}
