// Coding cases with cuts learnt from some of them: the cuts see only the
// training cases; and rule-classify cv on a continuous data set gives the
// same output on any number of threads.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "discretiser/discretise.h"
#include "evaluation/evaluation.h"
#include "input/readers.h"
#include "miner_fixture.h"
#include "test_support.h"

namespace {

using testing_support::MinerTest;
using testing_support::ProgramRun;
using testing_support::RunProgram;
using testing_support::TempDir;
using testing_support::WriteFile;

const char kNames[] =
    "low, high.\n"
    "size: continuous.\n"
    "colour: red, blue.\n"
    "id: ignore.\n";

// Cases 0-9: size 1..10, class low up to 5 and high above; colour follows
// the class; case 10 (size 4.5) and case 11 (size 40) are the test cases.
std::string Cases(const char* lateClass) {
  std::string text;
  for (int x = 1; x <= 10; ++x)
    text += std::to_string(x) + (x <= 5 ? ",red,a,low\n" : ",blue,b,high\n");
  text += std::string("4.5,blue,c,") + lateClass + "\n";
  text += std::string("40,?,d,") + lateClass + "\n";
  return text;
}

class FoldCoding : public MinerTest {
 protected:
  void ReadRaw(const std::string& names, const std::string& text) {
    WriteNames(names);
    WriteData(text);
    data = DataSet();
    Status status = GetNames(data, Stem(), errors, true);
    if (status.ok()) status = ReadData(data, ".data", errors);
    ASSERT_TRUE(status.ok()) << status.message();
  }
  std::vector<int> Training() const {
    std::vector<int> cases;
    for (int i = 0; i < 10; ++i) cases.push_back(i);
    return cases;
  }
};

TEST_F(FoldCoding, CutsComeFromTheTrainingCasesOnly) {
  ReadRaw(kNames, Cases("low"));
  const std::vector<CutAttribute> cuts = LearnEntropyCuts(data, Training());
  ASSERT_EQ(cuts.size(), 1u);
  EXPECT_EQ(cuts[0].Declared, 0);
  ASSERT_EQ(cuts[0].Intervals.size(), 2u);
  EXPECT_FLOAT_EQ(cuts[0].Intervals[1].Low, 5.5f);
  EXPECT_EQ(cuts[0].Intervals[0].Count + cuts[0].Intervals[1].Count, 10);

  // Other classes and values of the test cases change nothing ...
  ReadRaw(kNames, Cases("high"));
  const std::vector<CutAttribute> again = LearnEntropyCuts(data, Training());
  ASSERT_EQ(again.size(), 1u);
  ASSERT_EQ(again[0].Intervals.size(), 2u);
  EXPECT_EQ(again[0].Intervals[1].Low, cuts[0].Intervals[1].Low);
  EXPECT_EQ(again[0].Intervals[1].High, cuts[0].Intervals[1].High);

  // ... while the same cases learnt with them move the cut.
  std::vector<int> all = Training();
  all.push_back(10);
  all.push_back(11);
  const std::vector<CutAttribute> leaked = LearnEntropyCuts(data, all);
  EXPECT_NE(leaked[0].Intervals.back().High, cuts[0].Intervals.back().High);

  // The tree's cuts, too, see the training cases only.
  const std::vector<CutAttribute> tree = LearnEntropyCuts(data, Training(), CutPlacement::kInTree);
  ReadRaw(kNames, Cases("low"));
  const std::vector<CutAttribute> treeAgain = LearnEntropyCuts(data, Training(), CutPlacement::kInTree);
  ASSERT_EQ(tree.size(), 1u);
  ASSERT_EQ(tree[0].Intervals.size(), treeAgain[0].Intervals.size());
  ASSERT_GE(tree[0].Intervals.size(), 2u);
  for (size_t j = 0; j < tree[0].Intervals.size(); ++j) {
    EXPECT_EQ(tree[0].Intervals[j].Low, treeAgain[0].Intervals[j].Low);
    EXPECT_EQ(tree[0].Intervals[j].High, treeAgain[0].Intervals[j].High);
  }
}

// A continuous data set of three classes: x tells them apart, y is noise.
std::string GeneratedCases() {
  std::string text;
  for (int i = 0; i < 90; ++i) {
    const int cls = i % 3;
    const double x = cls * 3 + (i * 7 % 13) / 5.0;
    const double y = (i * 5 % 11) / 3.0;
    text += std::to_string(x) + "," + std::to_string(y) + "," + (cls == 0 ? "p" : cls == 1 ? "q" : "r") + "\n";
  }
  return text;
}

TEST(CrossValidateContinuous, CutsEveryFoldAndGivesTheSameOutputOnAnyThreads) {
  TempDir dir;
  WriteFile(dir / "m.names", "p, q, r.\nx: continuous.\ny: continuous.\n");
  WriteFile(dir / "m.data", GeneratedCases());
  const ProgramRun one = RunProgram("rule-classify", "cv -f m -k 5", dir.path(), "RULE_THREADS=1");
  ASSERT_EQ(one.status, 0) << one.output;
  for (int f = 1; f <= 5; ++f)
    EXPECT_NE(one.output.find("fold " + std::to_string(f) + ": intervals from the training cases: x "),
              std::string::npos)
        << one.output;
  const size_t mean = one.output.rfind("mean accuracy = ");
  ASSERT_NE(mean, std::string::npos);
  EXPECT_GE(std::stod(one.output.substr(mean + 16)), 80.0) << one.output;
  const ProgramRun four = RunProgram("rule-classify", "cv -f m -k 5", dir.path(), "RULE_THREADS=4");
  EXPECT_EQ(four.output, one.output);
}

}  // namespace
