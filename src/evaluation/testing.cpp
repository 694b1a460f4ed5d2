// Matching rules against cases, the first-match and vote tests, and the
// coverage table that the ordering works on.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "evaluation/evaluation.h"

namespace {

// A share of all cases as a percentage; 0 when there are no cases.
double Percent(double part, int cases) { return cases > 0 ? part / cases * 100 : 0.0; }

constexpr int kMaxVoters = 5;  // covering rules that vote on one case

}  // namespace

int MatchTest(const short* row, const RuleRecord* rule, int realAtt) {
  for (int k = 0; k < rule->Len; ++k) {
    const int item = rule->Antecedent[k];
    bool found = false;
    for (int j = 0; j < realAtt && !found; ++j) found = static_cast<int>(row[j]) == item;
    if (!found) return -1;
  }
  return static_cast<int>(row[realAtt]) == rule->Target ? 1 : 0;
}

int TestSingle(RuleSet& rules, const DataSet& data, std::FILE* out) {
  const int cases = data.MaxData;
  rules.Hits = 0;
  rules.Misses = 0;
  int uncovered = 0;
  int defaultHits = 0;
  std::fprintf(out, "\n testing on %s with %d instances \n", data.FileName.c_str(), cases);
  for (int i = 0; i < cases; ++i) {
    const short* row = data.DataSpace[i];
    bool covered = false;
    for (const RuleRecord* r = rules.First; r; r = r->Next) {
      const int match = MatchTest(row, r, data.RealAtt);
      if (match < 0) continue;
      covered = true;
      if (match == 1) {
        rules.Hits += 1;
        rules.ReciprocalSum += 1.0 / r->Priority;
      } else {
        rules.Misses += 1;
      }
      break;
    }
    if (covered) continue;
    uncovered += 1;
    if (rules.DefaultClass == -1) continue;
    if (rules.DefaultClass == row[data.RealAtt]) {
      defaultHits += 1;
      rules.Hits += 1;
    } else {
      rules.Misses += 1;
    }
  }
  std::fprintf(out, "\n accuracy = %.2f %%", Percent(rules.Hits, cases));
  std::fprintf(out, "\n rule coverage = %.2f %%", Percent(cases - uncovered, cases));
  const float defaultShare = cases > 0 ? static_cast<float>(defaultHits) / static_cast<float>(cases) : 0.0f;
  std::fprintf(out, "\n default accuracy = %.2f %%", static_cast<double>(defaultShare) * 100);
  return std::fprintf(out, "\n");
}

int Testmulti(RuleSet& rules, const DataSet& data, std::FILE* out) {
  const int cases = data.MaxData;
  const int classes = data.MaxClass;
  rules.Hits = 0;
  rules.Misses = 0;
  int unclassified = 0;
  std::fprintf(out, "\n testing on %s with %d instances \n", data.FileName.c_str(), cases);
  // One vote per class index; two at least so that both printed votes exist.
  std::vector<float> votes(static_cast<size_t>(classes > 2 ? classes : 2));
  for (int i = 0; i < cases; ++i) {
    const short* row = data.DataSpace[i];
    std::fill(votes.begin(), votes.end(), 0.0f);
    int voters = 0;
    for (const RuleRecord* r = rules.First; r && voters < kMaxVoters; r = r->Next) {
      if (MatchTest(row, r, data.RealAtt) < 0) continue;
      ++voters;
      // Only a class of the names file can be predicted, so only its votes count.
      if (r->Target >= 0 && r->Target < classes) votes[r->Target] += 1.0f;
    }
    const float second = classes > 1 ? votes[1] : 0.0f;
    std::fprintf(out, "%d: weigh[0] = %.2f weight[1] = %.2f", i + 1, static_cast<double>(votes[0]),
                 static_cast<double>(second));
    int predicted = -1;
    for (int c = 0; c < classes; ++c)
      if (votes[c] > 0.01f) predicted = c;
    if (predicted == -1) unclassified += 1;
    if (row[data.RealAtt] == predicted) {
      std::fprintf(out, " Correct \n");
      rules.Hits += 1;
    } else {
      std::fprintf(out, " Wrong \n");
      rules.Misses += 1;
    }
  }
  std::fprintf(out, "\n accuracy = %.2f %%", Percent(rules.Hits, cases));
  std::fprintf(out, "\n rule coverage = %.2f %%", Percent(cases - unclassified, cases));
  return std::fprintf(out, "\n");
}

int FillInTable(const RuleSet& rules, const DataSet& data, CoverageTable table) {
  if (!rules.First) return 1;
  const int cases = data.MaxData;
  const int realAtt = data.RealAtt;
  // The cases of each item code as a bit set, so that the cases a rule
  // covers are the intersection of its antecedent items' sets. Codes
  // outside 0..MaxItem+1 are left to MatchTest.
  const int width = std::max(data.MaxItem, 0) + 2;
  const size_t words = (static_cast<size_t>(cases) + 63) / 64;
  std::vector<std::uint64_t> casesOf(static_cast<size_t>(width) * words, 0);
  for (int i = 0; i < cases; ++i) {
    const short* row = data.DataSpace[i];
    for (int j = 0; j < realAtt; ++j)
      if (row[j] >= 0 && row[j] < width)
        casesOf[static_cast<size_t>(row[j]) * words + static_cast<size_t>(i) / 64] |= std::uint64_t{1} << (i % 64);
  }
  std::vector<std::uint64_t> covered(words);
  int k = 0;
  for (const RuleRecord* r = rules.First; r; r = r->Next, ++k) {
    int* row = table[k];
    bool inRange = true;
    for (int a = 0; a < r->Len; ++a) inRange = inRange && r->Antecedent[a] >= 0 && r->Antecedent[a] < width;
    if (inRange) {
      std::fill(covered.begin(), covered.end(), ~std::uint64_t{0});
      for (int a = 0; a < r->Len; ++a) {
        const std::uint64_t* set = casesOf.data() + static_cast<size_t>(r->Antecedent[a]) * words;
        for (size_t w = 0; w < words; ++w) covered[w] &= set[w];
      }
      for (int i = 0; i < cases; ++i) {
        const bool covers = (covered[static_cast<size_t>(i) / 64] >> (i % 64)) & 1;
        row[i] = !covers ? 0 : (data.DataSpace[i][realAtt] == r->Target ? 1 : -1);
      }
    } else {
      for (int i = 0; i < cases; ++i) {
        const int match = MatchTest(data.DataSpace[i], r, realAtt);
        row[i] = match < 0 ? 0 : (match == 1 ? 1 : -1);
      }
    }
    row[cases] = r->Target;
    row[cases + 1] = 0;
  }
  return 1;
}

void PrintTable(const RuleSet& rules, const DataSet& data, CoverageTable table, std::FILE* out) {
  for (int k = 0; k < rules.NumOfRules; ++k) {
    std::fprintf(out, " \n rule %d : ", k);
    for (int i = 0; i < data.MaxData; ++i) std::fprintf(out, "%d, ", table[k][i]);
  }
}
