// Complete rule selection and its attribute-list narrowing.
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RuletestWorld;

// Item codes whose tens give their attribute: item 12 is a value of attribute 1.
class Complete : public RuletestWorld {
 protected:
  void SetUp() override {
    RuletestWorld::SetUp();
    Attribute.assign(200, 0);
    for (int code = 0; code < 200; ++code) Attribute[code] = code / 10;
  }
};

TEST_F(Complete, NarrowingKeepsSharedAttributesOnly) {
  const struct {
    std::vector<int> Antecedent, List, Expected;  // lists as a count and the attributes
  } cases[] = {
      {{21, 41}, {2, 1, 3}, {0}},            // (1, 3) against (2, 4): nothing shared
      {{11, 21}, {2, 1, 3}, {1, 1}},         // (1, 3) against (1, 2): (1)
      {{21}, {2, 1, 2}, {0}},                // (1, 2) against (2): 2 is passed over on 1
      {{11, 31, 51}, {3, 1, 3, 5}, {3, 1, 3, 5}},
      {{}, {2, 1, 3}, {0}},
      {{11}, {-4}, {0}},
  };
  for (const auto& c : cases) {
    std::vector<int> list = c.List;
    list.resize(list.size() + 1);
    OverLapAttribute(AddRule(c.Antecedent, 0), list.data());
    list.resize(static_cast<size_t>(list[0]) + 1);
    EXPECT_EQ(list, c.Expected) << "antecedent of " << c.Antecedent.size() << ", list of " << c.List[0];
  }
}

TEST_F(Complete, OneCompleteKeepsOnlyFirstRightRules) {
  SetCases({{11, 21}, {11, 22}, {12, 21}}, {0, 0, 1}, 2);
  ::Complete = 1;
  RuleRecord* wrongFirst = AddRule({21}, 0);  // right on case 0, wrong on case 2
  RuleRecord* second = AddRule({11}, 0);      // right on 0 and 1, first right only on 1
  AddRule({}, 0);                             // right on 0 and 1, never first
  RuleRecord* last = AddRule({12}, 1);
  ChooseKcompleterule();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{wrongFirst, second, last}));
}

TEST_F(Complete, TwoCompleteAddsRulesThatNarrowTheAttributes) {
  SetCases({{11, 21, 31, 41, 51}}, {0}, 1);
  ::Complete = 2;
  RuleRecord* first = AddRule({11, 31}, 0);
  RuleRecord* narrower = AddRule({11, 21}, 0);  // (1, 3) becomes (1)
  AddRule({11}, 0);                             // (1) stays (1): not needed
  AddRule({21}, 1);                             // wrong: not considered
  RuleRecord* ender = AddRule({51}, 0);         // empties it: the case is served
  AddRule({41}, 0);                             // after the end
  ChooseKcompleterule();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{first, narrower, ender}));
}

}  // namespace
