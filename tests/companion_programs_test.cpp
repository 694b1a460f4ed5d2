// Whole runs of rule-classify, rule-discretise and rule-import (then rule on
// the pairs they write) and rule-analyse on small data sets, and the command
// lines, tables and rule files they refuse. Each area's runs.txt lists the runs and what they give.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <string>

#include "test_support.h"

using namespace testing_support;

namespace {

TEST(CompanionPrograms, ClassifyTrainTestAndCrossValidate) { RunArea("classify"); }
TEST(CompanionPrograms, DiscretiseThenMineThePair) { RunArea("discretise"); }
TEST(CompanionPrograms, AnalyseDerivableRulesAndCoverage) { RunArea("analyse"); }
TEST(CompanionPrograms, ImportTablesThenMineThePairs) { RunArea("import"); }

// Either file of the categorical pair on a full device: the report of the
// cut attributes, then the message naming the file and the reason in place
// of the closing line, and exit status 1.
TEST(CompanionPrograms, DiscretisedPairOntoAFullDevice) {
  const std::string fixtures = std::string(SOURCE_DIR) + "/tests/fixtures/discretise/";
  std::string report = ReadFile(fixtures + "expected/discretise.out");
  const std::string closing = "Wrote out.names and out.data\n";
  ASSERT_TRUE(EndsWith(report, closing));
  report.resize(report.size() - closing.size());
  for (const std::string extension : {".names", ".data"}) {
    SCOPED_TRACE(extension);
    TempDir dir;
    for (const char* file : {"in.names", "in.data"}) WriteFile(dir / file, ReadFile(fixtures + file));
    ASSERT_EQ(symlink("/dev/full", (dir / ("full" + extension)).c_str()), 0);
    const ProgramRun run = RunProgram("rule-discretise", "-f in -s 0.2 -o full", dir.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, report + "\nERROR:  cannot write file full" + extension + ": No space left on device\n");
    EXPECT_EQ(run.errors, "");
  }
}

// The prediction table onto a full device: the message naming the file and
// the reason on standard error, nothing on standard output, exit status 1.
// A regular file is replaced only by a complete table.
TEST(CompanionPrograms, PredictionsOntoAFullDevice) {
  if (!FileExists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  const std::string fixtures = std::string(SOURCE_DIR) + "/tests/fixtures/classify/";
  TempDir dir;
  for (const char* file : {"toy.names", "toy.data"}) WriteFile(dir / file, ReadFile(fixtures + file));
  WriteFile(dir / "toy.rules", ReadFile(fixtures + "expected/toy.rules"));
  ASSERT_EQ(symlink("/dev/full", (dir / "full.csv").c_str()), 0);
  const ProgramRun run = RunProgram("rule-classify", "predict -f toy -R toy.rules -o full.csv", dir.path());
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.errors, "\nERROR:  cannot write file full.csv: No space left on device\n");

  WriteFile(dir / "old.csv", "old\n");
  const ProgramRun replaced = RunProgram("rule-classify", "predict -f toy -R toy.rules -o old.csv", dir.path());
  EXPECT_EQ(replaced.status, 0) << replaced.errors;
  EXPECT_EQ(ReadFile(dir / "old.csv"), ReadFile(fixtures + "expected/predict.out"));
  size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(dir.path())) files += entry.is_regular_file() ? 1 : 0;
  EXPECT_EQ(files, 4u) << "a temporary file was left behind";
}

}  // namespace
