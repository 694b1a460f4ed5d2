// Shared by the fuzz targets: a private folder for the files an input is
// written to, quiet standard output, one guarded run per input, and input
// splitting.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

#include "base/console.h"
#include "base/status.h"

namespace fuzz_support {

// A folder of this process's own, on /dev/shm when it exists (no disk
// writes), removed when the process ends normally.
inline const std::string& WorkDir() {
  static const std::string dir = [] {
    const char* base = std::getenv("FUZZ_TMPDIR");
    if (!base) base = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : std::getenv("TMPDIR");
    if (!base) base = "/tmp";
    std::string pattern = std::string(base) + "/rule-fuzz-XXXXXX";
    if (!mkdtemp(&pattern[0])) {
      std::perror("mkdtemp");
      std::abort();
    }
    return pattern;
  }();
  static const bool cleanup = [] {
    std::atexit([] {
      std::string command = "rm -rf '" + dir + "'";
      if (std::system(command.c_str()) != 0) std::fprintf(stderr, "could not remove %s\n", dir.c_str());
    });
    return true;
  }();
  (void)cleanup;
  return dir;
}

inline std::string PathOf(const std::string& name) { return WorkDir() + "/" + name; }

// Writes bytes to a file of the work folder; returns its path.
inline std::string Put(const std::string& name, const uint8_t* data, size_t size) {
  const std::string path = PathOf(name);
  std::FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) {
    std::perror(path.c_str());
    std::abort();
  }
  if (size > 0 && std::fwrite(data, 1, size, f) != size) std::abort();
  if (std::fclose(f) != 0) std::abort();
  return path;
}

inline std::string Put(const std::string& name, const std::string& text) {
  return Put(name, reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

// The programs report on standard output; the fuzzer's own reports go to
// standard error. Standard output is dropped unless FUZZ_SHOW_OUTPUT is set.
inline void QuietOutput() {
  if (std::getenv("FUZZ_SHOW_OUTPUT")) return;
  if (!std::freopen("/dev/null", "w", stdout)) std::abort();
}

// Runs body, which returns a Status, as one run of the programs: every
// value it builds is its own, and the ways a run ends by design (an input
// error, the error limit, a refused keyword, a failed allocation with "Not
// enough memory") become its exit status instead of ending the fuzzer.
// Returns that status, or -1 when body's status is ok.
template <class F>
int OneRun(F body) {
  const int status = GuardedRun([&] {
    const Status ended = body();
    return ended.ok() ? -1 : ended.exit_status();
  });
  std::fflush(stdout);
  return status;
}

// Fails the fuzzer with a message when a property that must hold does not.
#define FUZZ_CHECK(condition)                                                            \
  do {                                                                                   \
    if (!(condition)) {                                                                  \
      std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                      \
    }                                                                                    \
  } while (0)

// Splits text at the first occurrence of a separator line; the part after
// it is empty when there is none.
inline void SplitAt(const std::string& text, const std::string& separator, std::string& before,
                    std::string& after) {
  const size_t at = text.find(separator);
  if (at == std::string::npos) {
    before = text;
    after.clear();
    return;
  }
  before = text.substr(0, at);
  after = text.substr(at + separator.size());
}

}  // namespace fuzz_support
