// A small in-memory world for the evaluation tests: labelled cases owned by
// the fixture, an empty rule set, and helpers to add rules and read the list.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "readfile.h"
#include "rule.h"
#include "rulegen.h"
#include "ruletest.h"

class RuletestWorld : public ::testing::Test {
 protected:
  void SetUp() override {
    ResetRun();
    InitRuleSet();
  }
  void TearDown() override { ResetRun(); }

  // Cases as item lists (all of the same width) with their class indexes.
  void SetCases(const std::vector<std::vector<short>>& items, const std::vector<short>& classes, int classCount) {
    RealAtt = items.empty() ? 1 : static_cast<int>(items[0].size());
    MaxClass = classCount;
    rows_.clear();
    for (size_t i = 0; i < items.size(); ++i) {
      std::vector<short> row = items[i];
      row.push_back(classes[i]);
      rows_.push_back(row);
    }
    DataSpace.clear();
    for (auto& row : rows_) DataSpace.push_back(row.data());
    MaxData = static_cast<int>(rows_.size());
  }

  // Appends a rule; score and support default to values of no consequence.
  RuleRecord* AddRule(const std::vector<int>& antecedent, int target, float score = 0.5f, int supp = 1) {
    RuleRecord* r = NewRule(static_cast<int>(antecedent.size()));
    for (size_t i = 0; i < antecedent.size(); ++i) r->Antecedent[i] = antecedent[i];
    r->Target = target;
    r->Priority = 1;
    r->Score = score;
    r->Conf = score;
    r->Supp = supp;
    AddRuleTail(RuleSet->Last, r);
    return r;
  }

  // The targets of the rules from First, and checks the backward links agree.
  std::vector<int> Targets() {
    std::vector<int> forward;
    const RuleRecord* prev = nullptr;
    for (const RuleRecord* r = RuleSet->First; r; r = r->Next) {
      EXPECT_EQ(r->Prev, prev);
      forward.push_back(r->Target);
      prev = r;
    }
    EXPECT_EQ(RuleSet->Last, prev);
    EXPECT_EQ(RuleSet->NumOfRules, static_cast<int>(forward.size()));
    return forward;
  }

  std::vector<RuleRecord*> Rules() {
    std::vector<RuleRecord*> all;
    for (RuleRecord* r = RuleSet->First; r; r = r->Next) all.push_back(r);
    return all;
  }

 private:
  std::vector<std::vector<short>> rows_;
};
