// Complete rule selection: keep, for every case, the first rule that
// classifies it rightly (and, in the two-complete mode, the further right
// rules that narrow the attributes those rules share), and drop the rest.
#include <vector>

#include "evaluation/evaluation.h"

namespace {

// The real attribute of an item code; -1 for a code outside the tables.
int AttributeOf(const DataSet& data, int item) {
  if (item < 0 || static_cast<size_t>(item) >= data.Attribute.size()) return -1;
  return data.Attribute[item];
}

}  // namespace

int WriteLeftAttribute(const DataSet& data, const RuleRecord* rule, int* list) {
  list[0] = rule->Len;
  for (int j = 1; j <= rule->Len; ++j) list[j] = AttributeOf(data, rule->Antecedent[j - 1]);
  return 1;
}

int OverLapAttribute(const DataSet& data, const RuleRecord* rule, int* list) {
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
    while (k < rule->Len && AttributeOf(data, rule->Antecedent[k]) < a) ++k;
    if (k == rule->Len) continue;  // no partner; the cursor stays
    const bool partner = AttributeOf(data, rule->Antecedent[k]) == a;
    cursor = k + 1;
    // Entries are only ever moved towards the front, over ones already read.
    if (partner) list[++kept] = a;
  }
  list[0] = kept;
  return kept;
}

void ChooseKcompleterule(RuleSet& rules, const DataSet& data, int complete) {
  std::vector<int> attributes;  // the attribute list of the case being served
  for (int i = 0; i < data.MaxData; ++i) {
    const short* row = data.DataSpace[i];
    bool first = true;
    int fewest = 0;
    for (RuleRecord* r = rules.First; r; r = r->Next) {
      if (MatchTest(row, r, data.RealAtt) != 1) continue;
      if (first) {
        first = false;
        r->Selected = 1;
        attributes.assign(static_cast<size_t>(r->Len) + 1, 0);
        WriteLeftAttribute(data, r, attributes.data());
        fewest = r->Len;
        if (complete == 1) break;
      }
      const int left = OverLapAttribute(data, r, attributes.data());
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
  for (RuleRecord* r = rules.First; r;) r = r->Selected ? r->Next : RemoveRule(rules, r);
}
