// Whole runs of rule-classify, rule-discretise (then rule on the pair it
// writes) and rule-analyse on small data sets, and the command lines and rule
// files they refuse. Each area's runs.txt lists the runs and what they give.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "test_support.h"

using namespace testing_support;

namespace {

void RunArea(const std::string& area) {
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
    SCOPED_TRACE(program + " " + args);
    ProgramRun run = RunProgram(program, args, dir.path());
    EXPECT_EQ(run.status, std::stoi(status));
    if (expected.rfind("= ", 0) == 0) {
      EXPECT_EQ(MaskRun(run.output), ReadFile(fixtures / "expected" / expected.substr(2)));
    } else {
      EXPECT_NE(run.output.find(expected), std::string::npos) << run.output;
    }
  }
  for (const auto& entry : std::filesystem::directory_iterator(fixtures / "expected"))
    if (entry.path().extension() != ".out") {
      EXPECT_EQ(ReadFile(dir / entry.path().filename().string()), ReadFile(entry.path())) << entry.path();
    }
}

TEST(CompanionPrograms, ClassifyTrainTestAndCrossValidate) { RunArea("classify"); }
TEST(CompanionPrograms, DiscretiseThenMineThePair) { RunArea("discretise"); }
TEST(CompanionPrograms, AnalyseDerivableRulesAndCoverage) { RunArea("analyse"); }

}  // namespace
