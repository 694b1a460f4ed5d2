// In-process helpers for the tests that drive the readers and the mining
// steps directly: a fresh run state per test, fixture files in a temporary
// folder, hand-made data spaces, and the end of a run caught as a status.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "readfile.h"
#include "rule.h"
#include "rulegen.h"
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
  void SetUp() override {
    ResetRun();
    EndRunThrows = true;
    FileName = dir_ / "set";
  }
  void TearDown() override {
    EndRunThrows = false;
    ResetRun();
  }

  std::string Stem() const { return dir_ / "set"; }
  void WriteNames(const std::string& text) { WriteFile(Stem() + ".names", text); }
  void WriteData(const std::string& text) { WriteFile(Stem() + ".data", text); }

  // Reads the names file; fails the test if the run ends.
  void LoadNames(const std::string& names) {
    WriteNames(names);
    Outcome read = Capture([] { GetNames(); });
    ASSERT_EQ(read.status, -1) << read.output;
  }
  // Reads both files; fails the test if the run ends.
  void Load(const std::string& names, const std::string& data) {
    WriteNames(names);
    WriteData(data);
    Outcome read = Capture([] {
      GetNames();
      GetData(".data");
    });
    ASSERT_EQ(read.status, -1) << read.output;
  }

  // Coded row i of the data space, RealAtt+1 columns.
  static std::vector<int> Row(int i) {
    return std::vector<int>(DataSpace[i], DataSpace[i] + RealAtt + 1);
  }

  // Installs hand-made coded rows (RealAtt columns each; the closing 0 is
  // added) as the data space, without any names file.
  void SetRows(int maxItem, int realAtt, const std::vector<std::vector<short>>& rows) {
    MaxItem = maxItem;
    RealAtt = realAtt;
    MaxData = static_cast<int>(rows.size());
    rows_ = rows;
    DataSpace.clear();
    for (auto& row : rows_) {
      row.resize(static_cast<size_t>(realAtt) + 1, 0);
      row[realAtt] = 0;
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

// The son of node with the given item, or null.
inline TreeNode* SonWith(const TreeNode* node, int item) {
  if (!node) return nullptr;
  for (int s = 0; s < node->NumOfSon; ++s)
    if (node->Son[s] && node->Son[s]->Item == item) return node->Son[s];
  return nullptr;
}

// The node of the itemset, walked down from AllSet, or null.
inline TreeNode* NodeOf(const std::vector<int>& items) {
  TreeNode* node = AllSet;
  for (int item : items) {
    node = SonWith(node, item);
    if (!node) return nullptr;
  }
  return node;
}

inline std::vector<int> FlagsOf(const TreeNode* node) {
  std::vector<int> flags;
  for (int i = 0; i < node->Length; ++i) flags.push_back(node->TargetFlag[i]);
  return flags;
}

inline std::vector<int> ItemsOf(const TreeNode* node) {
  return std::vector<int>(node->ItemSet, node->ItemSet + node->Length);
}

inline std::vector<int> AntecedentOf(const RuleRecord* rule) {
  return std::vector<int>(rule->Antecedent, rule->Antecedent + rule->Len);
}

inline std::vector<const RuleRecord*> Rules() {
  std::vector<const RuleRecord*> rules;
  for (const RuleRecord* r = RuleSet ? RuleSet->First : nullptr; r; r = r->Next) rules.push_back(r);
  return rules;
}

}  // namespace testing_support
