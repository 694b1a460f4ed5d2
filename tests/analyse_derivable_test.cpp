// Derivable rules found by chaining perfect rules, their count, and the
// removal of implied rules.
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

// a = 1, b = 2, c = 3: a -> b, a -> c and b -> c make a -> c derivable, once
// more when the pair confidence of a and c reaches the minimum confidence.
TEST_F(DerivableTest, ChainCountsOnceOrTwiceByThePairConfidence) {
  struct Case { int pair; int b; float minConf; const char* text; int count; };
  for (const Case& c : {Case{3, 5, 0.999999f, "\n 1 2 3 0.500000", 1}, Case{6, 5, 0.999999f, "\n 1 2 3 1.000000", 2},
                        Case{3, 5, 0.5f, "\n 1 2 3 0.500000", 2},
                        Case{6, 7, 0.999999f, "", 0}}) {  // b more frequent than c: no chain
    SetUp();
    rules = RuleSet();
    run.Counts.Counter1[1] = 6, run.Counts.Counter1[2] = c.b, run.Counts.Counter1[3] = 6;
    RankItems(run.Counts, data.MaxItem, 1);
    *run.Counts.PairCell(1, 3) = c.pair;
    AddRule(rules, {1}, 2, 1, 1.0f), AddRule(rules, {1}, 3, 1, 1.0f), AddRule(rules, {2}, 3, 1, 1.0f);
    EXPECT_EQ(Count(c.count, c.minConf),
              std::string(c.text) + "\n Number of derivable rules is " + std::to_string(c.count) + " \n");
    EXPECT_EQ(RulesOf(rules).size(), 3u);
  }
}

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

// No rules: nothing to count, and the pair table still goes.
TEST_F(DerivableTest, EmptyRuleSet) { EXPECT_EQ(Count(0), "\n Number of derivable rules is 0 \n"); }

}  // namespace
