// Complete rule selection: keep, for every case, the first rule that
// classifies it rightly (and, in the two-complete mode, the further right
// rules that narrow the attributes those rules share), and drop the rest.
#include <vector>

#include "readfile.h"
#include "rule.h"
#include "ruletest.h"

namespace {

// The real attribute of an item code; -1 for a code outside the tables.
int AttributeOf(int item) {
  if (item < 0 || static_cast<size_t>(item) >= Attribute.size()) return -1;
  return Attribute[item];
}

}  // namespace

int WriteLeftAttribute(const RuleRecord* rule, int* list) {
  list[0] = rule->Len;
  for (int j = 1; j <= rule->Len; ++j) list[j] = AttributeOf(rule->Antecedent[j - 1]);
  return 1;
}

int OverLapAttribute(const RuleRecord* rule, int* list) {
  const int n = list[0];
  if (n <= 0) {
    list[0] = 0;
    return 0;
  }
  int kept = 0;
  int cursor = 0;  // next attribute of the rule that may still be a partner
  for (int j = 1; j <= n; ++j) {
    const int a = list[j];
    if (cursor >= rule->Len) continue;
    int k = cursor;
    while (k < rule->Len && AttributeOf(rule->Antecedent[k]) < a) ++k;
    if (k == rule->Len) continue;  // no partner; the cursor stays
    const bool partner = AttributeOf(rule->Antecedent[k]) == a;
    cursor = k + 1;
    // Entries are only ever moved towards the front, over ones already read.
    if (partner) list[++kept] = a;
  }
  list[0] = kept;
  return kept;
}

void ChooseKcompleterule() {
  std::vector<int> attributes;  // the attribute list of the case being served
  for (int i = 0; i < MaxData; ++i) {
    const short* row = DataSpace[i];
    bool first = true;
    int fewest = 0;
    for (RuleRecord* r = RuleSet->First; r; r = r->Next) {
      if (MatchTest(row, r) != 1) continue;
      if (first) {
        first = false;
        r->Selected = 1;
        attributes.assign(static_cast<size_t>(r->Len) + 1, 0);
        WriteLeftAttribute(r, attributes.data());
        fewest = r->Len;
        if (Complete == 1) break;
      }
      const int left = OverLapAttribute(r, attributes.data());
      if (left == 0) {
        r->Selected = 1;
        break;
      }
      if (left < fewest) {
        fewest = left;
        r->Selected = 1;
      }
    }
  }
  for (RuleRecord* r = RuleSet->First; r;) r = r->Selected ? r->Next : RemoveRule(r);
}
