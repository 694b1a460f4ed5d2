// Preparing mined rules and cases for classification, the one-item rules
// with exceptions, and the folds of cross-validation (whole runs of
// rule-classify are in fixtures/classify).
#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "evaluation/evaluation.h"
#include "miner_fixture.h"
#include "output/reports.h"

namespace {

using testing_support::AddRule;
using testing_support::ReadFile;
using testing_support::RulesOf;
using testing_support::RuletestWorld;

using ClassifierPrep = RuletestWorld;

// Items 1-4 are attribute values, 5-7 the class values (indexes 0-2).
TEST_F(ClassifierPrep, ClassItemsBecomeClassIndexesAndOtherTargetsGo) {
  SetCases({{1, 6}, {2, 7}, {3, 0}}, {0, 0, 0}, 3);
  data.MaxItem = 7;
  EXPECT_EQ(ClassIndexOf(data, 4), -1);
  EXPECT_EQ(ClassIndexOf(data, 5), 0);
  EXPECT_EQ(ClassIndexOf(data, 8), -1);
  LabelCases(data);
  // The class column: the index of the class item, -1 for none.
  EXPECT_EQ((std::vector<int>{Row(0)[2], Row(1)[2], Row(2)[2]}), (std::vector<int>{1, 2, -1}));
  EXPECT_EQ(CaseLabels(data), (std::vector<int>{1, 2, -1}));
  std::vector<float> dist;
  SetClassDistribution(data, dist);  // the unlabelled case counts in no class
  EXPECT_EQ(dist, (std::vector<float>{0.0f, 1.0f / 3, 1.0f / 3}));
  for (int target : {2, 6, 3, 5, 8}) AddRule(rules, {1}, target);
  KeepClassRules(rules, data);
  ASSERT_EQ(RulesOf(rules).size(), 2u);
  EXPECT_EQ(rules.First->Target, 1);
  EXPECT_EQ(rules.Last->Target, 0);
}

// Items 1-2 and 3-4 are two attributes' values, 5-6 the class values.
TEST_F(ClassifierPrep, OneItemRulesWithExceptionsAreAddedAtTheirThresholds) {
  data.MaxItem = 6;
  SetCases({{1, 3, 5}, {1, 3, 5}, {1, 4, 5}, {1, 4, 6}, {2, 3, 6}, {2, 4, 6}}, {0, 0, 0, 1, 1, 1}, 2);
  AddOneItemClassRules(rules, data, 2, 0.5f);
  // Item 2 is always class 1: a perfect rule, which the miner finds itself.
  std::vector<std::vector<float>> got;
  for (const RuleRecord* r : RulesOf(rules))
    got.push_back({static_cast<float>(r->Len), static_cast<float>(r->Antecedent[0]), static_cast<float>(r->Target),
                   static_cast<float>(r->Supp), static_cast<float>(r->AntSupp), static_cast<float>(r->TargetSupp),
                   r->Conf});
  EXPECT_EQ(got, (std::vector<std::vector<float>>{{1, 1, 0, 3, 4, 3, 0.75f},
                                                  {1, 3, 0, 2, 3, 3, static_cast<float>(2.0 / 3)},
                                                  {1, 4, 1, 2, 3, 3, static_cast<float>(2.0 / 3)}}));

  // Lower thresholds let the rules right on one case in three or four in.
  RuleSet more;
  AddOneItemClassRules(more, data, 1, 0.25f);
  EXPECT_EQ(RulesOf(more).size(), 6u);
  // A minimum support of 0 still asks for one case.
  RuleSet none;
  AddOneItemClassRules(none, data, 0, 0.9f);
  EXPECT_EQ(RulesOf(none).size(), 0u);
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

using Folds = RuletestWorld;

}  // namespace
