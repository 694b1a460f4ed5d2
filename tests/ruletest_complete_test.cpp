// Complete rule selection and its two attribute-list steps.
#include <vector>

#include "ruletest_fixture.h"

namespace {

// Item codes whose tens give their attribute: item 12 is a value of attribute 1.
class Complete : public RuletestWorld {
 protected:
  void SetUp() override {
    RuletestWorld::SetUp();
    Attribute.assign(200, 0);
    for (int code = 0; code < 200; ++code) Attribute[code] = code / 10;
  }
  static std::vector<int> Narrow(const RuleRecord* rule, std::vector<int> list) {
    list.resize(list.size() + 1);
    OverLapAttribute(rule, list.data());
    list.resize(static_cast<size_t>(list[0]) + 1);
    return list;
  }
};

TEST_F(Complete, NarrowingKeepsSharedAttributesOnly) {
  EXPECT_EQ(Narrow(AddRule({21}, 0), {2, 1, 2}), (std::vector<int>{0}));  // 2 is passed over on 1
  EXPECT_EQ(Narrow(AddRule({21, 41}, 0), {2, 1, 3}), (std::vector<int>{0}));
  EXPECT_EQ(Narrow(AddRule({11, 21}, 0), {2, 1, 3}), (std::vector<int>{1, 1}));
  EXPECT_EQ(Narrow(AddRule({11, 31, 51}, 0), {3, 1, 3, 5}), (std::vector<int>{3, 1, 3, 5}));
  EXPECT_EQ(Narrow(AddRule({}, 0), {2, 1, 3}), (std::vector<int>{0}));
  std::vector<int> empty = {0};
  EXPECT_EQ(OverLapAttribute(AddRule({11}, 0), empty.data()), 0);
  std::vector<int> negative = {-4};
  EXPECT_EQ(OverLapAttribute(AddRule({11}, 0), negative.data()), 0);
  EXPECT_EQ(negative[0], 0);
}

TEST_F(Complete, OneCompleteKeepsOnlyFirstRightRules) {
  SetCases({{11, 21}, {11, 22}, {12, 21}}, {0, 0, 1}, 2);
  ::Complete = 1;
  RuleRecord* wrongFirst = AddRule({21}, 0);  // right on case 0, wrong on case 2
  AddRule({11}, 0);                            // right on 0 and 1, first right only on 1
  AddRule({}, 0);                              // right on 0 and 1, never first
  RuleRecord* last = AddRule({12}, 1);
  ChooseKcompleterule();
  EXPECT_EQ(Rules().size(), 3u);
  EXPECT_EQ(RuleSet->First, wrongFirst);
  EXPECT_EQ(RuleSet->Last, last);
  Targets();
}

TEST_F(Complete, TwoCompleteAddsRulesThatNarrowTheAttributes) {
  SetCases({{11, 21, 31, 41, 51}}, {0}, 1);
  ::Complete = 2;
  RuleRecord* first = AddRule({11, 31}, 0);
  RuleRecord* disjoint = AddRule({21, 41}, 0);  // empties the list: the case is served
  AddRule({51}, 0);
  ChooseKcompleterule();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{first, disjoint}));

  InitRuleSet();
  first = AddRule({11, 31}, 0);
  RuleRecord* narrower = AddRule({11, 21}, 0);  // (1, 3) becomes (1)
  AddRule({11}, 0);                              // (1) stays (1): not needed
  AddRule({21}, 1);                              // wrong: not considered
  RuleRecord* ender = AddRule({51}, 0);         // empties it
  AddRule({41}, 0);                              // after the end
  ChooseKcompleterule();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{first, narrower, ender}));
}

TEST_F(Complete, EmptyAntecedentServesTheCaseAlone) {
  SetCases({{11, 21}}, {0}, 1);
  ::Complete = 2;
  RuleRecord* everything = AddRule({}, 0);
  AddRule({11}, 0);
  ChooseKcompleterule();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{everything}));
}

TEST_F(Complete, RulesWrongEverywhereAreAllRemoved) {
  SetCases({{11}, {12}}, {0, 0}, 2);
  AddRule({11}, 1);
  AddRule({12}, 1);
  AddRule({13}, 0);  // covers nothing
  ChooseKcompleterule();
  EXPECT_EQ(RuleSet->First, nullptr);
  EXPECT_EQ(RuleSet->Last, nullptr);
  EXPECT_EQ(RuleSet->NumOfRules, 0);
}

TEST_F(Complete, LongRulesNeedNoFixedList) {
  std::vector<short> items;
  std::vector<int> antecedent;
  for (int a = 0; a < 25; ++a) {
    items.push_back(static_cast<short>(a * 10 + 1));
    antecedent.push_back(a * 10 + 1);
  }
  SetCases({items}, {0}, 1);
  ::Complete = 2;
  RuleRecord* full = AddRule(antecedent, 0);
  antecedent.erase(antecedent.begin() + 3);
  RuleRecord* shorter = AddRule(antecedent, 0);
  ChooseKcompleterule();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{full, shorter}));
}

}  // namespace
