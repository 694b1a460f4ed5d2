// A small in-memory world for the evaluation and analysis tests: labelled
// cases owned by the fixture, an empty rule set, and helpers to add rules,
// read the list and capture what a step prints.
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
    FileName = "toy";
  }
  void TearDown() override { ResetRun(); }

  // Cases as item lists (all of the same width) with their class indexes.
  void SetCases(const std::vector<std::vector<short>>& items, const std::vector<short>& classes, int classCount) {
    RealAtt = items.empty() ? 1 : static_cast<int>(items[0].size());
    MaxClass = classCount;
    rows_ = items;
    DataSpace.clear();
    for (size_t i = 0; i < rows_.size(); ++i) {
      rows_[i].push_back(classes[i]);
      DataSpace.push_back(rows_[i].data());
    }
    MaxData = static_cast<int>(rows_.size());
  }

  // Appends a rule; score and support default to values of no consequence.
  RuleRecord* AddRule(const std::vector<int>& antecedent, int target, float score = 0.5f, int supp = 1) {
    RuleRecord* r = NewRule(static_cast<int>(antecedent.size()));
    for (size_t i = 0; i < antecedent.size(); ++i) r->Antecedent[i] = antecedent[i];
    r->Target = target;
    r->Priority = 1;
    r->Score = r->Conf = score;
    r->Supp = supp;
    AddRuleTail(RuleSet->Last, r);
    return r;
  }

  // The rules from First, after checking the backward links and the count.
  std::vector<RuleRecord*> Rules() {
    std::vector<RuleRecord*> all;
    for (RuleRecord* r = RuleSet->First; r; r = r->Next) {
      EXPECT_EQ(r->Prev, all.empty() ? nullptr : all.back());
      all.push_back(r);
    }
    EXPECT_EQ(RuleSet->Last, all.empty() ? nullptr : all.back());
    EXPECT_EQ(RuleSet->NumOfRules, static_cast<int>(all.size()));
    return all;
  }

  // Runs a step with its standard output captured and returns what it printed.
  template <typename Step>
  static std::string Printed(Step step) {
    ::testing::internal::CaptureStdout();
    step();
    return ::testing::internal::GetCapturedStdout();
  }

 private:
  std::vector<std::vector<short>> rows_;
};
