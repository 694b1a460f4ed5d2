// The removal of rules implied by two perfect rules (the chains and their
// count are runs of rule-analyse in fixtures/analyse).
#include <string>
#include <vector>

#include "analyses/analyses.h"
#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RulesOf;
using testing_support::RuletestWorld;

class DerivableTest : public RuletestWorld {
 protected:
  void SetUp() override {
    RuletestWorld::SetUp();
    data.MaxItem = 10;
    InitialCount(run.Counts, data);
  }
  // Counts with the given minimum confidence; the printed lines.
  std::string Count(int expected, float minConf = 0.999999f) {
    EXPECT_EQ(CountDerivableRule(rules, run.Counts, data.MaxItem, minConf, out.file()), expected);
    EXPECT_EQ(run.Counts.Pairs, nullptr);  // the pair table is released
    return out.Take();
  }
};

// t = 2, u = 3: A -> u is implied by A -> t and t -> u at equal support. The
// removed rules are counted after the printed count.
TEST_F(DerivableTest, ImpliedRulesAreRemoved) {
  RuleRecord* tu = AddRule(rules, {2}, 3, 10, 1.0f);
  RuleRecord* bt = AddRule(rules, {1, 6}, 2, 10, 1.0f);
  RuleRecord* at = AddRule(rules, {1, 5}, 2, 10, 1.0f);
  AddRule(rules, {1, 5}, 3, 10, 1.0f);                        // end of the run, removed through {1, 5} -> 2
  AddRule(rules, {1, 6}, 3, 10, 0.999f);                      // after the run, removed through {1, 6} -> 2
  RuleRecord* unequal = AddRule(rules, {1, 6}, 3, 9, 0.999f);  // unequal support: kept
  EXPECT_EQ(Count(2), "\n Number of derivable rules is 0 \n");
  EXPECT_EQ(RulesOf(rules), (std::vector<RuleRecord*>{tu, bt, at, unequal}));
}

}  // namespace
