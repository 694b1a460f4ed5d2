// The rule listing of the debug run where the golden runs do not reach: the
// cut after thirty rules, an empty antecedent, the score column.
#include <gtest/gtest.h>

#include <string>

#include "miner_fixture.h"
#include "output/reports.h"

namespace {

using testing_support::AddRule;

using ReportTest = testing_support::MinerTest;

// An empty antecedent, the score in the last column, and thirty rules at
// most: the lines of fixtures/listing.txt.
TEST_F(ReportTest, AbstractListingOfThirtyRulesAtMost) {
  AddRule(run.Rules, {}, 5, 12, 0.25f);
  AddRule(run.Rules, {1, 3, 4}, 9, 2, 1.0f)->Score = 42.5f;
  for (int i = 3; i <= 30; ++i) AddRule(run.Rules, {i}, 7, i, 0.5f);
  const std::string lines = testing_support::ReadFile(std::string(SOURCE_DIR) + "/tests/fixtures/listing.txt");
  EXPECT_EQ(DisplayAbstractRule(run.Rules, out.file()), 1);
  EXPECT_EQ(out.Take(), "\nThe number of rules is 30" + lines);
  AddRule(run.Rules, {31}, 7, 31, 0.5f);
  DisplayAbstractRule(run.Rules, out.file());
  EXPECT_EQ(out.Take(), "\nThe number of rules is 31\n Print the first 30 rules \n" + lines);
}

}  // namespace
