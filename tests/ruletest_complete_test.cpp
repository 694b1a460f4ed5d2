// Complete rule selection and its attribute-list narrowing.
#include <vector>

#include "evaluation/evaluation.h"
#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RulesOf;
using testing_support::RuletestWorld;

// Item codes whose tens give their attribute: item 12 is a value of attribute 1.
class Complete : public RuletestWorld {
 protected:
  void SetUp() override {
    RuletestWorld::SetUp();
    data.Attribute.assign(200, 0);
    for (int code = 0; code < 200; ++code) data.Attribute[code] = code / 10;
  }
};

TEST_F(Complete, LeftAttributesListTheAntecedentsAttributes) {
  std::vector<int> list(4, 99);
  WriteLeftAttribute(data, AddRule(rules, {12, 35, 250}, 0), list.data());
  EXPECT_EQ(list, (std::vector<int>{3, 1, 3, -1}));  // a code outside the tables has no attribute
}

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
    OverLapAttribute(data, AddRule(rules, c.Antecedent, 0), list.data());
    list.resize(static_cast<size_t>(list[0]) + 1);
    EXPECT_EQ(list, c.Expected) << "antecedent of " << c.Antecedent.size() << ", list of " << c.List[0];
  }
}

TEST_F(Complete, OneCompleteKeepsOnlyFirstRightRules) {
  SetCases({{11, 21}, {11, 22}, {12, 21}}, {0, 0, 1}, 2);
  RuleRecord* wrongFirst = AddRule(rules, {21}, 0);  // right on case 0, wrong on case 2
  RuleRecord* second = AddRule(rules, {11}, 0);      // right on 0 and 1, first right only on 1
  AddRule(rules, {}, 0);                             // right on 0 and 1, never first
  RuleRecord* last = AddRule(rules, {12}, 1);
  ChooseKcompleterule(rules, data, 1);
  EXPECT_EQ(RulesOf(rules), (std::vector<RuleRecord*>{wrongFirst, second, last}));
}

TEST_F(Complete, TwoCompleteAddsRulesThatNarrowTheAttributes) {
  SetCases({{11, 21, 31, 41, 51}}, {0}, 1);
  RuleRecord* first = AddRule(rules, {11, 31}, 0);
  RuleRecord* narrower = AddRule(rules, {11, 21}, 0);  // (1, 3) becomes (1)
  AddRule(rules, {11}, 0);                             // (1) stays (1): not needed
  AddRule(rules, {21}, 1);                             // wrong: not considered
  RuleRecord* ender = AddRule(rules, {51}, 0);         // empties it: the case is served
  AddRule(rules, {41}, 0);                             // after the end
  ChooseKcompleterule(rules, data, 2);
  EXPECT_EQ(RulesOf(rules), (std::vector<RuleRecord*>{first, narrower, ender}));
}

}  // namespace
