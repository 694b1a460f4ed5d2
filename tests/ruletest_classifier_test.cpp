// Preparing mined rules and cases for classification, and the folds of
// cross-validation.
#include <algorithm>
#include <map>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RuletestWorld;

using ClassifierPrep = RuletestWorld;

// Items 1-4 are attribute values, 5-7 the class values (indexes 0-2).
TEST_F(ClassifierPrep, ClassItemsBecomeClassIndexesAndOtherTargetsGo) {
  SetCases({{1, 6}, {2, 7}, {3, 0}}, {0, 0, 0}, 3);
  MaxItem = 7;
  LabelCases();
  // The class column: the index of the class item, -1 for none.
  EXPECT_EQ((std::vector<int>{DataSpace[0][2], DataSpace[1][2], DataSpace[2][2]}), (std::vector<int>{1, 2, -1}));
  for (int target : {2, 6, 3, 5, 8}) AddRule({1}, target);
  KeepClassRules();
  ASSERT_EQ(Rules().size(), 2u);
  EXPECT_EQ(RuleSet->First->Target, 1);
  EXPECT_EQ(RuleSet->Last->Target, 0);
}

TEST(StratifiedFolds, DealsEachClassEvenlyAndRepeatsFromTheSeed) {
  std::vector<int> labels;
  for (int i = 0; i < 53; ++i) labels.push_back(i % 3 == 0 ? 2 : (i % 5 == 0 ? -1 : 0));
  const std::vector<int> folds = StratifiedFolds(labels, 5, 42);
  EXPECT_EQ(StratifiedFolds(labels, 5, 42), folds);
  EXPECT_NE(StratifiedFolds(labels, 5, 43), folds);
  std::map<int, std::vector<int>> perLabel;  // label -> cases per fold
  for (size_t i = 0; i < labels.size(); ++i) {
    ASSERT_TRUE(folds[i] >= 0 && folds[i] < 5);
    perLabel[labels[i]].resize(5);
    perLabel[labels[i]][folds[i]] += 1;
  }
  for (const auto& entry : perLabel) {
    const auto [low, high] = std::minmax_element(entry.second.begin(), entry.second.end());
    EXPECT_LE(*high - *low, 1) << "label " << entry.first;
  }
}

}  // namespace
