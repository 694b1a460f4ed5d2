// Every allocation of a run may fail: each program, run once per allocation
// N with its Nth allocation failing (the preload library failalloc), must
// end with "Not enough memory" as its last line and exit status 0, or, when
// the failure is absorbed (a stream left unbuffered), give the output of an
// unfailed run. Never a crash, a sanitizer report or a partial line after
// the message. The same under an address-space limit too small for the data.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using testing_support::EndsWith;
using testing_support::FileExists;
using testing_support::MaskRun;
using testing_support::ReadFile;
using testing_support::TempDir;
using testing_support::WriteFile;

constexpr bool kSanitized = SANITIZED;  // built with the address sanitizer

const char kOutOfMemory[] = "Not enough memory\n";

struct FailedRun : testing_support::ProgramRun {
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
  std::string environment = "env ALLOC_FAIL_AT=" + std::to_string(failAt) + " ALLOC_FAIL_REPORT='" + report +
                            "' LD_PRELOAD='" + FAILALLOC_LIBRARY + "'";
  // The library must come before the sanitizer runtime.
  if (kSanitized) environment += " ASAN_OPTIONS=verify_asan_link_order=0:${ASAN_OPTIONS:-}";
  FailedRun run;
  static_cast<testing_support::ProgramRun&>(run) = testing_support::RunProgram(program, args, dir, environment);
  int failed = 0;
  if (std::sscanf(ReadFile(report).c_str(), "allocations %ld failed %d", &run.allocations, &failed) != 2)
    run.allocations = -1;
  run.failed = failed != 0;
  for (const std::string& file : writes)
    run.files.push_back(FileExists(dir + "/" + file) ? ReadFile(dir + "/" + file) : "(none)");
  return run;
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

// The weather set of the golden runs, the discretiser's own set and a table
// to import.
class AllocationFailure : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string fixtures = std::string(SOURCE_DIR) + "/tests/fixtures/";
    for (const char* file : {"runs/weather.names", "runs/weather.data", "discretise/in.names", "discretise/in.data",
                             "import/shop.tsv"})
      WriteFile(dir_ / std::string(file).substr(std::string(file).find('/') + 1), ReadFile(fixtures + file));
  }
  TempDir dir_;
};

TEST_F(AllocationFailure, MinerEndsWithTheMessageWhereverAnAllocationFails) {
  FailEachAllocation("rule", "-f weather -s 0.1 -c 0.8", dir_.path(), {"weatherrule.csv"});
}

TEST_F(AllocationFailure, MinerWithDebugDumpsAndCompleteRuleSet) {
  FailEachAllocation("rule", "-f weather -s 0.2 -c 0.5 -a 1 -x 1", dir_.path(), {"weatherrule.csv"});
}

TEST_F(AllocationFailure, AnalyseEndsWithTheMessageWhereverAnAllocationFails) {
  FailEachAllocation("rule-analyse", "-f weather -s 0.1 -c 0.8", dir_.path(), {});
}

TEST_F(AllocationFailure, ClassifierTrainingAndTesting) {
  FailEachAllocation("rule-classify", "train -f weather -s 0.1 -c 0.5 -o w.rules", dir_.path(), {"w.rules"});
  // The rule file the unfailed training left, tested.
  ASSERT_TRUE(FileExists(dir_ / "w.rules"));
  FailEachAllocation("rule-classify", "test -f weather -R w.rules", dir_.path(), {});
  FailEachAllocation("rule-classify", "test -f weather -R w.rules --vote", dir_.path(), {});
  FailEachAllocation("rule-classify", "test -f weather -R w.rules --vote-report", dir_.path(), {});
  FailEachAllocation("rule-classify", "predict -f weather -R w.rules --vote -o p.csv", dir_.path(), {"p.csv"});
}

TEST_F(AllocationFailure, DiscretiserEndsWithTheMessageWhereverAnAllocationFails) {
  FailEachAllocation("rule-discretise", "-f in -s 0.2 -o out", dir_.path(), {"out.names", "out.data"});
}

TEST_F(AllocationFailure, ImportEndsWithTheMessageWhereverAnAllocationFails) {
  FailEachAllocation("rule-import", "shop.tsv shop", dir_.path(), {"shop.names", "shop.data"});
}

TEST_F(AllocationFailure, RuleShowEndsWithTheMessageWhereverAnAllocationFails) {
  ASSERT_EQ(testing_support::RunProgram("rule", "-f weather -s 0.1 -c 0.8", dir_.path()).status, 0);
  FailEachAllocation("rule-show", "--sort lift --top 5 -f weather", dir_.path(), {});
  FailEachAllocation("rule-show", "--html w.html --format json -o w.json -f weather", dir_.path(),
                     {"w.html", "w.json"});
}

// Under an address-space limit the pair count table of a data set with many
// frequent items (at support 0 every declared item counts as frequent)
// cannot be had: the run ends with the message, never a crash. (The
// sanitizer runtime reserves far more address space than any limit leaves,
// so this runs on the plain build only.)
TEST(AddressSpaceLimit, PairTableTooLargeEndsWithTheMessage) {
  if (kSanitized) GTEST_SKIP() << "the sanitizer runtime cannot start under an address-space limit";
  TempDir dir;
  // 16,002 items: the pair table alone takes 16,002 x 16,001 / 2 x 4 bytes,
  // about 512 MB, twice the limit.
  const std::string script = std::string(SOURCE_DIR) + "/tests/fixtures/hostile/many-items.sh";
  ASSERT_EQ(testing_support::RunProgram("sh", "sh '" + script + "' big 16002", dir.path()).status, 0);
  const testing_support::ProgramRun run =
      testing_support::RunProgram("rule", "-f big -s 0", dir.path(), "ulimit -v 262144 &&");
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(EndsWith(run.output, "MaxData = 40, Attribute = 17, Used attributes 17 \nNot enough memory\n"))
      << run.output;
  EXPECT_EQ(run.errors, "");
  EXPECT_FALSE(FileExists(dir / "bigrule.csv"));
}

}  // namespace
