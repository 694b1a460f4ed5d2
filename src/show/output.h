// Writing output files so that nothing is replaced unless the whole run
// succeeds: each text goes to a temporary file beside its target, and the
// temporary files are renamed over the targets only once all are written.
#pragma once

#include <string>

namespace show {

class PendingFile {
 public:
  PendingFile() = default;
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;
  // Removes the temporary file unless it was committed.
  ~PendingFile();

  // Writes text to a temporary file beside path. False with the system's
  // reason when it cannot be written (nothing is left behind then); a
  // failure for want of memory throws std::bad_alloc.
  bool Write(const std::string& path, const std::string& text, std::string& reason);
  // Renames the temporary file over path.
  bool Commit(std::string& reason);

 private:
  std::string path_, temporary_;
};

// Write, then Commit.
bool WriteFileReplacing(const std::string& path, const std::string& text, std::string& reason);

}  // namespace show
