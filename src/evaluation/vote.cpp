// Predicting the class of a case: by the first covering rule, or by the
// weighted vote of the first covering rules.
#include <cstdio>
#include <vector>

#include "evaluation/class_votes.h"
#include "evaluation/evaluation.h"

Prediction PredictFirst(const RuleSet& rules, const DataSet& data, const short* row) {
  Prediction p;
  int position = 0;
  for (const RuleRecord* r = rules.First; r; r = r->Next) {
    ++position;
    if (MatchTest(row, r, data.RealAtt) < 0) continue;
    p.Class = r->Target;
    p.Rule = r;
    p.Position = position;
    return p;
  }
  p.Class = rules.DefaultClass;
  return p;
}

Prediction PredictVote(const RuleSet& rules, const DataSet& data, const short* row, const VoteSettings& settings) {
  ClassVotes votes(data.MaxClass);
  int voters = 0;
  int position = 0;
  for (const RuleRecord* r = rules.First; r && voters < settings.Voters; r = r->Next) {
    ++position;
    if (MatchTest(row, r, data.RealAtt) < 0) continue;
    ++voters;
    if (r->Target < 0 || r->Target >= votes.Classes()) continue;
    votes.Add(r, position, static_cast<double>(r->Score));
  }
  // Covered only by rules whose votes do not count, or by none: the default.
  return votes.Winner(rules.DefaultClass);
}

int TestVote(RuleSet& rules, const DataSet& data, const VoteSettings& settings, std::FILE* out) {
  const int cases = data.MaxData;
  rules.Hits = 0;
  rules.Misses = 0;
  int covered = 0;
  int defaultHits = 0;
  std::fprintf(out, "\n testing on %s with %d instances \n", data.FileName.c_str(), cases);
  std::fprintf(out, "\n vote of the first %d covering rules of each case, each weighted by its confidence",
               settings.Voters);
  for (int i = 0; i < cases; ++i) {
    const short* row = data.DataSpace[i];
    const Prediction p = PredictVote(rules, data, row, settings);
    if (p.Rule) covered += 1;
    if (p.Class < 0) continue;
    if (p.Class == row[data.RealAtt]) {
      rules.Hits += 1;
      if (!p.Rule) defaultHits += 1;
    } else {
      rules.Misses += 1;
    }
  }
  const auto percent = [cases](int part) { return cases > 0 ? static_cast<double>(part) / cases * 100 : 0.0; };
  std::fprintf(out, "\n accuracy = %.2f %%", percent(rules.Hits));
  std::fprintf(out, "\n rule coverage = %.2f %%", percent(covered));
  std::fprintf(out, "\n default accuracy = %.2f %%", percent(defaultHits));
  return std::fprintf(out, "\n");
}
