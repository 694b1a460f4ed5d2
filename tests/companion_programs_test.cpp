// Whole runs of rule-classify, rule-discretise (then rule on the pair it
// writes) and rule-analyse on small data sets, and the command lines and rule
// files they refuse. Each area's runs.txt lists the runs and what they give.
#include <gtest/gtest.h>

#include "test_support.h"

using namespace testing_support;

namespace {

TEST(CompanionPrograms, ClassifyTrainTestAndCrossValidate) { RunArea("classify"); }
TEST(CompanionPrograms, DiscretiseThenMineThePair) { RunArea("discretise"); }
TEST(CompanionPrograms, AnalyseDerivableRulesAndCoverage) { RunArea("analyse"); }

}  // namespace
