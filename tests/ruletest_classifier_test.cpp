// Preparing mined rules and cases for classification, building and printing
// a classifier, the rules a names file can hold, and the folds of
// cross-validation.
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

TEST_F(ClassifierPrep, MisfitNamesTheFirstRuleTheNamesFileCannotHold) {
  data.MaxItem = 6;  // values 1-4, classes 0-1
  data.MaxClass = 2;
  EXPECT_EQ(RulesMisfit(rules, data), "");
  AddRule(rules, {1, 4}, 1);
  rules.DefaultClass = -1;
  EXPECT_EQ(RulesMisfit(rules, data), "");
  rules.DefaultClass = 2;
  EXPECT_EQ(RulesMisfit(rules, data), "the default class 2 is no class index from -1 to 1");
  rules.DefaultClass = 0;
  rules.NumOfRules = 3;
  EXPECT_EQ(RulesMisfit(rules, data), "it declares 3 rules but holds 1");
  rules.NumOfRules = 1;
  AddRule(rules, {5}, 0);
  EXPECT_EQ(RulesMisfit(rules, data), "rule 2 has item code 5, but the attribute values run from 1 to 4");
  rules.Last->Antecedent[0] = 2;
  rules.Last->Target = -1;
  EXPECT_EQ(RulesMisfit(rules, data), "rule 2 has target -1, but the class indexes run from 0 to 1");
}

// The training run of the classify fixtures (--order errors --cutoff off
// --guard off --one-item off), in-process: the layer reports, the classifier and its test on the
// training cases.
TEST_F(ClassifierPrep, ToyClassifierIsBuiltPrintedAndTestedAsTheProgramDoes) {
  const std::string fixtures = std::string(SOURCE_DIR) + "/tests/fixtures/classify/";
  Load(ReadFile(fixtures + "toy.names"), ReadFile(fixtures + "toy.data"));
  data.FileName = "toy";
  LabelCases(data);
  std::FILE* file = out.file();
  ClassifierSettings settings;
  settings.ByErrorRate = false;
  settings.CutOff = false;
  settings.MajorityGuard = false;
  settings.OneItemRules = false;
  RuleSet built = BuildClassifier(data, settings, file,
                                  [file](int layer, const MinedRules& run) { PrintLayerReport(layer, run, file); });
  PrintClassifier(built, data, file);
  TestSingle(built, data, file);
  EXPECT_EQ(out.Take(), ReadFile(fixtures + "expected/train.out"));
  ASSERT_EQ(RulesOf(built).size(), 2u);
  EXPECT_EQ(built.DefaultClass, 0);
}

TEST_F(ClassifierPrep, PrintedClassifierNamesUnknownItemsAndClasses) {
  SetCases({{1}}, {0}, 1);
  data.ClassName = {"yes"};
  AddRule(rules, {}, 0, 4, 1.0f);
  AddRule(rules, {3}, 5, 2, 0.25f);
  rules.DefaultClass = -1;
  PrintClassifier(rules, data, out.file());
  EXPECT_EQ(out.Take(),
            "\nClassifier of 2 rules, default class (none)\n"
            "   1: (every case) -> yes  (support 4, confidence 1.0000)\n"
            "   2: ? = ? -> (none)  (support 2, confidence 0.2500)\n"
            "   default: (none)\n");
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

// A fold's training and test sets are the data set's own rows, in order,
// with its tables and stem; the data set itself stays whole.
TEST_F(Folds, SplitSharesTheRowsOfTheOneDataSet) {
  SetCases({{1}, {2}, {3}, {4}, {5}}, {0, 1, 0, 1, 0}, 2);
  data.ClassName = {"a", "b"};
  const std::vector<int> fold = {1, 0, 1, 2, 0};
  for (int f = 0; f < 3; ++f) {
    const FoldSplit split = SplitFold(data, fold, f);
    std::vector<const short*> training, testing;
    for (int i = 0; i < data.MaxData; ++i) (fold[i] == f ? testing : training).push_back(data.DataSpace[i]);
    EXPECT_EQ(std::vector<const short*>(split.Training.DataSpace.begin(), split.Training.DataSpace.end()), training);
    EXPECT_EQ(std::vector<const short*>(split.Testing.DataSpace.begin(), split.Testing.DataSpace.end()), testing);
    EXPECT_EQ(split.Training.MaxData + split.Testing.MaxData, 5);
    EXPECT_EQ(split.Testing.FileName, "toy");
    EXPECT_EQ(split.Training.ClassName, data.ClassName);
    EXPECT_EQ(split.Testing.RealAtt, data.RealAtt);
  }
  EXPECT_EQ(data.MaxData, 5);
  EXPECT_EQ(data.DataSpace.size(), 5u);
}

}  // namespace
