// Whole runs of rule-classify, rule-discretise and rule-import (then rule on
// the pairs they write) and rule-analyse on small data sets, and the command
// lines, tables and rule files they refuse. Each area's runs.txt lists the runs and what they give.
#include <gtest/gtest.h>

#include <unistd.h>

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

}  // namespace
