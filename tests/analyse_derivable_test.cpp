// Derivable rules found by chaining perfect rules, their count, and the
// removal of implied rules.
#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RuletestWorld;

class DerivableTest : public RuletestWorld {
 protected:
  void SetUp() override {
    RuletestWorld::SetUp();
    MaxItem = 10;
    InitialCount();
  }
  static std::string Count() {
    return Printed([] { EXPECT_EQ(CountDerivableRule(), 1); });
  }
};

// a = 1, b = 2, c = 3: a -> b, a -> c and b -> c make a -> c derivable.
TEST_F(DerivableTest, ChainCountsOnceOrTwiceByThePairConfidence) {
  struct Case { int pair; int b; const char* text; int count; };
  for (const Case& c : {Case{3, 5, "\n 1 2 3 0.500000", 1}, Case{6, 5, "\n 1 2 3 1.000000", 2},
                        Case{6, 7, "", 0}}) {  // b more frequent than c: no chain
    SetUp();
    Counter1[1] = 6, Counter1[2] = c.b, Counter1[3] = 6;
    Counter2[1][3] = c.pair;
    AddRule({1}, 2, 1, 1.0f), AddRule({1}, 3, 1, 1.0f), AddRule({2}, 3, 1, 1.0f);
    EXPECT_EQ(Count(), std::string(c.text) + "\n Number of derivable rules is " + std::to_string(c.count) + " \n");
    EXPECT_EQ(DerivableRule, c.count);
    EXPECT_EQ(Rules().size(), 3u);
  }
}

// t = 2, u = 3: A -> u is implied by A -> t and t -> u at equal support.
TEST_F(DerivableTest, ImpliedRulesAreRemoved) {
  RuleRecord* tu = AddRule({2}, 3, 10, 1.0f);
  RuleRecord* bt = AddRule({1, 6}, 2, 10, 1.0f);
  RuleRecord* at = AddRule({1, 5}, 2, 10, 1.0f);
  AddRule({1, 5}, 3, 10, 1.0f);                    // end of the run, removed through {1, 5} -> 2
  AddRule({1, 6}, 3, 10, 0.999f);                  // after the run, removed through {1, 6} -> 2
  RuleRecord* unequal = AddRule({1, 6}, 3, 9, 0.999f);  // unequal support: kept
  EXPECT_EQ(Count(), "\n Number of derivable rules is 0 \n");
  EXPECT_EQ(DerivableRule, 2);
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{tu, bt, at, unequal}));
}

}  // namespace
