// Every allocation of a run may fail: each program, run once per allocation
// N with its Nth allocation failing (the preload library failalloc), must
// end with "Not enough memory" as its last line and exit status 0, or, when
// the failure is absorbed (a stream left unbuffered), give the output of an
// unfailed run. Never a crash, a sanitizer report or a partial line after
// the message. The same under an address-space limit too small for the data.
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using testing_support::FileExists;
using testing_support::MaskRun;
using testing_support::ReadFile;
using testing_support::TempDir;
using testing_support::WriteFile;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
#else
constexpr bool kSanitized = false;
#endif

const char kOutOfMemory[] = "Not enough memory\n";

struct FailedRun {
  int status = -1;  // exit status; -1 when the program did not exit normally
  std::string output;
  std::string errors;
  long allocations = 0;  // counted from the start of main
  bool failed = false;   // whether the Nth allocation came
  std::vector<std::string> files;  // the contents of the files the run writes
};

// Runs BIN_DIR/program with its allocation failAt failing (0: none), in dir.
FailedRun RunFailing(const std::string& program, const std::string& args, const std::string& dir, long failAt,
                     const std::vector<std::string>& writes) {
  for (const std::string& file : writes) std::remove((dir + "/" + file).c_str());
  const std::string report = dir + "/.report";
  std::remove(report.c_str());
  std::string environment = "ALLOC_FAIL_AT=" + std::to_string(failAt) + " ALLOC_FAIL_REPORT='" + report +
                            "' LD_PRELOAD='" + FAILALLOC_LIBRARY + "'";
  // The library must come before the sanitizer runtime.
  if (kSanitized) environment += " ASAN_OPTIONS=verify_asan_link_order=0:${ASAN_OPTIONS:-}";
  const std::string command = "cd '" + dir + "' && env " + environment + " '" + BIN_DIR + "/" + program + "' " +
                              args + " >.stdout 2>.stderr";
  FailedRun run;
  const int raw = std::system(command.c_str());
  if (raw != -1 && WIFEXITED(raw)) run.status = WEXITSTATUS(raw);
  run.output = ReadFile(dir + "/.stdout");
  run.errors = ReadFile(dir + "/.stderr");
  const std::string counts = ReadFile(report);
  int failed = 0;
  if (std::sscanf(counts.c_str(), "allocations %ld failed %d", &run.allocations, &failed) != 2) run.allocations = -1;
  run.failed = failed != 0;
  for (const std::string& file : writes)
    run.files.push_back(FileExists(dir + "/" + file) ? ReadFile(dir + "/" + file) : "(none)");
  return run;
}

bool EndsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// Fails every allocation of the run in turn, from the first until the run
// no longer reaches N.
void FailEachAllocation(const std::string& program, const std::string& args, const std::string& dir,
                        const std::vector<std::string>& writes) {
  const FailedRun whole = RunFailing(program, args, dir, 0, writes);
  EXPECT_EQ(whole.status, 0) << whole.output << whole.errors;
  EXPECT_EQ(whole.errors, "");
  EXPECT_GT(whole.allocations, 0) << "the preload library did not count";
  if (whole.status != 0 || whole.allocations <= 0) return;

  int outOfMemory = 0;
  for (long n = 1;; ++n) {
    const FailedRun run = RunFailing(program, args, dir, n, writes);
    SCOPED_TRACE(program + " " + args + ", allocation " + std::to_string(n) + " failing");
    ASSERT_EQ(run.status, 0) << run.output << run.errors;
    ASSERT_EQ(run.errors, "");
    ASSERT_GE(run.allocations, 0) << "no report: the program did not end through exit";
    if (!run.failed) {
      // Past the last allocation: the run is the unfailed one.
      EXPECT_EQ(MaskRun(run.output), MaskRun(whole.output));
      EXPECT_EQ(run.files, whole.files);
      EXPECT_GE(n, whole.allocations);
      break;
    }
    if (EndsWith(run.output, kOutOfMemory)) {
      // The message comes once, and nothing follows it. (It may end a line
      // begun before: some reports leave their line open for the next.)
      const std::string before = run.output.substr(0, run.output.size() - sizeof kOutOfMemory + 1);
      ASSERT_EQ(before.find(kOutOfMemory), std::string::npos) << run.output;
      ++outOfMemory;
    } else {
      // An absorbed failure: the same run as without it.
      ASSERT_EQ(MaskRun(run.output), MaskRun(whole.output));
      ASSERT_EQ(run.files, whole.files);
    }
  }
  EXPECT_GT(outOfMemory, 0);
  std::printf("[          ] %s %s: %ld allocations, each failed in turn; %d ended with the message\n",
              program.c_str(), args.c_str(), whole.allocations, outOfMemory);
}

const char kWeatherNames[] = "play, stay.\nday: ignore.\noutlook: sunny, overcast, rain.\nwindy: yes, no.\n";
const char kWeatherData[] =
    "d01,sunny,yes,stay\nd02,sunny,yes,stay\nd03,sunny,no,stay\nd04,sunny,no,play\n"
    "d05,overcast,yes,play\nd06,overcast,no,play\nd07,rain,yes,stay\nd08,rain,no,play\n"
    "d09,?,no,play\n";

class AllocationFailure : public ::testing::Test {
 protected:
  void SetUp() override {
    WriteFile(dir_ / "w.names", kWeatherNames);
    WriteFile(dir_ / "w.data", kWeatherData);
  }
  TempDir dir_;
};

TEST_F(AllocationFailure, MinerEndsWithTheMessageWhereverAnAllocationFails) {
  FailEachAllocation("rule", "-f w -s 0.1 -c 0.8", dir_.path(), {"wrule.csv"});
}

TEST_F(AllocationFailure, MinerWithDebugDumpsAndCompleteRuleSet) {
  FailEachAllocation("rule", "-f w -s 0.2 -c 0.5 -a 1 -x 1", dir_.path(), {"wrule.csv"});
}

TEST_F(AllocationFailure, AnalyseEndsWithTheMessageWhereverAnAllocationFails) {
  FailEachAllocation("rule-analyse", "-f w -s 0.1 -c 0.8", dir_.path(), {});
}

TEST_F(AllocationFailure, ClassifierTrainingAndTesting) {
  FailEachAllocation("rule-classify", "train -f w -s 0.1 -c 0.5 -o w.rules", dir_.path(), {"w.rules"});
  // The rule file the unfailed training left, tested.
  ASSERT_TRUE(FileExists(dir_ / "w.rules"));
  FailEachAllocation("rule-classify", "test -f w -R w.rules", dir_.path(), {});
  FailEachAllocation("rule-classify", "test -f w -R w.rules --vote", dir_.path(), {});
}

TEST_F(AllocationFailure, DiscretiserEndsWithTheMessageWhereverAnAllocationFails) {
  WriteFile(dir_ / "c.names", "yes, no.\nx: continuous.\nk: a, b.\ny: continuous.\n");
  WriteFile(dir_ / "c.data", "0,a,5,yes\n1,b,?,no\n2,a,6,yes\n3,b,7,no\n100,a,5,yes\n?,b,8,no\n");
  FailEachAllocation("rule-discretise", "-f c -s 0.2 -o out", dir_.path(), {"out.names", "out.data"});
}

// Under an address-space limit the pair count table of a data set with many
// items cannot be had: the run ends with the message, never a crash. (The
// sanitizer runtime reserves far more address space than any limit leaves,
// so this runs on the plain build only.)
TEST(AddressSpaceLimit, PairTableTooLargeEndsWithTheMessage) {
  if (kSanitized) GTEST_SKIP() << "the sanitizer runtime cannot start under an address-space limit";
  TempDir dir;
  // 16,000 items: the pair table alone takes (16,002)^2 x 4 bytes, about 1 GB.
  std::string names = "yes, no.\n";
  for (int a = 0; a < 16; ++a) {
    names += "a" + std::to_string(a) + ": ";
    for (int v = 0; v < 1000; ++v) names += "v" + std::to_string(v) + (v < 999 ? ", " : ".\n");
  }
  WriteFile(dir / "big.names", names);
  std::string data;
  for (int i = 0; i < 50; ++i) {
    for (int a = 0; a < 16; ++a) data += "v" + std::to_string((i * 7 + a) % 1000) + ",";
    data += i % 2 ? "yes\n" : "no\n";
  }
  WriteFile(dir / "big.data", data);

  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const rlimit limit{512u << 20, 512u << 20};
    if (setrlimit(RLIMIT_AS, &limit) != 0) _exit(90);
    if (chdir(dir.path().c_str()) != 0 || !freopen(".stdout", "w", stdout) || !freopen(".stderr", "w", stderr))
      _exit(91);
    const std::string program = std::string(BIN_DIR) + "/rule";
    execl(program.c_str(), "rule", "-f", "big", "-s", "0.1", static_cast<char*>(nullptr));
    _exit(92);
  }
  int raw = 0;
  ASSERT_EQ(waitpid(child, &raw, 0), child);
  ASSERT_TRUE(WIFEXITED(raw)) << "signal " << (WIFSIGNALED(raw) ? WTERMSIG(raw) : 0);
  EXPECT_EQ(WEXITSTATUS(raw), 0);
  const std::string output = ReadFile(dir / ".stdout");
  EXPECT_TRUE(EndsWith(output, "MaxData = 50, Attribute = 17, Used attributes 17 \nNot enough memory\n")) << output;
  EXPECT_EQ(ReadFile(dir / ".stderr"), "");
  EXPECT_FALSE(FileExists(dir / "bigrule.csv"));
}

}  // namespace
