// Every program's outputs are written whole or not at all, and every write
// is checked: a run killed by SIGTERM while it writes (the preload library
// signalwrite), one whose files exceed a file size limit (ulimit -f) and one
// whose standard output is a full device each leave the previous files byte
// for byte and nothing beside them, and the last two end with exit status 1
// and the system's reason. A run out of memory while it writes (the preload
// library failalloc) leaves each file previous or whole.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using testing_support::ReadFile;
using testing_support::RunProgram;
using testing_support::TempDir;
using testing_support::WriteFile;

struct OutputRun {
  const char* program;
  const char* args;
  std::vector<std::string> files;  // the files the run replaces
  bool console;                    // whether it prints to standard output
};

const OutputRun kRuns[] = {
    {"rule", "-f picnic -s 0.1 -c 0.8", {"picnicrule.csv"}, true},
    {"rule-classify", "train -f picnic -s 0.1 -c 0.5 -o p.rules", {"p.rules"}, true},
    {"rule-classify", "predict -f picnic -R q.rules -o p.pred", {"p.pred"}, false},
    {"rule-classify", "test -f picnic -R q.rules", {}, true},
    {"rule-classify", "predict -f picnic -R q.rules", {}, true},
    {"rule-import", "trips.csv t", {"t.names", "t.data"}, true},
    {"rule-discretise", "-f c -o d", {"d.names", "d.data"}, true},
    {"rule-show", "-f q -o list.txt --html r.html", {"list.txt", "r.html"}, false},
    {"rule-show", "-f q", {}, true},
    {"rule-analyse", "-f picnic -s 0.1 -c 0.8", {}, true},
};

std::set<std::string> Listing(const std::string& dir) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) names.insert(entry.path().filename());
  return names;
}

TEST(OutputSafety, KilledFullAndLimitedRunsLeaveThePreviousFiles) {
  TempDir dir;
  for (const char* name : {"picnic.names", "picnic.data", "trips.csv"})
    WriteFile(dir / name, ReadFile(std::string(SOURCE_DIR) + "/examples/" + name));
  std::string cases;
  for (int i = 0; i < 60; ++i) cases += std::to_string(i % 7) + "." + std::to_string(i % 3) + (i % 2 ? ",yes\n" : ",no\n");
  WriteFile(dir / "c.names", "yes, no.\nx: continuous.\n");
  WriteFile(dir / "c.data", cases);
  ASSERT_EQ(RunProgram("sh",
                       "rule -f picnic -s 0.1 -c 0.8 && mv picnicrule.csv qrule.csv && cp picnic.names q.names && "
                       "rule-classify train -f picnic -s 0.1 -c 0.5 -o q.rules",
                       dir.path())
                .status,
            0);
  std::string preload = std::string("SIGNAL_AT_WRITE=1 LD_PRELOAD='") + SIGNALWRITE_LIBRARY + "'";
  std::string failing = std::string("LD_PRELOAD='") + FAILALLOC_LIBRARY + "'";
  if (SANITIZED) {
    preload += " ASAN_OPTIONS=verify_asan_link_order=0:${ASAN_OPTIONS:-}";
    failing += " ASAN_OPTIONS=verify_asan_link_order=0:${ASAN_OPTIONS:-}";
  }
  failing += " ALLOC_FAIL_AT=";
  for (const OutputRun& run : kRuns) {
    const std::string command = std::string(run.program) + " " + run.args;
    SCOPED_TRACE(command);
    for (const std::string& file : run.files) WriteFile(dir / file, "previous " + file);
    const std::set<std::string> before = Listing(dir.path());
    auto expectPrevious = [&](const char* how) {
      for (const std::string& file : run.files) EXPECT_EQ(ReadFile(dir / file), "previous " + file) << how;
      EXPECT_EQ(Listing(dir.path()), before) << how;
    };
    // Killed with an unnamed file, and with the named stand-in of file
    // systems that have none.
    for (const char* named : {"", " NO_UNNAMED_FILES=1"}) {
      if (run.files.empty()) break;
      const testing_support::ProgramRun killed =
          RunProgram(run.program, run.args, dir.path(), "env " + preload + named);
      EXPECT_EQ(killed.status, 128 + 15) << killed.output << killed.errors;  // the shell reports SIGTERM
      expectPrevious(*named ? "SIGTERM, named" : "SIGTERM");
    }
    // Standard output and the files under a limit of 0 bytes; the messages
    // come through a pipe, which the limit does not touch.
    const testing_support::ProgramRun limited = RunProgram(
        "sh", "(ulimit -f 0; " + command + " >console.txt; echo \"status $?\") 2>&1 | cat; rm console.txt", dir.path());
    EXPECT_NE(limited.output.find("File too large"), std::string::npos) << limited.output;
    EXPECT_NE(limited.output.find("status 1"), std::string::npos) << limited.output;
    expectPrevious("ulimit -f");
    // Out of memory at each of the run's last allocations, where the files
    // are written: each file is the previous one or the whole new one.
    if (!run.files.empty()) {
      // A file replaced keeps its permissions.
      for (const std::string& file : run.files) chmod((dir / file).c_str(), 0600);
      ASSERT_EQ(RunProgram(run.program, run.args, dir.path()).status, 0);
      std::vector<std::string> whole;
      for (const std::string& file : run.files) {
        whole.push_back(ReadFile(dir / file));
        struct stat st;
        EXPECT_TRUE(stat((dir / file).c_str(), &st) == 0 && (st.st_mode & 0777) == 0600) << file;
      }
      long allocations = 0;
      RunProgram(run.program, run.args, dir.path(), "env ALLOC_FAIL_REPORT=.report " + failing + "0");
      ASSERT_EQ(std::sscanf(ReadFile(dir / ".report").c_str(), "allocations %ld", &allocations), 1);
      std::remove((dir / ".report").c_str());
      for (long n = allocations; n > 0 && n > allocations - 12; --n) {
        for (const std::string& file : run.files) WriteFile(dir / file, "previous " + file);
        RunProgram(run.program, run.args, dir.path(), "env " + failing + std::to_string(n));
        for (size_t i = 0; i < run.files.size(); ++i) {
          const std::string now = ReadFile(dir / run.files[i]);
          EXPECT_TRUE(now == "previous " + run.files[i] || now == whole[i]) << "allocation " << n << ": " << now;
        }
        EXPECT_EQ(Listing(dir.path()), before) << "allocation " << n;
      }
    }
    if (run.console) {
      const testing_support::ProgramRun full = RunProgram(run.program, std::string(run.args) + " >/dev/full", dir.path());
      EXPECT_EQ(full.status, 1);
      EXPECT_EQ(full.errors, std::string(run.program) + ": cannot write standard output: No space left on device\n");
    }
  }
}

}  // namespace
