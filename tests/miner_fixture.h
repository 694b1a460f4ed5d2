// In-process helpers for the tests that drive the readers and the mining
// steps directly: a data set, a mining run and an output buffer per test,
// fixture files in a temporary folder, hand-made data spaces and rules.
// NEW-FIXTURE-READY
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/status.h"
#include "input/dataset.h"
#include "input/readers.h"
#include "mining/mining.h"
#include "test_support.h"

namespace testing_support {

// Console output kept aside: operations print to file(), the test reads what
// they printed with Take(). The file stays the same for the whole test, so
// it may be handed to settings once.
class OutputBuffer {
 public:
  OutputBuffer() : file_(std::tmpfile()) {}
  ~OutputBuffer() {
    if (file_) std::fclose(file_);
  }
  OutputBuffer(const OutputBuffer&) = delete;
  OutputBuffer& operator=(const OutputBuffer&) = delete;

  std::FILE* file() { return file_; }
  // What was printed since the last Take, which it clears.
  std::string Take() {
    std::fflush(file_);
    std::rewind(file_);
    std::string text;
    char chunk[4096];
    size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, file_)) > 0) text.append(chunk, n);
    std::rewind(file_);
    if (ftruncate(fileno(file_), 0) != 0) ADD_FAILURE() << "cannot clear the output buffer";
    return text;
  }

 private:
  std::FILE* file_;
};

// What a step printed, and the exit status it failed with (-1: it did not
// fail). A failed status's final text is part of the output, where the
// program prints it.
struct Outcome {
  int status = -1;
  std::string output;
};

// Every test has a fresh data set, mining run and output buffer, and a file
// stem in a temporary folder of its own.
class MinerTest : public ::testing::Test {
 protected:
  std::string Stem() const { return dir_ / "set"; }
  void WriteNames(const std::string& text) { WriteFile(Stem() + ".names", text); }
  void WriteData(const std::string& text) { WriteFile(Stem() + ".data", text); }

  // The outcome of a status and what was printed so far.
  Outcome Settle(const Status& status) {
    Outcome outcome;
    outcome.output = out.Take();
    if (!status.ok()) {
      outcome.status = status.exit_status();
      outcome.output += status.message();
    }
    return outcome;
  }

  // Reads the names file and, unless data is null, the data file, into a
  // fresh data set.
  Outcome Read(const std::string& names, const char* text = nullptr) {
    WriteNames(names);
    if (text) WriteData(text);
    data = DataSet();
    errors = InputErrors{out.file(), 0};
    Status status = GetNames(data, Stem(), errors);
    if (status.ok() && text) status = GetData(data, ".data", errors);
    return Settle(status);
  }
  void Load(const std::string& names, const std::string& text) {
    Outcome read = Read(names, text.c_str());
    ASSERT_EQ(read.status, -1) << read.output;
  }

  // Coded row i of the data space, RealAtt+1 columns.
  std::vector<int> Row(int i) const {
    return std::vector<int>(data.DataSpace[i], data.DataSpace[i] + data.RealAtt + 1);
  }
  std::vector<std::vector<int>> Rows() const {
    std::vector<std::vector<int>> rows;
    for (int i = 0; i < data.MaxData; ++i) rows.push_back(Row(i));
    return rows;
  }

  // Installs hand-made coded rows (realAtt columns each; the closing 0 is
  // added) as the data space, without any names file.
  void SetRows(int maxItem, int realAtt, const std::vector<std::vector<short>>& rows) {
    data.MaxItem = maxItem;
    data.RealAtt = realAtt;
    data.MaxData = static_cast<int>(rows.size());
    rows_ = rows;
    data.DataSpace.clear();
    for (auto& row : rows_) {
      row.resize(static_cast<size_t>(realAtt) + 1, 0);
      data.DataSpace.push_back(row.data());
    }
  }

  // Counts the data space and builds layers 1 and 2 under a new root.
  std::string BuildFirstLayers(int minSup) {
    run.GMinSup = minSup;
    TreeNode* root = run.Tree.NewRoot();
    InitialCount(run.Counts, data);
    Counting(run.Counts, data, minSup);
    InitRuleSet(run.Rules);
    InitWholeTree(run.Tree, root, run.Counts, data, minSup, out.file());
    return out.Take();
  }

  // The selection settings of a run with these thresholds, printing to out.
  SelectionSettings Selection(float minConf = 0.999999f, int ass = 0, int debug = 0) {
    SelectionSettings settings;
    settings.GMinSup = run.GMinSup;
    settings.MinConf = minConf;
    settings.Ass = ass;
    settings.Dump = DebugDump{debug, out.file()};
    return settings;
  }

  OutputBuffer out;
  DataSet data;
  InputErrors errors{out.file(), 0};
  MinedRules run;
  TempDir dir_;
  std::vector<std::vector<short>> rows_;
};

// The node of the itemset, walked down from the root, or null.
inline TreeNode* NodeOf(const CandidateTree& tree, const std::vector<int>& items) {
  TreeNode* node = tree.AllSet;
  for (int item : items) {
    TreeNode* son = nullptr;
    for (int s = 0; node && s < node->NumOfSon; ++s)
      if (node->Son[s] && node->Son[s]->Item == item) son = node->Son[s];
    if (!(node = son)) return nullptr;
  }
  return node;
}

inline std::vector<int> ItemsOf(const TreeNode* n) { return {n->ItemSet, n->ItemSet + n->Length}; }
inline std::vector<int> AntecedentOf(const RuleRecord* r) { return {r->Antecedent, r->Antecedent + r->Len}; }

// Appends a rule to the rule set.
inline RuleRecord* AddRule(RuleSet& rules, const std::vector<int>& antecedent, int target, int supp = 1,
                           float conf = 0.5f, int antSupp = 0, int targetSupp = 0) {
  RuleRecord* rule = NewRule(static_cast<int>(antecedent.size()));
  for (size_t i = 0; i < antecedent.size(); ++i) rule->Antecedent[i] = antecedent[i];
  rule->Target = target;
  rule->Priority = 1;
  rule->Supp = supp;
  rule->Conf = rule->Score = conf;
  rule->AntSupp = antSupp;
  rule->TargetSupp = targetSupp;
  AddRuleTail(rules, rules.Last, rule);
  return rule;
}

// The rules from First, after checking the backward links and the count.
inline std::vector<RuleRecord*> RulesOf(const RuleSet& rules) {
  std::vector<RuleRecord*> all;
  for (RuleRecord* r = rules.First; r; r = r->Next) {
    EXPECT_EQ(r->Prev, all.empty() ? nullptr : all.back());
    all.push_back(r);
  }
  EXPECT_EQ(rules.Last, all.empty() ? nullptr : all.back());
  EXPECT_EQ(rules.NumOfRules, static_cast<int>(all.size()));
  return all;
}

// The evaluation and analysis tests: an empty rule set, the stem "toy", and
// labelled cases.
class RuletestWorld : public MinerTest {
 protected:
  void SetUp() override { data.FileName = "toy"; }
  // Cases as item lists of one width, each followed by its class index.
  void SetCases(const std::vector<std::vector<short>>& items, const std::vector<short>& classes, int classCount) {
    std::vector<std::vector<short>> rows = items;
    for (size_t i = 0; i < rows.size(); ++i) rows[i].push_back(classes[i]);
    SetRows(data.MaxItem, items.empty() ? 1 : static_cast<int>(items[0].size()), rows);
    data.MaxClass = classCount;
  }
  RuleSet rules;
};

}  // namespace testing_support
