// Writing output files so that nothing is replaced unless the whole run
// succeeds: each text goes to a temporary file beside its target, and the
// temporary files are renamed over the targets only once all are written.
// A target that exists and is no regular file (a device such as /dev/null or
// /dev/full, a pipe) is written in place instead: there is nothing to keep,
// and renaming over it would replace the device.
#pragma once

#include <string>

class PendingFile {
 public:
  PendingFile() = default;
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;
  // Removes the temporary file unless it was committed.
  ~PendingFile();

  // Writes text to a temporary file beside path (or into path itself when it
  // is a device or a pipe). False with the system's reason when it cannot be
  // written (nothing is left behind then); a failure for want of memory
  // throws std::bad_alloc.
  bool Write(const std::string& path, const std::string& text, std::string& reason);
  // Renames the temporary file over path.
  bool Commit(std::string& reason);
  // The errno value of the last failure.
  int error() const { return error_; }

 private:
  bool Fail(int error, std::string& reason);
  std::string path_, temporary_;
  int error_ = 0;
};

// Write, then Commit. On failure, *error (when given) is the errno value.
bool WriteFileReplacing(const std::string& path, const std::string& text, std::string& reason, int* error = nullptr);
