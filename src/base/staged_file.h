// Writing output files so that nothing is replaced unless the whole file is
// written: the text goes to an unnamed file in the target's folder (Linux's
// O_TMPFILE), which is given the target's name only when it is complete and
// closed without error. A run that fails, is killed or runs out of memory
// leaves the previous file as it was and nothing beside it: an unnamed file
// vanishes with the process. Where the file system has no unnamed files, a
// named temporary file beside the target stands in, removed on failure and
// on SIGINT, SIGTERM, SIGHUP and SIGQUIT.
// A file that replaces another keeps its permissions; a link is written
// through (the file it leads to is replaced).
// A target that exists and is no regular file (a device such as /dev/null or
// /dev/full, a pipe) is written in place instead: there is nothing to keep,
// and renaming over it would replace the device.
//
// Every write is checked and the first failure's reason kept (a stdio
// stream's buffered flush loses it): a full device gives "No space left on
// device", a file size limit "File too large".
#pragma once

#include <sys/types.h>

#include <cstdio>
#include <string>

class PendingFile {
 public:
  PendingFile() = default;
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;
  // Discards what was written unless it was committed.
  ~PendingFile();

  // Starts the file for path; stream() then takes the text. False with the
  // system's reason when it cannot be started.
  bool Open(const std::string& path, std::string& reason);
  std::FILE* stream() const { return stream_; }
  // Flushes the stream and checks every write that went before. False with
  // the reason of the first failed write (nothing is left behind then).
  bool Finish(std::string& reason);
  // Open, the whole text, Finish. A failure for want of memory throws
  // std::bad_alloc.
  bool Write(const std::string& path, const std::string& text, std::string& reason);
  // Puts the finished file in place of its target (Finish first when the
  // stream is still open).
  bool Commit(std::string& reason);
  // The errno value of the last failure.
  int error() const { return error_; }

 private:
  static ssize_t WriteCookie(void* cookie, const char* data, size_t size);
  bool Fail(int error, std::string& reason);
  void Discard();
  std::string path_, temporary_;  // temporary_: the named stand-in, if any
  int fd_ = -1;
  bool inPlace_ = false, finished_ = false;
  int writeError_ = 0, error_ = 0;
  std::FILE* stream_ = nullptr;
};

// Open, write, Commit. On failure, *error (when given) is the errno value.
bool WriteFileReplacing(const std::string& path, const std::string& text, std::string& reason, int* error = nullptr);

// Standard output with every write checked. The constructor ignores SIGXFSZ
// (so that a file size limit fails the write with "File too large" instead
// of ending the process) and puts a stream that keeps its first failure's
// reason in the place of stdout; Finish flushes and closes it.
class CheckedStandardOutput {
 public:
  CheckedStandardOutput();
  CheckedStandardOutput(const CheckedStandardOutput&) = delete;
  CheckedStandardOutput& operator=(const CheckedStandardOutput&) = delete;
  ~CheckedStandardOutput();
  // The program's exit status: status when every write reached standard
  // output, otherwise 1 after "PROGRAM: cannot write standard output:
  // REASON" on standard error.
  int Finish(const char* program, int status);

 private:
  static ssize_t WriteCookie(void* cookie, const char* data, size_t size);
  std::FILE* original_ = nullptr;
  std::FILE* stream_ = nullptr;
  int writeError_ = 0;
};
