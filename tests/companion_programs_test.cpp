// Whole runs of rule-classify, rule-discretise and rule-import (then rule on
// the pairs they write) and rule-analyse on small data sets, and the command
// lines, tables and rule files they refuse. Each area's runs.txt lists the runs and what they give.
#include <gtest/gtest.h>

#include "test_support.h"

using namespace testing_support;

namespace {

TEST(CompanionPrograms, ClassifyTrainTestAndCrossValidate) { RunArea("classify"); }
TEST(CompanionPrograms, DiscretiseThenMineThePair) { RunArea("discretise"); }
TEST(CompanionPrograms, AnalyseDerivableRulesAndCoverage) { RunArea("analyse"); }
TEST(CompanionPrograms, ImportTablesThenMineThePairs) { RunArea("import"); }

}  // namespace
