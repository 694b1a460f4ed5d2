// The coverage table checked against the match of every rule and case.
#include <cstdint>
#include <string>
#include <vector>

#include "evaluation/evaluation.h"
#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RuletestWorld;

using Testing = RuletestWorld;

// The table is filled from per-item sets of cases; it must say what
// MatchTest says for every rule and case, also for rules with items the
// data set does not have (above MaxItem, 0, negative) and for more cases
// than one 64-bit word holds.
TEST_F(Testing, CoverageTableAgreesWithMatchTest) {
  std::uint64_t state = 12345;
  auto below = [&state](int n) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return static_cast<int>(state % static_cast<std::uint64_t>(n));
  };
  std::vector<std::vector<short>> items;
  std::vector<short> classes;
  for (int i = 0; i < 150; ++i) {
    // Four columns of items 1-12, an unknown value (0) now and then.
    items.push_back({static_cast<short>(below(4) ? 1 + below(3) : 0), static_cast<short>(4 + below(3)),
                     static_cast<short>(7 + below(3)), static_cast<short>(10 + below(3))});
    classes.push_back(static_cast<short>(below(3) - (i % 40 == 0 ? 1 : 0)));
  }
  SetCases(items, classes, 3);
  data.MaxItem = 12;
  for (int k = 0; k < 60; ++k) {
    std::vector<int> antecedent;
    for (int a = below(4); a > 0; --a) antecedent.push_back(k % 15 == 0 && a == 1 ? 13 + below(3) - 15 * below(2) : 1 + below(12));
    AddRule(rules, antecedent, below(3));
  }
  const int cases = data.MaxData;
  std::vector<std::vector<int>> cells(60, std::vector<int>(static_cast<size_t>(cases) + 2, 7));
  std::vector<int*> table;
  for (auto& row : cells) table.push_back(row.data());
  FillInTable(rules, data, table.data());
  int k = 0;
  for (const RuleRecord* r = rules.First; r; r = r->Next, ++k) {
    for (int i = 0; i < cases; ++i) {
      const int match = MatchTest(data.DataSpace[i], r, data.RealAtt);
      EXPECT_EQ(cells[k][i], match < 0 ? 0 : (match == 1 ? 1 : -1)) << "rule " << k << ", case " << i;
    }
    EXPECT_EQ(cells[k][cases], r->Target);
    EXPECT_EQ(cells[k][cases + 1], 0);
  }
}

}  // namespace
