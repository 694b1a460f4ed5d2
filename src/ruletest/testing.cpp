// Matching rules against cases, the first-match and vote tests, and the
// coverage table that the ordering works on.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "readfile.h"
#include "rule.h"
#include "ruletest.h"

namespace {

// A share of all cases as a percentage; 0 when there are no cases.
double Percent(double part) { return MaxData > 0 ? part / MaxData * 100 : 0.0; }

constexpr int kMaxVoters = 5;  // covering rules that vote on one case

}  // namespace

int MatchTest(const short* row, const RuleRecord* rule) {
  for (int k = 0; k < rule->Len; ++k) {
    const int item = rule->Antecedent[k];
    bool found = false;
    for (int j = 0; j < RealAtt && !found; ++j) found = static_cast<int>(row[j]) == item;
    if (!found) return -1;
  }
  return static_cast<int>(row[RealAtt]) == rule->Target ? 1 : 0;
}

int TestSingle() {
  RuleSet->Hits = 0;
  RuleSet->Misses = 0;
  int uncovered = 0;
  int defaultHits = 0;
  std::printf("\n testing on %s with %d instances \n", FileName.c_str(), MaxData);
  for (int i = 0; i < MaxData; ++i) {
    const short* row = DataSpace[i];
    bool covered = false;
    for (const RuleRecord* r = RuleSet->First; r; r = r->Next) {
      const int match = MatchTest(row, r);
      if (match < 0) continue;
      covered = true;
      if (match == 1) {
        RuleSet->Hits += 1;
        RuleSet->ReciprocalSum += 1.0 / r->Priority;
      } else {
        RuleSet->Misses += 1;
      }
      break;
    }
    if (covered) continue;
    uncovered += 1;
    if (RuleSet->DefaultClass == -1) continue;
    if (RuleSet->DefaultClass == row[RealAtt]) {
      defaultHits += 1;
      RuleSet->Hits += 1;
    } else {
      RuleSet->Misses += 1;
    }
  }
  std::printf("\n accuracy = %.2f %%", Percent(RuleSet->Hits));
  std::printf("\n rule coverage = %.2f %%", Percent(MaxData - uncovered));
  const float defaultShare = MaxData > 0 ? static_cast<float>(defaultHits) / static_cast<float>(MaxData) : 0.0f;
  std::printf("\n default accuracy = %.2f %%", static_cast<double>(defaultShare) * 100);
  return std::printf("\n");
}

int Testmulti() {
  RuleSet->Hits = 0;
  RuleSet->Misses = 0;
  int unclassified = 0;
  std::printf("\n testing on %s with %d instances \n", FileName.c_str(), MaxData);
  // One vote per class index; two at least so that both printed votes exist.
  std::vector<float> votes(static_cast<size_t>(MaxClass > 2 ? MaxClass : 2));
  for (int i = 0; i < MaxData; ++i) {
    const short* row = DataSpace[i];
    std::fill(votes.begin(), votes.end(), 0.0f);
    int voters = 0;
    for (const RuleRecord* r = RuleSet->First; r && voters < kMaxVoters; r = r->Next) {
      if (MatchTest(row, r) < 0) continue;
      ++voters;
      // Only a class of the names file can be predicted, so only its votes count.
      if (r->Target >= 0 && r->Target < MaxClass) votes[r->Target] += 1.0f;
    }
    const float second = MaxClass > 1 ? votes[1] : 0.0f;
    std::printf("%d: weigh[0] = %.2f weight[1] = %.2f", i + 1, static_cast<double>(votes[0]),
                static_cast<double>(second));
    int predicted = -1;
    for (int c = 0; c < MaxClass; ++c)
      if (votes[c] > 0.01f) predicted = c;
    if (predicted == -1) unclassified += 1;
    if (row[RealAtt] == predicted) {
      std::printf(" Correct \n");
      RuleSet->Hits += 1;
    } else {
      std::printf(" Wrong \n");
      RuleSet->Misses += 1;
    }
  }
  std::printf("\n accuracy = %.2f %%", Percent(RuleSet->Hits));
  std::printf("\n rule coverage = %.2f %%", Percent(MaxData - unclassified));
  return std::printf("\n");
}

int FillInTable(CoverageTable table) {
  if (!RuleSet->First) return 1;
  int k = 0;
  for (const RuleRecord* r = RuleSet->First; r; r = r->Next, ++k) {
    int* row = table[k];
    for (int i = 0; i < MaxData; ++i) {
      const int match = MatchTest(DataSpace[i], r);
      row[i] = match < 0 ? 0 : (match == 1 ? 1 : -1);
    }
    row[MaxData] = r->Target;
    row[MaxData + 1] = 0;
  }
  return 1;
}

void PrintTable(CoverageTable table) {
  for (int k = 0; k < RuleSet->NumOfRules; ++k) {
    std::printf(" \n rule %d : ", k);
    for (int i = 0; i < MaxData; ++i) std::printf("%d, ", table[k][i]);
  }
}
