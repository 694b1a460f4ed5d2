// Preparing mined rules and cases for classification, and the folds of
// cross-validation.
#include <map>
#include <vector>

#include "ruletest_fixture.h"

namespace {

using ClassifierPrep = RuletestWorld;

// Items 1-4 are attribute values, 5-7 the class values (indexes 0-2).
void ThreeClassTables() {
  MaxItem = 7;
  MaxClass = 3;
}

TEST_F(ClassifierPrep, ClassIndexOfClassItemsOnly) {
  ThreeClassTables();
  EXPECT_EQ(ClassIndexOf(5), 0);
  EXPECT_EQ(ClassIndexOf(7), 2);
  EXPECT_EQ(ClassIndexOf(4), -1);
  EXPECT_EQ(ClassIndexOf(0), -1);
  EXPECT_EQ(ClassIndexOf(8), -1);
}

TEST_F(ClassifierPrep, LabelCasesWritesTheClassColumn) {
  SetCases({{1, 6}, {2, 7}, {3, 0}}, {0, 0, 0}, 3);
  ThreeClassTables();
  LabelCases();
  EXPECT_EQ(DataSpace[0][2], 1);
  EXPECT_EQ(DataSpace[1][2], 2);
  EXPECT_EQ(DataSpace[2][2], -1);  // unknown class
  SetClassDistribution();
  EXPECT_EQ(Dist, (std::vector<float>{0.0f, 1.0f / 3, 1.0f / 3}));
}

TEST_F(ClassifierPrep, KeepClassRulesDropsOtherTargets) {
  ThreeClassTables();
  AddRule({1}, 2);
  AddRule({1, 2}, 6);
  AddRule({5}, 3);
  AddRule({3}, 5);
  KeepClassRules();
  EXPECT_EQ(Targets(), (std::vector<int>{1, 0}));
}

TEST(StratifiedFolds, DealsEachClassEvenlyAndRepeatsFromTheSeed) {
  std::vector<int> labels;
  for (int i = 0; i < 53; ++i) labels.push_back(i % 3 == 0 ? 2 : (i % 5 == 0 ? -1 : 0));
  const std::vector<int> folds = StratifiedFolds(labels, 5, 42);
  EXPECT_EQ(StratifiedFolds(labels, 5, 42), folds);
  EXPECT_NE(StratifiedFolds(labels, 5, 43), folds);
  std::map<int, std::vector<int>> perLabel;  // label -> cases per fold
  std::vector<int> perFold(5, 0);
  for (size_t i = 0; i < labels.size(); ++i) {
    ASSERT_GE(folds[i], 0);
    ASSERT_LT(folds[i], 5);
    perLabel[labels[i]].resize(5);
    perLabel[labels[i]][folds[i]] += 1;
    perFold[folds[i]] += 1;
  }
  for (const auto& entry : perLabel) {
    const auto [low, high] = std::minmax_element(entry.second.begin(), entry.second.end());
    EXPECT_LE(*high - *low, 1) << "label " << entry.first;
  }
  const auto [low, high] = std::minmax_element(perFold.begin(), perFold.end());
  EXPECT_LE(*high - *low, 1);
}

}  // namespace
