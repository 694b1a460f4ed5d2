// Derivable rules found by chaining perfect rules, their count, and the
// removal of implied rules.
#include <string>
#include <vector>

#include "ruletest_fixture.h"

namespace {

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
    AddRule({1}, 2, 1.0f), AddRule({1}, 3, 1.0f), AddRule({2}, 3, 1.0f);
    EXPECT_EQ(Count(), std::string(c.text) + "\n Number of derivable rules is " + std::to_string(c.count) + " \n");
    EXPECT_EQ(DerivableRule, c.count);
    EXPECT_EQ(Rules().size(), 3u);
  }
}

// t = 2, u = 3: A -> u is implied by A -> t and t -> u at equal support.
TEST_F(DerivableTest, ImpliedRulesAreRemoved) {
  RuleRecord* tu = AddRule({2}, 3, 1.0f, 10);
  RuleRecord* bt = AddRule({1, 6}, 2, 1.0f, 10);
  RuleRecord* at = AddRule({1, 5}, 2, 1.0f, 10);
  AddRule({1, 5}, 3, 1.0f, 10);                    // end of the run, removed through {1, 5} -> 2
  AddRule({1, 6}, 3, 0.999f, 10);                  // after the run, removed through {1, 6} -> 2
  RuleRecord* unequal = AddRule({1, 6}, 3, 0.999f, 9);  // unequal support: kept
  EXPECT_EQ(Count(), "\n Number of derivable rules is 0 \n");
  EXPECT_EQ(DerivableRule, 2);
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{tu, bt, at, unequal}));
}

}  // namespace
