// Cross-validation runs of rule-classify: the output does not depend on the
// number of threads the folds run on (RULE_THREADS), and it is the output of
// folds that each read the files afresh, though they are read once.
#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

using namespace testing_support;

namespace {

class CrossValidation : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string fixtures = std::string(SOURCE_DIR) + "/tests/fixtures/classify/";
    for (const char* file : {"toy.names", "toy.data"}) WriteFile(dir_ / file, ReadFile(fixtures + file));
    golden_ = ReadFile(fixtures + "expected/cv.out");
  }
  ProgramRun Cv(const std::string& args, int threads) {
    return RunProgram("rule-classify", "cv " + args, dir_.path(), "RULE_THREADS=" + std::to_string(threads));
  }
  TempDir dir_;
  std::string golden_;
};

TEST_F(CrossValidation, OneThreadAndFourGiveTheSameOutput) {
  for (const char* args : {"-f toy -k 2", "-f toy -k 8 --seed 3", "-f toy -k 4 -r 2 -d -c 0.6"}) {
    SCOPED_TRACE(args);
    const ProgramRun one = Cv(args, 1);
    const ProgramRun four = Cv(args, 4);
    EXPECT_EQ(one.status, 0) << one.output;
    EXPECT_EQ(four.status, 0);
    EXPECT_EQ(four.output, one.output);
    EXPECT_EQ(four.errors, "");
  }
  EXPECT_EQ(Cv("-f toy -k 2", 4).output, golden_);
  EXPECT_EQ(Cv("-f toy -k 2", 1).output, golden_);
}

// What reading the files prints comes again before every later fold, as
// when each fold read them.
TEST_F(CrossValidation, ReadingMessagesComeOncePerFold) {
  WriteFile(dir_ / "toy.names", ReadFile(dir_ / "toy.names") + "humid true, false.\n");
  const std::string message = "\nERROR:  colon expected after attribute name humid true\n";
  for (int threads : {1, 4}) {
    const ProgramRun run = Cv("-f toy -k 2", threads);
    EXPECT_EQ(run.status, 0);
    size_t count = 0;
    for (size_t at = 0; (at = run.output.find(message, at)) != std::string::npos; at += message.size()) ++count;
    EXPECT_EQ(count, 2u) << run.output;
    EXPECT_EQ(run.output.rfind(message, 0), 0u);  // the first before anything else
  }
}

}  // namespace
