// In-process helpers for the tests that drive the readers and the mining
// steps directly: a fresh run state per test, fixture files in a temporary
// folder, hand-made data spaces and rules, and the end of a run caught as a
// status.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "readfile.h"
#include "rule.h"
#include "rulegen.h"
#include "ruletest.h"
#include "test_support.h"

namespace testing_support {

// What a step printed, and the status it ended the run with (-1: it did not
// end the run).
struct Outcome {
  int status = -1;
  std::string output;
};

// Runs body with standard output captured; an EndRun inside it is caught.
template <class F>
Outcome Capture(F body) {
  Outcome outcome;
  testing::internal::CaptureStdout();
  try {
    body();
  } catch (const RunEnded& ended) {
    outcome.status = ended.Status;
  }
  outcome.output = testing::internal::GetCapturedStdout();
  return outcome;
}

// Every test starts from the state of a new process, with the file stem in a
// temporary folder of its own, and with the end of a run turned into an
// exception so that its message and status can be checked in-process.
class MinerTest : public ::testing::Test {
 protected:
  void SetUp() override { Fresh(); }
  void TearDown() override {
    EndRunThrows = false;
    ResetRun();
  }
  void Fresh() {
    ResetRun();
    EndRunThrows = true;
    FileName = Stem();
  }

  std::string Stem() const { return dir_ / "set"; }
  void WriteNames(const std::string& text) { WriteFile(Stem() + ".names", text); }
  void WriteData(const std::string& text) { WriteFile(Stem() + ".data", text); }
  // Reads the names file and, unless data is null, the data file.
  Outcome Read(const std::string& names, const char* data = nullptr) {
    WriteNames(names);
    if (data) WriteData(data);
    return Capture([data] {
      GetNames();
      if (data) GetData(".data");
    });
  }
  void Load(const std::string& names, const std::string& data) {
    Outcome read = Read(names, data.c_str());
    ASSERT_EQ(read.status, -1) << read.output;
  }

  // Coded row i of the data space, RealAtt+1 columns.
  static std::vector<int> Row(int i) { return std::vector<int>(DataSpace[i], DataSpace[i] + RealAtt + 1); }
  static std::vector<std::vector<int>> Rows() {
    std::vector<std::vector<int>> rows;
    for (int i = 0; i < MaxData; ++i) rows.push_back(Row(i));
    return rows;
  }

  // Installs hand-made coded rows (realAtt columns each; the closing 0 is
  // added) as the data space, without any names file.
  void SetRows(int maxItem, int realAtt, const std::vector<std::vector<short>>& rows) {
    MaxItem = maxItem;
    RealAtt = realAtt;
    MaxData = static_cast<int>(rows.size());
    rows_ = rows;
    DataSpace.clear();
    for (auto& row : rows_) {
      row.resize(static_cast<size_t>(realAtt) + 1, 0);
      DataSpace.push_back(row.data());
    }
  }

  // Counts the data space and builds layers 1 and 2 under a new AllSet.
  Outcome BuildFirstLayers(int minSup) {
    GMinSup = minSup;
    return Capture([] {
      AllSet = static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode)));
      InitialCount();
      Counting();
      InitRuleSet();
      InitWholeTree(AllSet);
    });
  }

  TempDir dir_;
  std::vector<std::vector<short>> rows_;
};

// The node of the itemset, walked down from AllSet, or null.
inline TreeNode* NodeOf(const std::vector<int>& items) {
  TreeNode* node = AllSet;
  for (int item : items) {
    TreeNode* son = nullptr;
    for (int s = 0; node && s < node->NumOfSon; ++s)
      if (node->Son[s] && node->Son[s]->Item == item) son = node->Son[s];
    if (!(node = son)) return nullptr;
  }
  return node;
}

inline std::vector<int> FlagsOf(const TreeNode* n) { return {n->TargetFlag, n->TargetFlag + n->Length}; }
inline std::vector<int> ItemsOf(const TreeNode* n) { return {n->ItemSet, n->ItemSet + n->Length}; }
inline std::vector<int> AntecedentOf(const RuleRecord* r) { return {r->Antecedent, r->Antecedent + r->Len}; }

// Appends a rule to the rule set, made when missing.
inline RuleRecord* AddRule(const std::vector<int>& antecedent, int target, int supp = 1, float conf = 0.5f,
                           int antSupp = 0, int targetSupp = 0) {
  if (!RuleSet) InitRuleSet();
  RuleRecord* rule = NewRule(static_cast<int>(antecedent.size()));
  for (size_t i = 0; i < antecedent.size(); ++i) rule->Antecedent[i] = antecedent[i];
  rule->Target = target;
  rule->Priority = 1;
  rule->Supp = supp;
  rule->Conf = rule->Score = conf;
  rule->AntSupp = antSupp;
  rule->TargetSupp = targetSupp;
  AddRuleTail(RuleSet->Last, rule);
  return rule;
}

// The evaluation and analysis tests: an empty rule set, the stem "toy", and
// labelled cases.
class RuletestWorld : public MinerTest {
 protected:
  void SetUp() override {
    MinerTest::SetUp();
    InitRuleSet();
    FileName = "toy";
  }
  // Cases as item lists of one width, each followed by its class index.
  void SetCases(const std::vector<std::vector<short>>& items, const std::vector<short>& classes, int classCount) {
    std::vector<std::vector<short>> rows = items;
    for (size_t i = 0; i < rows.size(); ++i) rows[i].push_back(classes[i]);
    SetRows(MaxItem, items.empty() ? 1 : static_cast<int>(items[0].size()), rows);
    MaxClass = classCount;
  }
  // The rules from First, after checking the backward links and the count.
  static std::vector<RuleRecord*> Rules() {
    std::vector<RuleRecord*> all;
    for (RuleRecord* r = RuleSet->First; r; r = r->Next) {
      EXPECT_EQ(r->Prev, all.empty() ? nullptr : all.back());
      all.push_back(r);
    }
    EXPECT_EQ(RuleSet->Last, all.empty() ? nullptr : all.back());
    EXPECT_EQ(RuleSet->NumOfRules, static_cast<int>(all.size()));
    return all;
  }
  template <typename Step>
  static std::string Printed(Step step) {
    return Capture(step).output;
  }
};

}  // namespace testing_support
