// Helpers shared by the tests: temporary folders, fixture files, running the
// built programs and masking the run-dependent parts of their output.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
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
// in the folder dir; prefix goes before the program (an environment, a
// limit). The name "sh" runs the arguments as a shell command line instead,
// to prepare files and folders, with the built programs on the path.
inline ProgramRun RunProgram(const std::string& name, const std::string& args, const std::string& dir,
                             const std::string& prefix = "") {
  ProgramRun run;
  const std::string outFile = dir + "/.stdout";
  const std::string errFile = dir + "/.stderr";
  const std::string body = name == "sh" ? "PATH='" + std::string(BIN_DIR) + "':\"$PATH\"; " + args
                                        : prefix + " '" + BIN_DIR + "/" + name + "' " + args;
  const std::string command = "cd '" + dir + "' && (" + body + ") >'" + outFile + "' 2>'" + errFile + "'";
  const int raw = std::system(command.c_str());
  if (raw != -1 && WIFEXITED(raw)) run.status = WEXITSTATUS(raw);
  run.output = ReadFile(outFile);
  run.errors = ReadFile(errFile);
  std::remove(outFile.c_str());
  std::remove(errFile.c_str());
  return run;
}

inline bool EndsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
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

// Runs the lines of tests/fixtures/AREA/runs.txt in order, in one folder
// holding the area's files, each line
//   STATUS<TAB>PROGRAM<TAB>ARGUMENTS<TAB>EXPECTED
// where EXPECTED is "= FILE" (the whole masked standard output is
// expected/FILE), "$ TEXT" (the output ends with TEXT) or TEXT the output
// must hold; "\n" in TEXT is a line end. Afterwards every file of expected/
// not ending in .out must equal the one written. With quiet, nothing may
// reach standard error.
inline void RunArea(const std::string& area, bool quiet = false) {
  const std::filesystem::path fixtures = std::string(SOURCE_DIR) + "/tests/fixtures/" + area;
  TempDir dir;
  for (const auto& entry : std::filesystem::directory_iterator(fixtures))
    if (entry.is_regular_file()) WriteFile(dir / entry.path().filename().string(), ReadFile(entry.path()));
  std::istringstream lines(ReadFile(fixtures / "runs.txt"));
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    std::string status, program, args, expected;
    std::getline(std::getline(std::getline(fields, status, '\t'), program, '\t'), args, '\t');
    std::getline(fields, expected);
    for (size_t at; (at = expected.find("\\n")) != std::string::npos;) expected.replace(at, 2, "\n");
    SCOPED_TRACE(program + " " + args);
    const ProgramRun run = RunProgram(program, args, dir.path());
    EXPECT_EQ(run.status, std::stoi(status)) << run.output << run.errors;
    if (quiet) {
      EXPECT_EQ(run.errors, "");
    }
    if (expected.rfind("= ", 0) == 0) {
      EXPECT_EQ(MaskRun(run.output), ReadFile(fixtures / "expected" / expected.substr(2)));
    } else {
      const bool atEnd = expected.rfind("$ ", 0) == 0;
      EXPECT_TRUE(atEnd ? EndsWith(run.output, expected.substr(2)) : run.output.find(expected) != std::string::npos)
          << run.output;
    }
  }
  for (const auto& entry : std::filesystem::directory_iterator(fixtures / "expected")) {
    if (entry.path().extension() != ".out") {
      EXPECT_EQ(ReadFile(dir / entry.path().filename().string()), ReadFile(entry.path())) << entry.path();
    }
  }
}

// The shared data sets and reference outputs beside the project, when present.
inline std::string SharedDir() { return std::string(SOURCE_DIR) + "/../shared"; }

}  // namespace testing_support
