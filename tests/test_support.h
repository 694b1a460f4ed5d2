// Helpers shared by the tests: temporary folders, fixture files, running the
// built programs and masking the run-dependent parts of their output.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace testing_support {

// A fresh temporary folder, removed with its contents when it goes.
class TempDir {
 public:
  TempDir() {
    char pattern[] = "/tmp/rule-test-XXXXXX";
    const char* made = mkdtemp(pattern);
    path_ = made ? made : "/tmp";
  }
  ~TempDir() {
    std::string command = "rm -rf '" + path_ + "'";
    if (std::system(command.c_str()) != 0) std::fprintf(stderr, "could not remove %s\n", path_.c_str());
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

inline void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream out(path, std::ios::binary);
  out << content;
}

inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

inline bool FileExists(const std::string& path) {
  struct stat st;
  return stat(path.c_str(), &st) == 0;
}

struct ProgramRun {
  int status = -1;     // exit status, or -1 when the program did not exit normally
  std::string output;  // standard output
  std::string errors;  // standard error
};

// Runs a built program (BIN_DIR/name) with the arguments, a shell word list,
// in the folder dir.
inline ProgramRun RunProgram(const std::string& name, const std::string& args, const std::string& dir) {
  ProgramRun run;
  const std::string outFile = dir + "/.stdout";
  const std::string errFile = dir + "/.stderr";
  const std::string command = "cd '" + dir + "' && '" + std::string(BIN_DIR) + "/" + name + "' " + args +
                              " >'" + outFile + "' 2>'" + errFile + "'";
  const int raw = std::system(command.c_str());
  if (raw != -1 && WIFEXITED(raw)) run.status = WEXITSTATUS(raw);
  run.output = ReadFile(outFile);
  run.errors = ReadFile(errFile);
  std::remove(outFile.c_str());
  std::remove(errFile.c_str());
  return run;
}

// Replaces the date of the start banner and the running time by fixed text.
inline std::string MaskRun(const std::string& output) {
  std::string text = output;
  const std::string banner = "\t\t\t\t\t ";
  if (text.compare(0, banner.size(), banner) == 0) {
    size_t end = text.find('\n');
    if (end != std::string::npos) text.replace(banner.size(), end - banner.size(), "DATE");
  }
  const std::string timing = " the running time is ";
  size_t at = text.find(timing);
  if (at != std::string::npos) {
    size_t start = at + timing.size();
    size_t end = text.find(' ', start);
    if (end != std::string::npos) text.replace(start, end - start, "T");
  }
  return text;
}

// The shared data sets and reference outputs beside the project, when present.
inline std::string SharedDir() { return std::string(SOURCE_DIR) + "/../shared"; }

}  // namespace testing_support
